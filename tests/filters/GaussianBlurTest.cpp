// "Blur" and its node: the recursive Gaussian against sampled Gaussians and convolutions worked out here,
// its edges, its derivatives, its place in the graph, and the same pixels whatever runs it.
#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <tuple>
#include <vector>

#include "host/standalone/Host.h"
#include "image/filters/spatial/GaussianBlurBand.h"
#include "plugins/BlurPlugin.h"
#include "plugins/GlowPlugin.h"
#include "tests/support/BareHost.h"
#include "tests/support/ComponentGrid.h"
#include "tests/support/NodeRender.h"

namespace Tw::Plugins {
namespace TW_FILE_LOCAL {

using Image::fourCC;
using Image::ImageBuffer;
using Image::PixelFormat;
using Image::PixelRect;
using StandaloneHost = Tw::Host::Standalone::Host;
using BlurNode = Image::GaussianBlurFilter<StandaloneHost>;
using Layer = Image::FilterLayer<StandaloneHost>;
using Test::BareHost;
using Test::componentsOf;
using Test::fractionImage;

double fractionAt(const ImageBuffer& image, int x, int y, int c) {
    return Test::componentAt(image, x, y, c) / Image::formatMaximum(image.pixelFormat());
}

// A picture with smooth parts, hard edges and a different value per component, alpha included.
double testPattern(int x, int y, int c) {
    const double smooth = 0.5 + 0.4 * std::sin(0.21 * x + 0.13 * y + c);
    return (x / 7 + y / 5) % 3 == 0 ? smooth : (c * 37 + x * 11 + y * 5) % 256 / 255.0;
}

struct RenderSettings {
    double downsampleX = 1, downsampleY = 1;
    std::optional<PixelRect> outputRect = std::nullopt;  // the input's rectangle unless given
};

// "Blur", or another effect whose one parameter is its radius.
template <template <class> class Plugin = BlurPlugin>
ImageBuffer renderBlur(ImageBuffer& in, double radius, const RenderSettings& settings = {}) {
    Plugin<StandaloneHost> effect;
    effect.downsampleX = settings.downsampleX;
    effect.downsampleY = settings.downsampleY;
    return Test::renderEffectImage(
        effect, in, [&](Param::Parameters& params) { params.setFloat(0, radius); }, {}, settings.outputRect);
}

// One node over `in`, through the whole of a graph render.
ImageBuffer renderNode(ImageBuffer& in, float radiusX, float radiusY, int32_t kindX = 0, int32_t kindY = 0) {
    Layer layer(&in);
    BlurNode node(layer, radiusX, radiusY, 0, kindX, kindY);
    return Test::renderImage(node, in.rect, in.pixelFormat());
}

double gaussian(double t, double sigma) {
    return std::exp(-0.5 * t * t / (sigma * sigma)) / (std::sqrt(2 * M_PI) * sigma);
}

// What the whole recursion (forward, backward, scale) passes of a constant: twice the forward pass' gain
// less the sample they share, or for the odd first derivative, that shared sample alone.
double constantGain(const Image::GaussianBlurCoefficients& c) {
    const double forward = (c.n0 + c.n1 + c.n2 + c.n3) / (1 + c.d1 + c.d2 + c.d3 + c.d4);
    return c.scale * (c.kind == 1 ? c.n0 : 2 * forward - c.n0);
}

// ---- Smoothing, against sampled Gaussians ----

TEST(GaussianBlur, AnImpulseSpreadsAsASampledGaussian) {
    for (const double sigma : {2.5, 6.0}) {
        ImageBuffer in = fractionImage({0, 0, 101, 101}, fourCC("ae32"),
                                       [](int x, int y, int) { return x == 50 && y == 50 ? 1.0 : 0.0; });
        const ImageBuffer out = renderBlur(in, sigma);
        const double peak = gaussian(0, sigma) * gaussian(0, sigma);
        double sum = 0;
        for (int y = 0; y < 101; ++y) {
            for (int x = 0; x < 101; ++x) {
                const double expected = gaussian(x - 50, sigma) * gaussian(y - 50, sigma);
                for (int c = 0; c < 4; ++c)
                    ASSERT_NEAR(fractionAt(out, x, y, c), expected, 0.015 * peak) << x << "," << y;
                sum += fractionAt(out, x, y, 0);
            }
        }
        EXPECT_NEAR(sum, 1.0, 0.01) << "sigma " << sigma;
    }
}

// The backward pass starts from the same state as the forward one, with + n0 where its steady state has
// - n0: the right and bottom edges brighten by about n0 * scale (1 / (sigma sqrt(2 pi))), compounded in
// the corner, and it fades within a few sigma. Elsewhere a flat picture stays flat.
TEST(GaussianBlur, FlatStaysFlatButForTheRightAndBottomEdges) {
    const double sigma = 4, level = 0.6;
    ImageBuffer in = fractionImage({0, 0, 120, 100}, fourCC("ae32"), [&](int, int, int) { return level; });
    const ImageBuffer out = renderBlur(in, sigma);
    const auto c = Image::makeGaussianBlurCoefficients(sigma, 0);
    // Deriche's fit passes a constant at very nearly its level, once per pass.
    const double gain = constantGain(c), brightening = c.n0 * c.scale;
    EXPECT_NEAR(gain, 1, 1e-3);
    const int reach = static_cast<int>(8 * sigma);
    for (int y = 0; y < 100; ++y) {
        for (int x = 0; x < 120; ++x) {
            const double v = fractionAt(out, x, y, 3);
            if (x >= 120 - reach || y >= 100 - reach) {
                ASSERT_GE(v, level * (1 - 1e-3)) << x << "," << y;
                ASSERT_LE(v, level * (1 + brightening) * (1 + brightening)) << x << "," << y;
            } else if (x < reach || y < reach) {
                ASSERT_NEAR(v, level, 1e-3 * level) << x << "," << y;
            } else {
                ASSERT_NEAR(v, level * gain * gain, 2e-6) << x << "," << y;
            }
        }
    }
    for (const double edge : {fractionAt(out, 119, 50, 0), fractionAt(out, 60, 99, 1)}) {
        EXPECT_GT(edge, level * (1 + 0.8 * brightening));
        EXPECT_LT(edge, level * (1 + brightening));
    }
}

// Beyond the left edge a line continues with the Gaussian-weighted mean of its first 3.5 sigma: a convolution
// of the line so continued is what the rows pass must give there, not darker (zeros) and not a mirror.
TEST(GaussianBlur, TheLeftEdgeContinuesItsLocalMean) {
    const double sigma = 5;
    const auto row = [](int x) { return x < 6 ? 0.9 : 0.1 + 0.002 * x; };
    ImageBuffer in = fractionImage({0, 0, 120, 2}, fourCC("ae32"), [&](int x, int, int) { return row(x); });
    const ImageBuffer out = renderNode(in, static_cast<float>(sigma), 0);

    const auto weights = Image::makeGaussianBlurCoefficients(sigma, 0).weights;
    double edge = 0;
    for (std::size_t i = 0; i < weights.size(); ++i)
        edge += weights[i] * row(static_cast<int>(i));
    for (int x = 0; x < 30; ++x) {
        double expected = 0;
        for (int t = -40; t <= 40; ++t)
            expected += gaussian(t, sigma) * (x - t < 0 ? edge : row(x - t));
        EXPECT_NEAR(fractionAt(out, x, 1, 0), expected, 0.004) << x;
    }
}

// Fewer samples than weights: the edge means use the weights there are, and the line keeps its level
// but for the brightening at its end, which here reaches all of it.
TEST(GaussianBlur, ALineShorterThanTheReachKeepsItsLevel) {
    ImageBuffer in = fractionImage({0, 0, 5, 60}, fourCC("ae32"), [](int, int, int) { return 0.5; });
    const ImageBuffer out = renderNode(in, 10, 0);
    for (int x = 0; x < 5; ++x) {
        EXPECT_GE(fractionAt(out, x, 10, 0), 0.5) << x;
        EXPECT_LE(fractionAt(out, x, 10, 0), 0.55) << x;
    }
}

// ---- The recursion's gains, and derivatives ----

// The response to a ramp of slope 1 (kind 1) or to x^2 at its vertex (kind 2), for a kernel of the
// sampled derivative scaled to an absolute sum of 1, as the recursion's own impulse response is.
double derivativeGain(int kind, double sigma) {
    double moment = 0, absoluteSum = 0;
    for (int k = -100; k <= 100; ++k) {
        const double t = k / sigma, g = std::exp(-0.5 * t * t);
        const double w = kind == 1 ? -t * g : (t * t - 1) * g;
        moment += (kind == 1 ? -k : k * k) * w;
        absoluteSum += std::fabs(w);
    }
    return moment / absoluteSum;
}

TEST(GaussianBlur, FirstDerivativeOfARampIsItsSlope) {
    const double sigma = 4, slope = 0.003;
    const auto c = Image::makeGaussianBlurCoefficients(sigma, 1);
    for (const double sign : {1.0, -1.0}) {
        const auto ramp = [&](int x) { return 0.5 + sign * slope * (x - 80); };
        ImageBuffer in =
            fractionImage({0, 0, 160, 2}, fourCC("ae32"), [&](int x, int, int) { return ramp(x); });
        const ImageBuffer out = renderNode(in, static_cast<float>(sigma), 0, 1);
        for (int x = 40; x < 120; ++x) {
            const double expected = sign * slope * derivativeGain(1, sigma) + constantGain(c) * ramp(x);
            EXPECT_NEAR(fractionAt(out, x, 0, 2), expected, 0.01 * slope * derivativeGain(1, sigma)) << x;
        }
    }
    // Negative responses clamp to 0 where components are integers.
    for (const PixelFormat format : {fourCC("argb"), fourCC("Bgra")}) {
        ImageBuffer falling =
            fractionImage({0, 0, 160, 2}, format, [&](int x, int, int) { return 0.9 - 0.004 * x; });
        const ImageBuffer out = renderNode(falling, static_cast<float>(sigma), 0, 1);
        for (int x = 20; x < 160; ++x)
            ASSERT_EQ(fractionAt(out, x, 1, 1), 0.0) << Image::formatDepth(format) << " " << x;
    }
}

// The second derivative's scale counts its negative middle sample twice over (total = 2 sum - n0), so its
// response falls somewhat short of the sampled derivative's, the more so the narrower it is.
TEST(GaussianBlur, SecondDerivativeOfAParabolaAndOfARamp) {
    const double sigma = 8, curvature = 0.00005;
    ImageBuffer parabola = fractionImage({0, 0, 161, 2}, fourCC("ae32"),
                                         [&](int x, int, int) { return curvature * (x - 80) * (x - 80); });
    const double ideal = curvature * derivativeGain(2, sigma);
    const double got = fractionAt(renderNode(parabola, static_cast<float>(sigma), 0, 2), 80, 0, 0);
    EXPECT_GT(got, 0.8 * ideal);
    EXPECT_LT(got, 0.95 * ideal);

    // A ramp has no curvature: what is left is the recursion's gain for a constant.
    const auto ramp = [](int x) { return 0.1 + 0.002 * x; };
    ImageBuffer in = fractionImage({0, 0, 161, 2}, fourCC("ae32"), [&](int x, int, int) { return ramp(x); });
    const double leak = constantGain(Image::makeGaussianBlurCoefficients(sigma, 2)) * ramp(80);
    EXPECT_NEAR(fractionAt(renderNode(in, static_cast<float>(sigma), 0, 2), 80, 0, 0), leak, 1e-5);
}

// A derivative line starts from nothing at both ends, so a flat line shows a step up at its left end and
// a step down at its right one.
TEST(GaussianBlur, DerivativesSeeEdgesAsSteps) {
    ImageBuffer in = fractionImage({0, 0, 80, 2}, fourCC("ae32"), [](int, int, int) { return 0.5; });
    const ImageBuffer out = renderNode(in, 3, 0, 1);
    const double middle = fractionAt(out, 40, 0, 0);
    EXPECT_GT(fractionAt(out, 1, 0, 0) - middle, 0.01);
    EXPECT_LT(fractionAt(out, 78, 0, 0) - middle, -0.01);
}

// ---- Radii ----

TEST(Blur, TinyRadiiLeaveThePictureAlone) {
    BlurPlugin<StandaloneHost> effect;
    Param::Parameters params;
    effect.defineParameters(params);
    params.setFloat(0, 0);
    EXPECT_FALSE(effect.chainIsActive(params, {0, 0, 10, 10}));
    params.setFloat(0, 0.001);
    EXPECT_TRUE(effect.chainIsActive(params, {0, 0, 10, 10}));

    // Values no blur could give back unchanged, had it run.
    ImageBuffer floats = fractionImage({0, 0, 23, 9}, fourCC("ae32"),
                                       [](int x, int y, int c) { return 1.7 * testPattern(x, y, c) - 0.3; });
    const std::vector<double> original = componentsOf(floats);
    EXPECT_EQ(componentsOf(renderBlur(floats, 0)), original);
    EXPECT_EQ(componentsOf(renderBlur(floats, 0.001)), original);
    const std::vector<double> nearly = componentsOf(renderBlur(floats, 0.2));
    for (std::size_t i = 0; i < original.size(); ++i)
        ASSERT_NEAR(nearly[i], original[i], 1e-3 * std::fabs(original[i]) + 3e-4) << i;

    ImageBuffer bytes = fractionImage({0, 0, 23, 9}, fourCC("argb"), testPattern);
    EXPECT_EQ(componentsOf(renderBlur(bytes, 0.2)), componentsOf(bytes));
}

TEST(Blur, RadiiShrinkWithTheDownsampledFrame) {
    ImageBuffer in = fractionImage({0, 0, 41, 33}, fourCC("Bgra"), testPattern);
    EXPECT_EQ(componentsOf(renderBlur(in, 8, {.downsampleX = 0.5, .downsampleY = 0.5})),
              componentsOf(renderBlur(in, 4)));
    EXPECT_EQ(componentsOf(renderBlur(in, 8, {.downsampleX = 0.25, .downsampleY = 1})),
              componentsOf(renderNode(in, 2, 8)));
}

// A line of a very tall or wide frame: its buffer is counted beyond the range of an int, and the group
// shrinks to one line to keep the buffer small.
TEST(GaussianBlur, LongLinesCountTheirBufferIn64Bits) {
    EXPECT_EQ(Image::lineBufferEntries(1 << 30, 16), 2 * ((uint64_t{1} << 30) + 8) * 16);
    EXPECT_EQ(Image::lineGroupSize(Image::BlurAxis::Columns, 1, 1 << 30), 1);
    EXPECT_EQ(Image::lineGroupSize(Image::BlurAxis::Rows, 4, 100), 8);
}

// ---- "Glow": the second derivative across the rows, smoothed down the columns ----

// Glow shows curvature alone. A bright bar curves down inside and up beside it; float keeps the negative
// response inside, integers stop at 0. Far from the bar and from the frame's ends (where the derivative
// starts from nothing, and where the smoothing brightens at the bottom) the frame is flat: only the
// recursions' small gains for a constant are left, negative, on every component, alpha included.
TEST(Glow, ABrightBarInAFlatFrame) {
    const auto level = [](int x, int, int c) { return x >= 40 && x < 50 ? 0.9 : 0.1 + 0.1 * c; };
    const double across = constantGain(Image::makeGaussianBlurCoefficients(3, 2));
    const double down = constantGain(Image::makeGaussianBlurCoefficients(3, 0));
    EXPECT_LT(across, 0);
    EXPECT_GT(across, -0.01);
    for (const PixelFormat format : {fourCC("ae32"), fourCC("Bgra"), fourCC("argb"), fourCC("ae16")}) {
        ImageBuffer in = fractionImage({0, 0, 160, 100}, format, level);
        const ImageBuffer out = renderBlur<GlowPlugin>(in, 3);
        const bool floats = Image::formatMaximum(format) == 1;
        EXPECT_GT(fractionAt(out, 37, 40, 1), 0.01);
        EXPECT_TRUE(floats ? fractionAt(out, 45, 40, 1) < -0.01 : fractionAt(out, 45, 40, 1) == 0);
        for (int c = 0; c < 4; ++c) {
            const double flat = floats ? across * down * level(110, 40, c) : 0;
            EXPECT_NEAR(fractionAt(out, 110, 40, c), flat, 1e-8) << Image::formatDepth(format) << " " << c;
        }
    }
}

// Unlike "Blur", "Glow" takes its radius in the pixels of the frame it renders, whatever the host's
// downsampling.
TEST(Glow, TheRadiusIsInRenderedPixelsAtAnyDownsampling) {
    ImageBuffer in = fractionImage({0, 0, 41, 33}, fourCC("BGra"), testPattern);
    const std::vector<double> full = componentsOf(renderBlur<GlowPlugin>(in, 3));
    EXPECT_EQ(componentsOf(renderBlur<GlowPlugin>(in, 3, {.downsampleX = 0.5, .downsampleY = 0.5})), full);
    EXPECT_EQ(componentsOf(renderNode(in, 3, 3, 2, 0)), full);
    EXPECT_NE(componentsOf(renderBlur<GlowPlugin>(in, 1.5)), full);
}

// ---- The node in the graph ----

TEST(GaussianBlurNode, TwoInSeriesFoldIntoOne) {
    Layer layer(nullptr, {0, 0, 10, 10});
    BlurNode first(layer, 2, 1, 0, 1, 0);
    BlurNode second(first, 3, 4, 0, 1, 2);
    EXPECT_EQ(second.mergeWith(first), Image::MergeResult::Folded);
    EXPECT_EQ(second.radiusX, 5);
    EXPECT_EQ(second.radiusY, 5);
    EXPECT_EQ(second.kindX, 2);
    EXPECT_EQ(second.kindY, 2);

    // Derivatives beyond the second, differing stages, a device threshold or a shared input: no fold.
    BlurNode third(second, 1, 1, 0, 1, 0);
    EXPECT_EQ(third.mergeWith(second), Image::MergeResult::No);
    BlurNode plain(layer, 1, 1, 0, 0, 0);
    BlurNode split(plain, 1, 1, 0, 0, 0);
    split.stage = BlurNode::VerticalPass;
    EXPECT_EQ(split.mergeWith(plain), Image::MergeResult::No);
    split.stage = BlurNode::BothPasses;
    split.useThresh = true;
    EXPECT_EQ(split.mergeWith(plain), Image::MergeResult::No);
    split.useThresh = false;
    const BlurNode otherReader(plain, 1, 1, 0, 0, 0);
    EXPECT_EQ(split.mergeWith(plain), Image::MergeResult::No);
}

// Split, the rows pass takes the horizontal radius and derivative and the columns pass the vertical ones;
// the temporary the unsplit node needs goes with the split.
TEST(GaussianBlurNode, SplitsIntoARowsNodeAndAColumnsNode) {
    BareHost host;
    Layer layer(nullptr, {0, 0, 10, 10});
    BlurNode node(layer, 2, 3, 0, 1, 2);
    const Image::ImageDescriptor format;
    EXPECT_EQ(node.scratchBytes(nullptr, {0, 0, 10, 10}, format), 400u);
    node.splitPasses(host);
    auto& first = static_cast<BlurNode&>(*node.firstPassNode);
    EXPECT_EQ(std::tie(first.radiusX, first.radiusY, first.kindX, first.kindY),
              std::make_tuple(2.0f, 0.0f, 1, 0));
    EXPECT_EQ(std::tie(node.radiusX, node.radiusY, node.kindX, node.kindY),
              std::make_tuple(0.0f, 3.0f, 0, 2));
    EXPECT_EQ(node.scratchBytes(nullptr, {0, 0, 10, 10}, format), 0u);
}

// ---- The same pixels whatever runs them ----

TEST(GaussianBlur, EveryDepthAndOrderGivesTheSamePicture) {
    // Kept clear of white, which the brightening at the right and bottom edges would pass in float only.
    const auto belowWhite = [](int x, int y, int c) { return 0.85 * testPattern(x, y, c); };
    for (const PixelFormat format : Tw::Test::kEveryFormat) {
        ImageBuffer in = fractionImage({0, 0, 37, 29}, format, belowWhite);
        // The same values in float, where nothing rounds between the passes and at the end.
        ImageBuffer exact = fractionImage(in.rect, fourCC("ae32"),
                                          [&](int x, int y, int c) { return fractionAt(in, x, y, c); });
        const std::vector<double> expected = componentsOf(renderBlur(exact, 2.5));
        const std::vector<double> got = componentsOf(renderBlur(in, 2.5));
        const double white = Image::formatMaximum(format);
        for (std::size_t i = 0; i < got.size(); ++i)
            ASSERT_NEAR(got[i] / white, expected[i], 1.01 / white) << Image::formatDepth(format) << " " << i;
    }
}

// The node unsplit runs both passes itself, through a temporary, and may write over its input.
TEST(GaussianBlur, TheUnsplitNodeGivesTheSplitGraphsPixelsEvenInPlace) {
    for (const PixelFormat format : {fourCC("argb"), fourCC("BGra")}) {
        ImageBuffer in = fractionImage({0, 0, 45, 31}, format, testPattern);
        for (const float radiusY : {3.0f, 0.0f}) {
            const std::vector<double> expected = componentsOf(renderNode(in, 2.5f, radiusY));
            BareHost host;
            Layer layer(&in);
            BlurNode node(layer, 2.5f, radiusY, 0, 0, 0);
            ImageBuffer copy = fractionImage(in.rect, format, testPattern);
            ImageBuffer* const inputs[] = {&copy};
            node.compute(host, copy, inputs);
            EXPECT_EQ(componentsOf(copy), expected) << radiusY;
        }
    }
}

TEST(GaussianBlur, OutputBeyondTheInputIsTransparentBlack) {
    ImageBuffer in = fractionImage({10, 5, 30, 25}, fourCC("ae32"), [](int, int, int) { return 0.5; });
    const ImageBuffer out = renderBlur(in, 2, {.outputRect = PixelRect{0, 0, 40, 30}});
    EXPECT_EQ(fractionAt(out, 5, 15, 0), 0.0);
    EXPECT_EQ(fractionAt(out, 35, 15, 3), 0.0);
    EXPECT_EQ(fractionAt(out, 20, 2, 1), 0.0);
    EXPECT_NEAR(fractionAt(out, 12, 8, 2), 0.5, 1e-3);
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Plugins
