// "Balance" and "Balance RGB" against values worked out from their formulas, at every depth and order.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "host/standalone/Host.h"
#include "plugins/BalancePlugin.h"
#include "plugins/BalanceRGBPlugin.h"
#include "plugins/BrightnessContrastPlugin.h"
#include "tests/support/BareHost.h"
#include "tests/support/NodeRender.h"

namespace Tw::Plugins {
namespace TW_FILE_LOCAL {

using Image::fourCC;
using Image::ImageBuffer;
using Image::PixelFormat;
using StandaloneHost = Tw::Host::Standalone::Host;

using Test::imageOf;
using Test::Pixel;
using Test::pixelsOf;

using Test::inUnitsOf;
using Test::kEveryFormat;
using Test::renderEffect;
using Test::whiteOf;

struct Settings {
    double fromLow = 0, fromHigh = 100, toLow = 0, toHigh = 100, gamma = 1;
    bool clamp = false;
};

template <template <class> class Plugin = BalancePlugin>
std::vector<Pixel> render(const Settings& s, const std::vector<Pixel>& pixels, PixelFormat format,
                          const std::function<void(Param::Parameters&)>& more = {}) {
    return renderEffect<Plugin<StandaloneHost>>(pixels, format, [&](Param::Parameters& params) {
        const int gammaIndex = static_cast<int>(params.records.size()) - 2;
        params.setFloat(0, s.fromLow);
        params.setFloat(1, s.fromHigh);
        params.setFloat(2, s.toLow);
        params.setFloat(3, s.toHigh);
        params.setFloat(gammaIndex, s.gamma);
        params.setBool(s.clamp, gammaIndex + 1);
        if (more) more(params);
    });
}

// The map as the formulas give it, in float as the kernel computes it.
double expected(const Settings& s, double v, int depth) {
    const float fl = static_cast<float>(s.fromLow) / 100, fh = static_cast<float>(s.fromHigh) / 100;
    const float tl = static_cast<float>(s.toLow) / 100, th = static_cast<float>(s.toHigh) / 100;
    const float scale = std::min(255.0f, fl == fh ? 1e38f : (th - tl) / (fh - fl));
    const float white = depth == 8 ? 255.0f : depth == 16 ? 32768.0f : 1.0f;
    const float offset = (tl - fl * scale) * white;
    const float m = s.gamma == 1 ? static_cast<float>(v)
                                 : std::pow(static_cast<float>(v), 1.0f / static_cast<float>(s.gamma));
    const float r = std::max(m * scale + offset, 0.0f);
    if (depth == 32) return s.clamp ? std::min(r, 1.0f) : r;
    return std::nearbyint(std::min(r, white));
}

TEST(Balance, LinearMapsAtEveryDepthAndOrder) {
    const Settings settings[] = {
        {20, 80, 10, 90, 1, false},   // a plain map
        {50, 50, 30, 100, 1, false},  // equal from ends: the steepest slope, 255
        {80, 20, 0, 100, 1, true},    // a negative slope
        {0, 50, 0, 100, 1, false},    // doubles, with no upper limit on float
    };
    // Enough pixels for whole vector blocks of every width and a remainder.
    std::vector<Pixel> fractions = {{0, 0.1, 0.5, 1}, {0.3, 0.77, 1, 0.5}, {0.51, 0.49, 0.123, 0}};
    for (int i = 0; i < 16; ++i)
        fractions.push_back({i / 15.0, (i * 7 % 16) / 15.0, (15 - i) / 15.0, (i % 5) / 4.0});
    for (const PixelFormat format : kEveryFormat) {
        const int depth = Image::formatDepth(format);
        const auto in = inUnitsOf(fractions, format);
        for (const Settings& s : settings) {
            SCOPED_TRACE(testing::Message()
                         << "depth " << depth << " from " << s.fromLow << ".." << s.fromHigh);
            const auto out = render(s, in, format);
            for (std::size_t x = 0; x < in.size(); ++x) {
                for (int c = 0; c < 3; ++c)
                    EXPECT_NEAR(out[x][c], expected(s, in[x][c], depth), depth == 32 ? 2e-7 : 0);
                EXPECT_EQ(out[x][3], in[x][3]);
            }
        }
    }
}

TEST(Balance, GammaWorksOnTheRawValuesOfEachDepth) {
    Settings squareRoot;
    squareRoot.gamma = 2;
    EXPECT_EQ(render(squareRoot, std::vector<Pixel>(11, {255, 100, 0, 255}), fourCC("argb")),
              std::vector<Pixel>(11, Pixel{16, 10, 0, 255}));
    EXPECT_EQ(render(squareRoot, std::vector<Pixel>(11, {32768, 10000, 0, 7}), fourCC("Bgra")),
              std::vector<Pixel>(11, Pixel{181, 100, 0, 7}));
    const Pixel floats = render(squareRoot, {{1, 0.25, 0.0625, 0.5}}, fourCC("ae32"))[0];
    EXPECT_NEAR(floats[0], 1.0, 1e-6);
    EXPECT_NEAR(floats[1], 0.5, 1e-6);
    EXPECT_NEAR(floats[2], 0.25, 1e-6);
    EXPECT_EQ(floats[3], 0.5);

    // A gamma of 0 takes 1/gamma as 999.99994: everything above 1 saturates, 1 and 0 stay.
    Settings zero;
    zero.gamma = 0;
    EXPECT_EQ(render(zero, {{2, 1, 0, 9}}, fourCC("argb"))[0], (Pixel{255, 1, 0, 9}));
}

TEST(Balance, NeutralSettingsCopyOrClamp) {
    const std::vector<Pixel> floats(9, Pixel{1.5, -0.25, 0.5, 1.75});
    // All defaults with clamp off: the node is gone and the input comes through as it is.
    EXPECT_EQ(render({}, floats, fourCC("ae32")), floats);
    Settings clamped;
    clamped.clamp = true;
    EXPECT_EQ(render(clamped, floats, fourCC("ae32")), std::vector<Pixel>(9, Pixel{1, 0, 0.5, 1.75}));
    EXPECT_EQ(render(clamped, {{255, 17, 0, 3}}, fourCC("bgra"))[0], (Pixel{255, 17, 0, 3}));
    EXPECT_EQ(render(clamped, {{32768, 1, 0, 32768}}, fourCC("ae16"))[0], (Pixel{32768, 1, 0, 32768}));
    // Without clamp a float result stays above 1, and a negative one becomes 0 all the same.
    Settings stretch{0, 50, 10, 100, 1, false};
    EXPECT_EQ(render(stretch, {{1.5, -0.5, 0, 2}}, fourCC("BGra"))[0],
              (Pixel{expected(stretch, 1.5, 32), 0, expected(stretch, 0, 32), 2}));
}

TEST(Balance, AnInputSmallerThanTheOutputReadsAsTransparentBlack) {
    BalancePlugin<StandaloneHost> effect;
    ImageBuffer in = imageOf({{255, 255, 255, 255}}, fourCC("argb"));
    in.rect = in.validRect = {1, 0, 2, 1};
    // To Low 20: black becomes 20 % grey.
    const auto out = Tw::Test::renderEffectImage(
        effect, in, [](Param::Parameters& params) { params.setFloat(2, 20); }, {},
        Image::PixelRect{0, 0, 3, 1});
    EXPECT_THAT(pixelsOf(out),
                testing::ElementsAre(Pixel{51, 51, 51, 0}, Pixel{255, 255, 255, 255}, Pixel{51, 51, 51, 0}));
}

TEST(Balance, TwoPlainBalancesFoldIntoOne) {
    ::Tw::Test::BareHost host;
    ImageBuffer source = imageOf({{0.5, 0.25, 1, 1}}, fourCC("ae32"));
    Image::FilterLayer<StandaloneHost> layer(&source);
    Image::BalanceFilter<StandaloneHost> first(layer, 0, 1, 0.2f, 0.6f, 1, false);
    Image::BalanceFilter<StandaloneHost> second(first, 0, 0.5f, 0, 1, 1, false);
    ImageBuffer out;
    out.allocate(source.rect, fourCC("ae32"));
    Image::prepareGraph<StandaloneHost>(second, host, out);
    EXPECT_THAT(second.inputs, testing::ElementsAre(&layer));
    EXPECT_TRUE(first.inputs.empty());
    // v -> 0.2 + 0.4 v -> 2 (0.2 + 0.4 v)
    EXPECT_NEAR(pixelsOf(out)[0][0], 0.8, 1e-6);
    EXPECT_NEAR(pixelsOf(out)[0][1], 0.6, 1e-6);

    // A balance with a gamma is another kind of node and never folds, and a brightness map, whose own
    // fields would not see the fold, takes no balance in.
    Image::BalanceFilter<StandaloneHost> gamma(layer, 0, 1, 0, 1, 2, false);
    Image::BalanceFilter<StandaloneHost> after(gamma, 0, 0.5f, 0, 1, 1, false);
    EXPECT_EQ(after.mergeWith(gamma), Image::MergeResult::No);
    Image::BalanceFilter<StandaloneHost> plain(layer, 0, 1, 0.2f, 0.6f, 1, false);
    Image::BrightnessContrastFilter<StandaloneHost> brighter(plain, 0.5f, 0, true);
    EXPECT_EQ(brighter.mergeWith(plain), Image::MergeResult::No);
}

// Large integer frames are mapped through a table of every level's result; small ones pixel by pixel.
// The two must give the same bits.
TEST(Balance, LargeFramesMapAsSmallOnesDo) {
    const Settings settings{5, 95, 10, 90, 1.8, true};
    for (const PixelFormat format : {fourCC("argb"), fourCC("Bgra")}) {
        const double white = whiteOf(format);
        std::vector<Pixel> large(600 * 500);
        for (std::size_t i = 0; i < large.size(); ++i)
            large[i] = {std::fmod(i * 7.0, white + 1), std::fmod(i * 13.0, white + 1),
                        std::fmod(i * 0.5, white + 1), std::fmod(i * 3.0, white + 1)};
        const std::vector<Pixel> small(large.begin(), large.begin() + 500);
        const auto largeOut = render(settings, large, format);
        EXPECT_EQ(std::vector<Pixel>(largeOut.begin(), largeOut.begin() + 500),
                  render(settings, small, format));
    }
}

// Brightness b lifts by b * 100 / 255; contrast c narrows the output range (c < 0) or the input range.
TEST(BrightnessContrast, MapsOnlyWhenClamped) {
    const auto render = [](double brightness, double contrast, bool clamp, const std::vector<Pixel>& pixels,
                           PixelFormat format) {
        return renderEffect<BrightnessContrastPlugin<StandaloneHost>>(pixels, format, [&](auto& params) {
            params.setFloat(0, brightness);
            params.setFloat(1, contrast);
            params.setBool(clamp, 2);
        });
    };
    const std::vector<Pixel> floats(9, Pixel{1.5, -0.25, 0.5, 0.25});
    // Unclamped, any setting gives back the input.
    EXPECT_EQ(render(60, -40, false, floats, fourCC("ae32")), floats);
    // Both sliders at 0: limits floats to 0..1 and nothing else.
    EXPECT_EQ(render(0, 0, true, floats, fourCC("ae32")), std::vector<Pixel>(9, Pixel{1, 0, 0.5, 0.25}));
    // Contrast -100: scale 0, a flat grey of 0.5 + b.
    const float b = 20.0f / 255.0f;
    for (const Pixel& p : render(20, -100, true, floats, fourCC("ae32")))
        EXPECT_THAT(p, testing::ElementsAre(0.5f + b, 0.5f + b, 0.5f + b, 0.25));
    // Contrast 100: scale 255 about the middle less b / 255; at 8 bits from black at 127 to white at 129.
    const float thresholdOffset = (b - 255 * 0.5f) * 255;
    EXPECT_EQ(render(20, 100, true, {{127, 128, 129, 7}}, fourCC("argb"))[0],
              (Pixel{0, std::nearbyint(128 * 255.0f + thresholdOffset), 255, 7}));
    // Contrast 50 and brightness 10: from 0.25..0.75 onto b..1 + b, worked out at 8 and 16 bits.
    const float b10 = 10.0f / 255.0f;
    const float scale = (b10 + 1 - b10) / 0.5f, offset = b10 - scale * 0.25f;
    EXPECT_EQ(render(10, 50, true, {{0, 128, 255, 9}}, fourCC("bgra"))[0],
              (Pixel{0, std::nearbyint(128 * scale + offset * 255), 255, 9}));
    EXPECT_EQ(render(10, 50, true, {{16384, 20000, 32768, 9}}, fourCC("ae16"))[0],
              (Pixel{std::nearbyint(16384 * scale + offset * 32768),
                     std::nearbyint(20000 * scale + offset * 32768), 32768, 9}));
}

TEST(BalanceRGB, MasterMapThenChannelMap) {
    for (const PixelFormat format : {fourCC("ae32"), fourCC("BGra")}) {
        const auto out = render<BalanceRGBPlugin>(
            {0, 50, 0, 100, 1, false}, std::vector<Pixel>(9, {0.25, 0.25, 0.25, 0.5}), format,
            [](Param::Parameters& params) {
                params.setColor({0.5, 0, 0}, 4);       // From Low RGB: red from 0.5
                params.setColor({0.5, 0.5, 0.25}, 6);  // To Low RGB
            });
        // Master: 0.25 -> 0.5. Red: 0.5..1 -> 0.5..1 keeps 0.5; green: 0..1 -> 0.5..1 gives 0.75; blue:
        // 0..1 -> 0.25..1 gives 0.625.
        for (const Pixel& pixel : out) {
            EXPECT_NEAR(pixel[0], 0.5, 1e-6);
            EXPECT_NEAR(pixel[1], 0.75, 1e-6);
            EXPECT_NEAR(pixel[2], 0.625, 1e-6);
            EXPECT_EQ(pixel[3], 0.5);
        }
    }

    // Neutral ranges pass through whatever the gamma says.
    const std::vector<Pixel> pixels = {{0.25, 0.5, 0.75, 1}};
    EXPECT_EQ(render<BalanceRGBPlugin>({0, 100, 0, 100, 3, false}, pixels, fourCC("ae32")), pixels);
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Plugins
