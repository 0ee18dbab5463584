// "Smoothing": its parameters, the graph it builds at the edges of its settings, its pixels against the
// blurs it is made of, and its two small filters, the layer mix and the difference.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <tuple>

#include "host/standalone/Host.h"
#include "image/graph/Scheduler.h"
#include "plugins/SmoothingPlugin.h"
#include "tests/support/BareHost.h"
#include "tests/support/ComponentGrid.h"

namespace Tw::Plugins {
namespace TW_FILE_LOCAL {

using Image::fourCC;
using Image::ImageBuffer;
using Image::PixelFormat;
using Image::PixelRect;
using Host = Tw::Host::Standalone::Host;
using BareHost = Tw::Test::BareHost;
using Layer = Image::FilterLayer<Host>;
using Blur = Image::DomainTransformBlurFilter<Host>;
using Layers = Image::BlurLayersFilter<Host>;
using Difference = Image::DifferenceFilter<Host>;
using Minimum = Image::MinMaxFilter<Host, Image::MinOp>;
using Maximum = Image::MinMaxFilter<Host, Image::MaxOp>;

// Random values: 16 bits beyond white too.
ImageBuffer randomImage(const PixelRect& rect, PixelFormat format, uint32_t seed) {
    std::mt19937 random(seed);
    const float white = Image::formatMaximum(format);
    std::uniform_real_distribution<float> unit(0.0f, white == 32768 ? 1.25f : 1.0f);
    return Tw::Test::gridImage(rect, format, [&](int32_t, int32_t, int) {
        return white == 1 ? unit(random) : std::floor(unit(random) * white);
    });
}

std::vector<float> componentsOf(const ImageBuffer& image) {
    std::vector<float> values;
    Tw::Test::forEachComponent(image, [&](int32_t, int32_t, int, double v) { values.push_back(float(v)); });
    return values;
}

struct Settings {
    double amount = 30, detail = 40, contrast = 25;
};

void apply(Param::Parameters& params, const Settings& s) {
    params.setFloat(1, s.amount);
    params.setFloat(2, s.detail);
    params.setFloat(3, s.contrast);
}

std::vector<float> render(const Settings& s, ImageBuffer& in) {
    SmoothingPlugin<Host> effect;
    return componentsOf(
        Tw::Test::renderEffectImage(effect, in, [&](Param::Parameters& params) { apply(params, s); }));
}

// The chain "Smoothing" builds, kept for inspection.
struct Chain {
    explicit Chain(const Settings& s, double downsampleX = 1, double downsampleY = 1,
                   ImageBuffer* image = nullptr)
        : source(image, {0, 0, 400, 300}), chain(host, source, {}) {
        host.downsampleX = downsampleX;
        host.downsampleY = downsampleY;
        SmoothingPlugin<Host>().defineParameters(params);
        apply(params, s);
        last = &SmoothingPluginFilters<Host>::makeFilters(chain, params);
    }
    Layers& layers() { return dynamic_cast<Layers&>(*last); }
    Blur& smooth() { return layers().textureBlurA; }
    // The minimum box of the contrast edges.
    const Minimum& minimum() { return dynamic_cast<const Minimum&>(*smooth().inputs.at(1)->inputs.at(0)); }

