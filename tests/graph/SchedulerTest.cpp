// Evaluation of graphs: buffers lent downward, shared results, the order of inputs, regions, bands,
// progress and abort.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TestFilters.h"

namespace Tw::Test {
namespace TW_FILE_LOCAL {

using Image::fourCC;
using ::testing::ElementsAre;

class SchedulerTest : public ::testing::Test {
protected:
    // The output belongs to the caller, not to the host, so the host counts only what the graph takes.
    ImageBuffer output(const PixelRect& rect, Image::PixelFormat format = fourCC("ae32")) {
        ImageBuffer image;
        image.allocate(rect, format);
        image.clear(rect);
        return image;
    }

    BareHost host;
};

TEST_F(SchedulerTest, ChainOfPerPixelNodesRunsInTheOutputBufferAtEveryFormat) {
    for (const auto format :
         {fourCC("argb"), fourCC("ae16"), fourCC("ae32"), fourCC("bgra"), fourCC("Bgra"), fourCC("BGra")}) {
        SCOPED_TRACE(Image::formatDepth(format));
        const PixelRect rect{0, 0, 40, 30};
        ImageBuffer source = patternImage(nullptr, rect, format);
        ImageBuffer out = output(rect, format);
        BareHost chainHost;
        Layer layer(&source);
        OffsetFilter first(layer, 0.125f), second(first, 0.125f), third(second, 0.125f);

        // Without reduction the three nodes stay three, and still take no buffer of their own.
        Image::renderGraph<Host>(third, chainHost, out);

        EXPECT_EQ(chainHost.allocationCount(), 0u);
        const float step = Image::formatDepth(format) == 32 ? 1e-6f : 2.0f / 255;
        EXPECT_NEAR(componentAt(out, 20, 10, 0), 0.2f + 0.375f, step);
        EXPECT_NEAR(componentAt(out, 20, 10, 1), 0.1f + 0.375f, step);
        EXPECT_NEAR(componentAt(out, 20, 10, 3), 1.0f, step);
    }
}

TEST_F(SchedulerTest, SharedNodeIsComputedOnceAndReleasedAfterItsLastRead) {
    const PixelRect rect{0, 0, 16, 8};
    ImageBuffer source = patternImage(nullptr, rect);
    ImageBuffer out = output(rect);
    ComputeLog log;
    Layer layer(&source);
    BoxFilter shared(layer, 1, &log);
    OffsetFilter left(shared, 0.125f, &log), right(shared, 0.25f, &log);
    SumFilter last(left, right, &log);

    Image::prepareGraph<Host>(last, host, out);

    EXPECT_EQ(std::count(log.begin(), log.end(), &shared), 1);
    EXPECT_EQ(log.size(), 4u);
    EXPECT_FALSE(shared.cachedResult.holdsAnything());
    EXPECT_EQ(host.bytesInUse(), 0u);
    // Neither branch ran in place on the shared result: each saw it unchanged.
    const float boxed = (0.04f + 0.05f + 0.06f) / 3;
    EXPECT_NEAR(componentAt(out, 5, 3, 0), 2 * boxed + 0.375f, 1e-6f);
}

TEST_F(SchedulerTest, SharedNodeIsAskedForTheBoundingBoxOfItsConsumersRequests) {
    Layer layer(nullptr, {-100, -100, 100, 100});
    BoxFilter shared(layer, 2);
    Image::requestRegion(shared, {0, 0, 10, 10});
    Image::requestRegion(shared, {20, 20, 30, 30});
    EXPECT_EQ(shared.outputRect, (PixelRect{0, 0, 30, 30}));
    EXPECT_EQ(layer.outputRect, (PixelRect{-2, 0, 32, 30}));

    // A request already covered changes nothing but clears the node's cache.
    shared.cachedResult.image = std::make_shared<ImageBuffer>();
    Image::requestRegion(shared, {5, 5, 6, 6});
    EXPECT_EQ(shared.outputRect, (PixelRect{0, 0, 30, 30}));
    EXPECT_FALSE(shared.cachedResult.holdsAnything());
}

TEST_F(SchedulerTest, RegionsFollowBoundsAndRequests) {
    {
        // Wholly outside what the layer can give: the layer is asked for nothing, and the output is black.
        const PixelRect layerRect{0, 0, 10, 10};
        ImageBuffer source = patternImage(nullptr, layerRect);
        Layer layer(&source);
        BoxFilter box(layer, 1);
        ImageBuffer out = output({100, 100, 104, 104});
        Image::prepareGraph<Host>(box, host, out);
        EXPECT_TRUE(layer.outputRect.isEmpty());
        EXPECT_EQ(componentAt(out, 101, 101, 2), 0.0f);
    }
    {
        // A generator has infinite bounds and is asked for exactly the output's rectangle.
        GreyGenerator grey(0.5f);
        OffsetFilter offset(grey, 0.25f);
        ImageBuffer out = output({-3, 5, 7, 9});
        Image::prepareGraph<Host>(offset, host, out);
        EXPECT_EQ(grey.outputRect, (PixelRect{-3, 5, 7, 9}));
        EXPECT_FLOAT_EQ(componentAt(out, -3, 8, 1), 0.75f);
    }
}

TEST_F(SchedulerTest, InputsRunLargestEstimateFirstAndTiesInInputOrder) {
    const PixelRect rect{0, 0, 32, 32};
    ImageBuffer source = patternImage(nullptr, rect);
    ComputeLog log;
    {
        // Both branches deliver one image, but the second needs two alive at once on its way.
        Layer layer(&source);
        OffsetFilter small(layer, 0.125f, &log);
        BoxFilter narrow(layer, 1, &log), wide(layer, 2, &log);
        SumFilter big(narrow, wide, &log);
        SumFilter last(small, big, &log);
        ImageBuffer out = output(rect);
        Image::renderGraph<Host>(last, host, out);
        EXPECT_THAT(log, ElementsAre(&narrow, &wide, &big, &small, &last));
    }
    log.clear();
    {
        Layer layer(&source);
        OffsetFilter first(layer, 0.125f, &log), second(layer, 0.25f, &log);
        SumFilter last(first, second, &log);
        ImageBuffer out = output(rect);
        Image::renderGraph<Host>(last, host, out);
        EXPECT_THAT(log, ElementsAre(&first, &second, &last));
    }
}

TEST_F(SchedulerTest, EmptyOutputEvaluatesNothingButCountsProgress) {
    ImageBuffer source = patternImage(nullptr, {0, 0, 8, 8});
    ComputeLog log;
    Layer layer(&source);
    BoxFilter box(layer, 1, &log);
    OffsetFilter offset(box, 0.25f, &log);
    ImageBuffer out;
    out.rect = {4, 4, 4, 9};
    std::vector<uint64_t> reports;
    host.setProgressCallback([&](uint64_t done, uint64_t) {
        reports.push_back(done);
        return true;
    });

    Image::prepareGraph<Host>(offset, host, out);

    EXPECT_TRUE(log.empty());
    EXPECT_EQ(host.allocationCount(), 0u);
    // One report as each node ends, the layer's weighing nothing; two passes in all.
    EXPECT_THAT(reports, ElementsAre(0, 1000, 2000));
}

TEST_F(SchedulerTest, LayerAloneIsCopiedIntoTheOutput) {
    ImageBuffer source = patternImage(nullptr, {0, 0, 8, 8}, fourCC("argb"));
    ImageBuffer out = output({2, 2, 6, 6}, fourCC("ae32"));
    Layer layer(&source);
    Image::prepareGraph<Host>(layer, host, out);
    EXPECT_NEAR(componentAt(out, 5, 3, 0), 0.05f, 1.0f / 255);
}

TEST_F(SchedulerTest, BandsSplitRowsEvenlyEvenWhenWorkersOutnumberThem) {
    Layer layer(nullptr, {0, 0, 5, 3});
    RecordingFilter recording(layer);
    ImageBuffer out = output({0, 0, 5, 3});
    host.threadCount = 8;
    recording.compute(host, out, nullptr);

    ASSERT_EQ(recording.calls.size(), 8u);
    int emptyBands = 0;
    std::vector<int32_t> rows;
    for (const auto& call : recording.calls) {
        EXPECT_EQ(call.threadCount, 8u);
        EXPECT_EQ(call.band.left, 0);
        EXPECT_EQ(call.band.right, 5);
        if (call.band.isEmpty()) {
            ++emptyBands;
        } else {
            EXPECT_EQ(call.band.height(), 1);
            rows.push_back(call.band.top);
        }
    }
    std::sort(rows.begin(), rows.end());
    EXPECT_EQ(emptyBands, 5);
    EXPECT_THAT(rows, ElementsAre(0, 1, 2));
    EXPECT_EQ(Image::bandOf({0, 10, 4, 110}, 2, 3), (PixelRect{0, 76, 4, 110}));
}

TEST_F(SchedulerTest, RowLoopReportsEvery32RowsFromTheFirst) {
    struct Recorder {
        std::vector<std::pair<uint64_t, uint64_t>> calls;
        void progress(uint64_t done, uint64_t total) { calls.emplace_back(done, total); }
    };
    Recorder tall, single;
    int rows = 0;
    Image::forEachRow(PixelRect{0, 10, 1, 80}, tall, [&](int32_t) { ++rows; });
    Image::forEachRow(PixelRect{0, 0, 1, 1}, single, [&](int32_t) {});
    EXPECT_EQ(rows, 70);
    EXPECT_THAT(tall.calls,
                ElementsAre(std::pair<uint64_t, uint64_t>{0, 70}, std::pair<uint64_t, uint64_t>{32, 70},
                            std::pair<uint64_t, uint64_t>{64, 70}));
    EXPECT_THAT(single.calls, ElementsAre(std::pair<uint64_t, uint64_t>{0, 1}));
}

TEST_F(SchedulerTest, AbortFromTheProgressCallbackUnwindsAndReleasesEveryImage) {
    const PixelRect rect{0, 0, 64, 256};
    ImageBuffer source = patternImage(nullptr, rect);
    ImageBuffer out = output(rect);
    int reports = 0;
    host.setProgressCallback([&](uint64_t, uint64_t) { return ++reports < 4; });
    {
        Layer layer(&source);
        BoxFilter shared(layer, 1);
        OffsetFilter left(shared, 0.125f), right(shared, 0.25f);
        BoxFilter blurred(left, 2);
        SumFilter last(blurred, right);
        EXPECT_THROW(Image::prepareGraph<Host>(last, host, out), Tw::Interrupted);
    }
    EXPECT_EQ(host.abortCode(), 517);
    EXPECT_EQ(reports, 4);
    EXPECT_GT(host.allocationCount(), 0u);
    EXPECT_EQ(host.bytesInUse(), 0u);
    // Once stopped, a host stays stopped, on every thread.
    EXPECT_THROW(host.checkAbort(3), Tw::Interrupted);
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Test
