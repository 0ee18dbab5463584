// The minimum and maximum filter against a box window worked out pixel by pixel, at every depth and
// component order; its graph operations; the effects' radii and operations.
#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <sstream>

#include "host/standalone/Host.h"
#include "plugins/MinMaxPlugin.h"
#include "tests/support/ComponentGrid.h"

namespace Tw::Image {
namespace TW_FILE_LOCAL {

using StandaloneHost = Tw::Host::Standalone::Host;
using MaxFilter = MinMaxFilter<StandaloneHost, MaxOp>;
using MinFilter = MinMaxFilter<StandaloneHost, MinOp>;
using Tw::Test::componentsOf;
namespace Param = Tw::Host::Param;

// Random components: any 8-bit value; at 16 bits mostly 0..32767 with a tenth at white, 32768; floats
// from -0.5 to 2.
ImageBuffer randomImage(const PixelRect& rect, PixelFormat format, unsigned seed) {
    std::mt19937 random(seed);
    const int depth = formatDepth(format);
    return Tw::Test::gridImage(rect, format, [&](int32_t, int32_t, int) -> double {
        if (depth == 8) return std::uniform_int_distribution<int>(0, 255)(random);
        if (depth == 16)
            return random() % 10 == 0 ? 32768 : std::uniform_int_distribution<int>(0, 32767)(random);
        return std::uniform_real_distribution<float>(-0.5f, 2.0f)(random);
    });
}

// Components in memory order, pixel after pixel.
ImageBuffer imageOf(const PixelRect& rect, PixelFormat format, const std::vector<double>& values) {
    return Tw::Test::gridImage(rect, format, [&](int32_t x, int32_t y, int c) {
        return values[static_cast<std::size_t>(((y - rect.top) * rect.width() + x - rect.left) * 4 + c)];
    });
}

// The order of the comparison: 16-bit values as signed 16-bit integers.
double rank(double v, int depth) {
    return depth == 16 && v >= 32768 ? v - 65536 : v;
}

// Each component of `out` the extreme of the input's components in the box around it, positions outside
// the input left out; an empty box gives 0.
std::vector<double> bruteForce(const ImageBuffer& input, const PixelRect& out, int rx, int ry, bool max) {
    const PixelRect r = input.rect;
    std::vector<double> result;
    for (int y = out.top; y < out.bottom; ++y) {
        for (int x = out.left; x < out.right; ++x) {
            for (int c = 0; c < 4; ++c) {
                bool any = false;
                double best = 0;
                for (int v = std::max(y - ry, r.top); v <= std::min(y + ry, r.bottom - 1); ++v) {
                    for (int u = std::max(x - rx, r.left); u <= std::min(x + rx, r.right - 1); ++u) {
                        const double s = Tw::Test::componentAt(input, u, v, c);
                        const double sr = rank(s, input.depth()), br = rank(best, input.depth());
                        if (!any || (max ? sr > br : sr < br)) best = s;
                        any = true;
                    }
                }
                result.push_back(best);
            }
        }
    }
    return result;
}

// "" when equal, else where the first difference lies.
std::string firstDifference(const std::vector<double>& actual, const std::vector<double>& expected,
                            const PixelRect& rect) {
    if (actual.size() != expected.size()) return "sizes differ";
    for (std::size_t i = 0; i < actual.size(); ++i) {
        if (actual[i] == expected[i]) continue;
        const auto pixel = static_cast<int>(i / 4);
        std::ostringstream text;
        text << "at (" << rect.left + pixel % rect.width() << ", " << rect.top + pixel / rect.width()
             << ") component " << i % 4 << ": " << actual[i] << " instead of " << expected[i];
        return text.str();
    }
    return "";
}

// One node of `Op` with radii (rx, ry) over `input`, rendered into `outRect` through the whole graph. The
// output starts out as a pattern that no render gives, so that a pixel left unwritten shows.
template <class Op>
std::vector<double> render(const ImageBuffer& input, int rx, int ry, const PixelRect& outRect) {
    ::Tw::Test::BareHost host;
    FilterLayer<StandaloneHost> layer(const_cast<ImageBuffer*>(&input));
    MinMaxFilter<StandaloneHost, Op> node(layer, rx, ry);
    ImageBuffer out(&host);
    out.allocate(outRect, input.pixelFormat());
    std::memset(out.pixels(), 0xA5, static_cast<std::size_t>(out.rowStride()) * outRect.height());
    prepareGraph<StandaloneHost>(node, host, out);
    return componentsOf(out);
}

template <class Op>
void expectBruteForce(const ImageBuffer& input, int rx, int ry) {
    SCOPED_TRACE(testing::Message() << Op::name << " depth " << input.depth() << " radii " << rx << ", "
                                    << ry);
    const bool max = std::is_same_v<Op, MaxOp>;
    EXPECT_EQ(firstDifference(render<Op>(input, rx, ry, input.rect),
                              bruteForce(input, input.rect, rx, ry, max), input.rect),
              "");
}

TEST(MinMaxWindows, EqualTheBoxAtEveryDepthAndOrder) {
    // Radius 1 and unequal radii keep both passes in one node; from 2 on both axes the graph splits them.
    // Sizes that leave partial groups of rows and of columns, with a frame not at the origin; radii
    // beyond small and thin images give every pixel the extreme of its row and column passes.
    struct Case {
        PixelRect rect;
        std::vector<std::pair<int, int>> radii;
    };
    const std::vector<std::pair<int, int>> usual = {{1, 1}, {1, 0}, {0, 2}, {1, 4}, {2, 2}, {3, 7}, {10, 4}},
                                           large = {{40, 30}, {100, 1}, {1, 100}, {3, 5}};
    const Case cases[] = {{{-3, 5, 34, 28}, usual}, {{0, 0, 75, 41}, usual}, {{0, 0, 9, 6}, large},
                          {{0, 0, 1, 40}, large},   {{0, 0, 50, 1}, large},  {{0, 0, 2, 3}, large}};
    unsigned seed = 1;
    for (const PixelFormat format : Tw::Test::kEveryFormat) {
        for (const Case& c : cases) {
            const ImageBuffer input = randomImage(c.rect, format, seed++);
            for (const auto& [rx, ry] : c.radii) {
                expectBruteForce<MaxOp>(input, rx, ry);
                expectBruteForce<MinOp>(input, rx, ry);
            }
        }
    }
}

// Unsplit, the node's temporary spans the output, and a pixel outside the input whose box meets it takes
// the box; further out the result is transparent black. Split, the row pass covers only the input's
// bounds, so columns beyond them end transparent black; rows beyond them still take the boxes that reach
// them.
TEST(MinMaxWindows, AnOutputBeyondTheInputTakesTheWindowsThatReachIt) {
    const PixelRect inputRect{0, 0, 12, 9}, outRect{-20, -15, 33, 30};
    for (const PixelFormat format : Tw::Test::kEveryFormat) {
        const ImageBuffer input = randomImage(inputRect, format, 13);
        SCOPED_TRACE(testing::Message() << "depth " << input.depth());
        for (const auto& [rx, ry] : {std::pair{1, 4}, std::pair{5, 1}}) {
            EXPECT_EQ(firstDifference(render<MinOp>(input, rx, ry, outRect),
                                      bruteForce(input, outRect, rx, ry, false), outRect),
                      "");
        }
        auto split = bruteForce(input, outRect, 3, 2, true);
        for (int y = outRect.top, i = 0; y < outRect.bottom; ++y)
            for (int x = outRect.left; x < outRect.right; ++x, i += 4)
                if (x < inputRect.left || x >= inputRect.right) std::fill_n(split.begin() + i, 4, 0.0);
        EXPECT_EQ(firstDifference(render<MaxOp>(input, 3, 2, outRect), split, outRect), "");
    }
}

// White, 32768, between 100 and 7: 16-bit values compare as signed, so the maximum drops white wherever
// another value is in the window and the minimum picks it wherever it is; only a window of white alone
// stays white. Floats beyond 0..1 are kept.
TEST(MinMaxValues, SixteenBitsCompareAsSignedAndFloatsKeepTheirRange) {
    for (const PixelFormat format : {fourCC("ae16"), fourCC("Bgra")}) {
        const ImageBuffer input =
            imageOf({0, 0, 3, 1}, format, {100, 0, 100, 32768, 32768, 32768, 32768, 32768, 7, 7, 7, 7});
        EXPECT_EQ(render<MaxOp>(input, 1, 1, input.rect),
                  (std::vector<double>{100, 0, 100, 32768, 100, 7, 100, 7, 7, 7, 7, 7}));
        EXPECT_EQ(render<MinOp>(input, 1, 1, input.rect), std::vector<double>(12, 32768));
    }
    const ImageBuffer input =
        imageOf({0, 0, 3, 1}, fourCC("ae32"), {0.5, 3.5, -2, 1, 0.25, 0, 7, 0.5, 1, 1, 1, 1});
    EXPECT_EQ(render<MaxOp>(input, 2, 0, input.rect),
              (std::vector<double>{1, 3.5, 7, 1, 1, 3.5, 7, 1, 1, 3.5, 7, 1}));
    EXPECT_EQ(render<MinOp>(input, 2, 0, input.rect),
              (std::vector<double>{0.25, 0, -2, 0.5, 0.25, 0, -2, 0.5, 0.25, 0, -2, 0.5}));
}

// Graph operations.

TEST(MinMaxNode, BoxesInSeriesFoldIntoOneWithSummedRadii) {
    FilterLayer<StandaloneHost> layer(nullptr, {0, 0, 10, 10});
    MaxFilter first(layer, 2, 3);
    MaxFilter second(first, 4, 1);
    EXPECT_EQ(second.mergeWith(first), MergeResult::Folded);
    EXPECT_EQ(second.xRadius, 6);
    EXPECT_EQ(second.yRadius, 4);

    MinFilter other(layer, 2, 3);
    MaxFilter afterOther(other, 1, 1);
    EXPECT_EQ(afterOther.mergeWith(other), MergeResult::No);

    MaxFilter split(layer, 2, 3);
    split.stage = MaxFilter::HorizontalPass;
    MaxFilter afterSplit(split, 1, 1);
    EXPECT_EQ(afterSplit.mergeWith(split), MergeResult::No);

    // A box that another node reads too must stay as it is.
    MaxFilter shared(layer, 2, 2);
    MaxFilter reader(shared, 1, 1), otherReader(shared, 3, 3);
    EXPECT_EQ(reader.mergeWith(shared), MergeResult::No);
}

using Radii = std::pair<int32_t, int32_t>;

// The radii of the node the effect builds for "Radius" at a downsampling of (dx, dy); nothing when the
// graph is the input alone.
template <class Op>
std::optional<Radii> radiiFor(int radius, double dx = 1, double dy = 1) {
    Plugins::MinMaxPlugin<StandaloneHost, Op> effect;
    effect.downsampleX = dx;
    effect.downsampleY = dy;
    Param::Parameters params;
    effect.defineParameters(params);
    params.setInt(radius, 0);
    FilterLayer<StandaloneHost> source(nullptr, {0, 0, 10, 10});
    Plugins::FilterChain<StandaloneHost> chain(effect, source, {});
    const auto& node = Plugins::MinMaxPluginFilters<StandaloneHost, Op>::makeFilters(chain, params);
    if (&node == &source) return std::nullopt;
    const auto& filter = dynamic_cast<const MinMaxFilter<StandaloneHost, Op>&>(node);
    return Radii{filter.xRadius, filter.yRadius};
}

// "Radius" is scaled per axis and truncated, down to 0; a factor that is not positive counts as 1. Each
// of the two entries renders its own box.
TEST(MinMaxEffect, RadiiFollowTheDownsamplingAndEachEntryRendersItsBox) {
    EXPECT_EQ(radiiFor<MaxOp>(0), std::nullopt);
    EXPECT_EQ(radiiFor<MinOp>(0), std::nullopt);
    EXPECT_EQ(radiiFor<MaxOp>(1), (Radii{1, 1}));
    EXPECT_EQ(radiiFor<MinOp>(10), (Radii{10, 10}));
    EXPECT_EQ(radiiFor<MaxOp>(10, 0.25, 0.05), (Radii{2, 0}));
    EXPECT_EQ(radiiFor<MaxOp>(7, 0.5, 0), (Radii{3, 7}));

    ImageBuffer input = randomImage({0, 0, 40, 30}, fourCC("bgra"), 9);
    const auto expectBox = [&](StandaloneHost&& effect, bool max) {
        effect.downsampleY = 0.5;
        const auto out =
            Tw::Test::renderEffectImage(effect, input, [](Param::Parameters& p) { p.setInt(4, 0); });
        EXPECT_EQ(firstDifference(componentsOf(out), bruteForce(input, input.rect, 4, 2, max), input.rect),
                  "")
            << (max ? "max" : "min");
    };
    expectBox(Plugins::MaxPlugin<StandaloneHost>(), true);
    expectBox(Plugins::MinPlugin<StandaloneHost>(), false);
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Image
