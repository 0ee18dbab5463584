// "Auto-Balance": levels found in histograms worked out by hand, and the pixels of the map they give, at
// every depth and order.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "host/standalone/Host.h"
#include "plugins/AutoBalancePlugin.h"
#include "tests/support/NodeRender.h"

namespace Tw::Plugins {
namespace TW_FILE_LOCAL {

using Image::findToneLevels;
using Image::fourCC;
using Image::ImageBuffer;
using Image::PixelFormat;
using Image::ToneCounts;
using StandaloneHost = Tw::Host::Standalone::Host;
using Tw::Test::imageOf;
using Tw::Test::kEveryFormat;
using Tw::Test::Pixel;
using Tw::Test::pixelsOf;
using Tw::Test::whiteOf;

struct Settings {
    double fromLow = 10, fromHigh = 90, toLow = 10, toHigh = 90;
    bool clamp = false;
};

void apply(Param::Parameters& params, const Settings& s) {
    params.setFloat(0, s.fromLow);
    params.setFloat(1, s.fromHigh);
    params.setFloat(2, s.toLow);
    params.setFloat(3, s.toHigh);
    params.setBool(s.clamp, 4);
}

std::vector<Pixel> render(const Settings& s, const std::vector<Pixel>& pixels, PixelFormat format) {
    return Tw::Test::renderEffect<AutoBalancePlugin<StandaloneHost>>(
        pixels, format, [&](Param::Parameters& params) { apply(params, s); });
}

// v, in units of white, through the map that takes the tone bins `low` and `high` onto toLow..toHigh.
double mapped(double v, int low, int high, const Settings& s, PixelFormat format) {
    const float white = static_cast<float>(whiteOf(format));
    const float lowTone = static_cast<float>(low) / 255.0f, highTone = static_cast<float>(high) / 255.0f;
    const float toLow = static_cast<float>(s.toLow) / 100.0f, toHigh = static_cast<float>(s.toHigh) / 100.0f;
    const float scale = (toHigh - toLow) / (highTone - lowTone);
    const float r = std::max(static_cast<float>(v) * scale + (toLow - lowTone * scale) * white, 0.0f);
    if (white == 1) return s.clamp ? std::min(r, 1.0f) : r;
    return std::nearbyint(std::min(r, white));
}

// A component that falls in tone bin `bin` at the depth of `format`.
double inBin(int bin, PixelFormat format) {
    switch (Image::formatDepth(format)) {
        case 8:
            return bin;
        case 16:
            return std::round((bin + 0.5) * 32768 / 255);
        default:
            return static_cast<float>((bin + 0.5) / 255);
    }
}

TEST(AutoBalance, MapsTheMeasuredLevelsOntoTheTargetTones) {
    // 20 pixels by the bin of their largest colour component: 2 in bin 10, 6 in 50, 8 in 100, 4 in 200.
    // From Low 12 % is 2 pixels (2.4 cut down): 2 lie below bin 50 and 8 below bin 51, so low is 50.
    // From High 88 % is 17 pixels: 16 lie at or below bin 199 and 20 at or below 200, so high is 199.
    const Settings settings{12, 88, 5, 95, false};
    const int bins[] = {10,  10,  50,  50,  50,  50,  50,  50,  100, 100,
                        100, 100, 100, 100, 100, 100, 200, 200, 200, 200};
    for (const PixelFormat format : kEveryFormat) {
        SCOPED_TRACE(whiteOf(format));
        std::vector<Pixel> in;
        for (std::size_t i = 0; i < std::size(bins); ++i) {
            // The largest component moves between red, green and blue; the others stay below it. Alpha
            // is white on the darkest pixels, and would move them to bin 255 if it counted.
            const double top = inBin(bins[i], format);
            Pixel pixel{std::floor(top / 2), std::floor(top / 3), std::floor(top / 4),
                        bins[i] == 10 ? whiteOf(format) : 0};
            pixel[i % 3] = top;
            in.push_back(pixel);
        }
        const auto out = render(settings, in, format);
        for (std::size_t x = 0; x < in.size(); ++x) {
            for (int c = 0; c < 3; ++c)
                EXPECT_EQ(out[x][c], mapped(in[x][c], 50, 199, settings, format))
                    << "pixel " << x << "." << c;
            EXPECT_EQ(out[x][3], in[x][3]);
        }
    }
}

TEST(AutoBalance, AnAlmostUniformFrameInvertsAboutItsLevel) {
    // 36 pixels of grey 128, two of 127, two of 129. From Low 11 % is 4 pixels, and only the two of 127
    // lie below 128: low is 128. From High 89 % is 35 pixels, and 38 lie at or below 128: high is 127.
    // The slope is -255 * (80 % - 20 %): 128 becomes To Low, each step darker 153 brighter.
    std::vector<Pixel> in(36, Pixel{128, 128, 128, 255});
    for (const double grey : {127, 129, 127, 129})
        in.push_back({grey, grey, grey, 255});
    const auto out = render({11, 89, 20, 80, false}, in, fourCC("argb"));
    EXPECT_EQ(out[0], (Pixel{51, 51, 51, 255}));
    EXPECT_EQ(out[36], (Pixel{204, 204, 204, 255}));
    EXPECT_EQ(out[37], (Pixel{0, 0, 0, 255}));
}

TEST(AutoBalance, LevelsAtTheEndsOfTheHistogram) {
    ToneCounts histogram{};
    histogram[30] = 10;
    histogram[60] = 10;
    // From High 100 %: every pixel lies at or below bin 255.
    EXPECT_EQ(findToneLevels(histogram, 20, 0.12f, 1.0f).high, 255);
    EXPECT_EQ(findToneLevels(histogram, 20, 0.12f, 1.0f).low, 30);

    // Bin 0 alone holds more than From High: high stays 0, below low.
    histogram = {};
    histogram[0] = 15;
    histogram[200] = 5;
    const auto darkest = findToneLevels(histogram, 20, 0.9f, 0.5f);
    EXPECT_EQ(darkest.low, 200);
    EXPECT_EQ(darkest.high, 0);

    // No pixels at all: both levels run to the top.
    const auto none = findToneLevels({}, 0, 0.1f, 0.9f);
    EXPECT_EQ(none.low, 255);
    EXPECT_EQ(none.high, 255);
}

TEST(AutoBalance, AnEmptyInputLeavesTransparentBlack) {
    // Equal levels map nothing: black stays black, although To Low would lift it.
    AutoBalancePlugin<StandaloneHost> effect;
    Param::Parameters params;
    effect.defineParameters(params);
    apply(params, {10, 90, 20, 90, true});
    ImageBuffer in;
    ImageBuffer out;
    out.allocate({0, 0, 11, 1}, fourCC("ae32"));
    ASSERT_EQ(effect.render(params, in, out), 0);
    EXPECT_EQ(pixelsOf(out), std::vector<Pixel>(11, Pixel{0, 0, 0, 0}));
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Plugins
