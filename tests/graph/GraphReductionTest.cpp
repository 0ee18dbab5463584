// Reduction of graphs before they render: merging equal nodes, cutting out pass-through nodes, folding.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestFilters.h"

namespace Tw::Test {
namespace TW_FILE_LOCAL {

using ::testing::ElementsAre;

// Stands for the caller of a graph, as prepareGraph's root does.
struct Root final : Node {
    explicit Root(Node& input) : Node({&input}) {}
    const char* name() const override { return "root"; }
};

TEST(GraphReduction, EqualNodesMergeOnlyOverTheSameInputs) {
    Layer first(nullptr, {0, 0, 4, 4});
    Layer second(nullptr, {0, 0, 4, 4});
    OffsetFilter a(first, 0.25f), twinOfA(first, 0.25f), otherLayer(second, 0.25f), otherOffset(first, 0.5f);
    SumFilter sumOfTwins(a, twinOfA);
    SumFilter mixed(otherLayer, otherOffset);
    SumFilter last(sumOfTwins, mixed);
    Root root(last);

    Image::optimiseGraph<Host>(root);

    EXPECT_THAT(sumOfTwins.inputs, ElementsAre(&a, &a));
    EXPECT_THAT(a.consumers, ElementsAre(&sumOfTwins, &sumOfTwins));
    EXPECT_TRUE(twinOfA.inputs.empty());
    EXPECT_TRUE(twinOfA.consumers.empty());
    // Same kind and parameters over another layer, or another offset over the same layer: both stay.
    EXPECT_THAT(mixed.inputs, ElementsAre(&otherLayer, &otherOffset));
    EXPECT_THAT(first.consumers, ElementsAre(&a, &otherOffset));
}

TEST(GraphReduction, MergedNodesMakeTheirConsumersEqual) {
    Layer layer(nullptr, {0, 0, 4, 4});
    OffsetFilter a(layer, 0.25f), b(layer, 0.25f);
    BoxFilter boxOfA(a, 1), boxOfB(b, 1);
    SumFilter last(boxOfA, boxOfB);
    Root root(last);

    Image::optimiseGraph<Host>(root);

    EXPECT_THAT(last.inputs, ElementsAre(&boxOfA, &boxOfA));
    EXPECT_THAT(boxOfA.inputs, ElementsAre(&a));
}

TEST(GraphReduction, PassThroughNodesAreCutOutAnywhere) {
    Layer layer(nullptr, {0, 0, 4, 4});
    OffsetFilter neutral(layer, 0.0f);
    BoxFilter box(neutral, 1);
    OffsetFilter neutralLast(box, 0.0f);
    Root root(neutralLast);

    Image::optimiseGraph<Host>(root);

    EXPECT_THAT(root.inputs, ElementsAre(&box));
    EXPECT_THAT(box.inputs, ElementsAre(&layer));
    EXPECT_THAT(layer.consumers, ElementsAre(&box));
    EXPECT_THAT(box.consumers, ElementsAre(&root));
    EXPECT_TRUE(neutral.inputs.empty() && neutral.consumers.empty());
    EXPECT_TRUE(neutralLast.inputs.empty() && neutralLast.consumers.empty());
}

TEST(GraphReduction, FoldingOnlyWhileTheNodeHasFewerThanTwoConsumers) {
    {
        Layer layer(nullptr, {0, 0, 4, 4});
        OffsetFilter first(layer, 0.125f);
        OffsetFilter second(first, 0.25f);
        Root root(second);
        Image::optimiseGraph<Host>(root);
        EXPECT_FLOAT_EQ(second.offset, 0.375f);
        EXPECT_THAT(second.inputs, ElementsAre(&layer));
        EXPECT_THAT(layer.consumers, ElementsAre(&second));
        EXPECT_TRUE(first.inputs.empty());
    }
    {
        // `second` is read twice, so folding `first` into it is not even asked.
        Layer layer(nullptr, {0, 0, 4, 4});
        OffsetFilter first(layer, 0.125f);
        OffsetFilter second(first, 0.25f);
        SumFilter last(second, second);
        Root root(last);
        Image::optimiseGraph<Host>(root);
        EXPECT_FLOAT_EQ(second.offset, 0.25f);
        EXPECT_THAT(second.inputs, ElementsAre(&first));
    }
}

TEST(GraphReduction, PruningDropsLinksToNodesThatFellOut) {
    Layer layer(nullptr, {0, 0, 4, 4});
    OffsetFilter used(layer, 0.25f);
    OffsetFilter unused(layer, 0.5f);
    Root root(used);

    Image::pruneGraph<Host>(root);

    EXPECT_THAT(layer.consumers, ElementsAre(&used));
    EXPECT_TRUE(unused.inputs.empty());
}

TEST(GraphReduction, TotalPassesCountsEachReachableNodeOnce) {
    Layer layer(nullptr, {0, 0, 4, 4});
    OffsetFilter shared(layer, 0.25f);
    BoxFilter left(shared, 1), right(shared, 2);
    SumFilter last(left, right);
    EXPECT_EQ(last.totalPasses(), 4u);  // the layer counts 0
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Test