    BareHost host;
    Layer source;
    Plugins::FilterChain<Host> chain;
    Param::Parameters params;
    Image::FilterBase<Host>* last = nullptr;
};

TEST(SmoothingGraph, TheEdgesOfTheSettings) {
    Chain none({.amount = 0});
    EXPECT_EQ(none.last, &none.source);
    // Contrast 0: no minimum, maximum or difference, and the blur guides itself.
    Chain flat({.contrast = 0});
    EXPECT_THAT(flat.smooth().inputs, testing::ElementsAre(&flat.source));
    EXPECT_TRUE(flat.smooth().guideIsInput1);
    for (const auto& [contrast, radius, weight] :
         {std::tuple{50.0, 30, 1.0f}, {100.0, 50, 1.0f}, {1.0, 10, 0.51f}}) {
        Chain chain({.contrast = contrast});
        EXPECT_EQ(chain.minimum().xRadius, radius) << contrast;
        EXPECT_EQ(chain.minimum().yRadius, radius) << contrast;
        EXPECT_EQ(chain.smooth().edgeScale, weight) << contrast;
    }
    // At half resolution sigma and radius halve and the ranges stay; an anamorphic downsample takes the
    // horizontal factor on both axes.
    for (const auto& [x, y, sigma, radius] : {std::tuple{0.5, 0.5, 15.0f, 15}, {0.25, 1.0, 7.5f, 8}}) {
        Chain chain({.contrast = 50}, x, y);
        EXPECT_EQ(chain.smooth().params.sigmaX, sigma);
        EXPECT_EQ(chain.smooth().params.sigmaY, sigma);
        EXPECT_EQ(chain.smooth().params.sigmaR, 0.4f);
        EXPECT_EQ(chain.layers().textureBlurB.params.sigmaR, 0.1f);
        EXPECT_EQ(chain.minimum().yRadius, radius);
    }
    // Detail 100: no texture, so the mix gives way to blur 1 and blur 2 drops out of the graph.
    ImageBuffer in = randomImage({0, 0, 16, 12}, fourCC("argb"), 5);
    Chain full({.detail = 100}, 1, 1, &in);
    EXPECT_EQ(full.layers().scale2, 0.0f);
    EXPECT_EQ(full.layers().passThroughInput(), 1);
    ImageBuffer out;
    out.allocate(in.rect, in.pixelFormat());
    Image::prepareGraph<Host>(*full.last, full.host, out);
    EXPECT_TRUE(full.layers().consumers.empty());
    EXPECT_TRUE(full.layers().textureBlurB.inputs.empty() && full.layers().textureBlurB.consumers.empty());
    EXPECT_EQ(full.smooth().inputs.size(), 3u);  // split into its passes: it ran
}

// The blurs the effect is made of, as graphs of their own, and the mix as its formula gives it.
std::vector<float> composed(ImageBuffer& in, const Settings& s) {
    const float sigma = static_cast<float>(s.amount), contrast = static_cast<float>(s.contrast) / 100.0f;
    const auto blur = [&](float sigmaR, bool withEdges) {
        BareHost host;
        Layer source(&in);
        Blur node(source, {sigma, sigma, sigmaR, 3}, true);
        const auto radius = static_cast<int32_t>(40.0f * contrast + 10.0f + 0.5f);
        Minimum minimum(source, radius, radius);
        Maximum maximum(source, radius, radius);
        Difference range(minimum, maximum);
        if (withEdges && contrast > 0) {
            node.guideIsInput1 = false;
            node.appendInput(range);
            node.edgeScale = std::min(contrast + 0.5f, 1.0f);
        }
        ImageBuffer out;
        out.allocate(in.rect, in.pixelFormat());
        Image::prepareGraph<Host>(node, host, out);
        return componentsOf(out);
    };
    const std::vector<float> o = componentsOf(in), b1 = blur(0.4f, true), b2 = blur(0.1f, false);
    const float scale2 = 1.0f - static_cast<float>(s.detail) / 100.0f,
                white = Image::formatMaximum(in.pixelFormat());
    std::vector<float> out(o.size());
    for (std::size_t i = 0; i < o.size(); ++i) {
        const float r = (o[i] - b2[i]) * scale2 + ((b2[i] - b1[i]) * 0.0f + b1[i]);
        out[i] = white == 1 ? r : std::trunc(std::min(std::max(r, 0.0f), white));
    }
    return out;
}

TEST(SmoothingPixels, TheMixOfTheTwoBlursAtEveryDepth) {
    for (const PixelFormat format : {fourCC("argb"), fourCC("ae16"), fourCC("ae32"), fourCC("bgra")}) {
        ImageBuffer in = randomImage({0, 0, 37, 29}, format, 9);
        for (const Settings& s : {Settings{.amount = 5}, Settings{.amount = 3, .detail = -400, .contrast = 0},
                                  Settings{.amount = 6, .detail = 100, .contrast = 60}}) {
            SCOPED_TRACE(testing::Message() << Image::formatDepth(format) << " bits, " << s.amount << " "
                                            << s.detail << " " << s.contrast);
            const std::vector<float> expected = composed(in, s);
            EXPECT_EQ(render(s, in), expected);
        }
    }
}

// Two blurs, each with two derivative planes, a weight plane and temporaries, and the contrast edges: the
// schedule must release each as soon as its last reader is done, or the memory grows with the graph.
TEST(SmoothingPixels, HoldsAtMostSixFramesBeyondItsInputAndOutput) {
    for (const PixelFormat format : {fourCC("argb"), fourCC("ae32")}) {
        ImageBuffer in = randomImage({0, 0, 320, 240}, format, 3);
        SmoothingPlugin<Host> effect;
        Tw::Test::renderEffectImage(effect, in, [](Param::Parameters&) {});
        EXPECT_LE(effect.peakBytes(), 6 * in.rowStride() * 240) << Image::formatDepth(format) << " bits";
    }
}

TEST(SmoothingDifferenceNode, AbsoluteDifferenceOverTheCommonBounds) {
    for (const PixelFormat format : {fourCC("argb"), fourCC("ae16"), fourCC("ae32")}) {
        ImageBuffer a = randomImage({0, 0, 19, 6}, format, 1), b = randomImage({3, 1, 25, 9}, format, 2);
        BareHost host;
        Layer first(&a), second(&b);
        Difference difference(first, second);
        EXPECT_EQ(difference.bounds(), (PixelRect{3, 1, 19, 6}));
        ImageBuffer out, left, right;
        out.allocate(difference.bounds(), format);
        Image::prepareGraph<Host>(difference, host, out);
        left.allocate(out.rect, format);
        right.allocate(out.rect, format);
        left.copyFrom(a);
        right.copyFrom(b);
        const std::vector<float> result = componentsOf(out), x = componentsOf(left), y = componentsOf(right);
        for (std::size_t i = 0; i < result.size(); ++i)
            ASSERT_EQ(result[i], std::fabs(x[i] - y[i])) << i;  // 16-bit values beyond white unclamped
    }
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Plugins
