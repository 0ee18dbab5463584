// "Color Correction" against its formulas, transcribed plainly below in single precision, at every depth
// and in both component orders, and at its edge cases worked out by hand.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "plugins/ColorCorrectionPlugin.h"
#include "tests/support/NodeRender.h"

namespace Tw::Test {
namespace TW_FILE_LOCAL {

using Image::ImageBuffer;
using Image::PixelFormat;
using Plugins::ColorCorrectionPlugin;
namespace Param = Tw::Host::Param;

// One colour through hue, saturation and value and back, step by step as the formulas read: red, green
// and blue as fractions; `hue` in turns.
Pixel turned(const Pixel& in, float hue, float saturation, float value) {
    const float r = static_cast<float>(in[0]), g = static_cast<float>(in[1]), b = static_cast<float>(in[2]);
    const float mx = std::max({r, g, b}), d = mx - std::min({r, g, b});
    float h = 0;
    if (d != 0) {
        if (mx == r) {
            h = (g - b) / d;
        } else if (mx != g) {
            h = (r - g) / d + 4;
        } else {
            h = (b - r) / d + 2;
        }
    }
    h = h / 6;
    if (h < 0) h += 1;
    h += hue;
    if (h >= 1) {
        h -= 1;
    } else if (h < 0) {
        h += 1;
    }
    const float s = (mx > 0 ? d / mx : 0) * saturation, v = mx * value;
    const float x = h * 6;
    const int i = static_cast<int>(std::floor(x));
    float e = x - static_cast<float>(i);
    if (i % 2 == 0) e = 1 - e;
    const float p = (1 - s) * v, q = (1 - e * s) * v;
    // Sectors 1 to 5; any other, 0 or one beyond the circle, takes the first row.
    const Pixel bySector[] = {{v, q, p, in[3]}, {q, v, p, in[3]}, {p, v, q, in[3]},
                              {p, q, v, in[3]}, {q, p, v, in[3]}, {v, p, q, in[3]}};
    return bySector[i >= 1 && i <= 5 ? i : 0];
}

// `turned` on pixels as `format` stores them, with the depth's conversions in and out.
Pixel turnedStored(const Pixel& stored, PixelFormat format, float hue, float saturation, float value) {
    const double white = whiteOf(format);
    if (white == 1) return turned(stored, hue, saturation, value);
    Pixel fractions = stored;
    for (int c = 0; c < 3; ++c)
        fractions[c] = white == 255 ? static_cast<float>(stored[c]) / 255.0f
                                    : static_cast<float>(stored[c]) * 3.0517578e-5f;
    Pixel out = turned(fractions, hue, saturation, value);
    for (int c = 0; c < 3; ++c)
        out[c] = std::trunc(std::clamp(
            static_cast<double>(static_cast<float>(out[c]) * static_cast<float>(white)), 0.0, white));
    return out;
}

std::vector<Pixel> render(double hue, double saturation, double brightness, const std::vector<Pixel>& stored,
                          PixelFormat format) {
    return renderEffect<ColorCorrectionPlugin<StandaloneHost>>(
        stored, format, [&](Param::Parameters& params) {
            params.setFloat(Plugins::ColorAdjustParam::Hue, hue);
            params.setFloat(Plugins::ColorAdjustParam::Saturation, saturation);
            params.setFloat(Plugins::ColorAdjustParam::Brightness, brightness);
        });
}

// Greys, black and white, a colour in each sixth of the hue circle, and ties between the largest
// components.
const std::vector<Pixel> kColours = {{0, 0, 0, 1},           {1, 1, 1, 0.5},
                                     {0.4, 0.4, 0.4, 1},     {0.8, 0.4, 0.2, 1},
                                     {0.6, 0.9, 0.1, 0.5},   {0.1, 0.7, 0.3, 0},
                                     {0.2, 0.5, 0.95, 0.25}, {0.5, 0.1, 0.9, 1},
                                     {0.9, 0.2, 0.6, 1},     {1, 1, 0, 1},
                                     {0, 1, 1, 1},           {1, 0, 1, 0.75},
                                     {0.3, 0.7, 0.7, 1},     {6 / 255., 0, 3 / 255., 1}};

TEST(ColorCorrection, FollowsTheFormulasAtEveryDepth) {
    struct Settings {
        double hue, saturation, brightness;
    };
    // Turns both ways, one that wraps a whole turn, more and less saturation and value, and a value scale
    // alone.
    for (const Settings s : {Settings{130, 40, -20}, Settings{-75, -30, 25}, Settings{360, 0, 0},
                             Settings{-360, 100, 0}, Settings{0, 0, 50}}) {
        const float hue = static_cast<float>(s.hue) / 360.0f;
        const float saturation = static_cast<float>(s.saturation) / 100.0f + 1.0f;
        const float value = static_cast<float>(s.brightness) / 100.0f + 1.0f;
        for (const PixelFormat format : kEveryFormat) {
            SCOPED_TRACE(testing::Message()
                         << format << " " << s.hue << " " << s.saturation << " " << s.brightness);
            const auto in = inUnitsOf(kColours, format);
            const auto out = render(s.hue, s.saturation, s.brightness, in, format);
            for (std::size_t i = 0; i < in.size(); ++i)
                EXPECT_EQ(out[i], turnedStored(in[i], format, hue, saturation, value)) << i;
        }
    }
}

TEST(ColorCorrection, EdgeCasesWorkedByHand) {
    for (const PixelFormat format : kEveryFormat) {
        SCOPED_TRACE(format);
        const double white = whiteOf(format);
        const auto in = inUnitsOf({{0.4, 0.4, 0.4, 1}, {0, 0, 0, 1}, {0.8, 0.4, 0.2, 1}}, format);
        // A grey keeps no hue and no saturation whatever the turn: only its value changes. Black stays
        // black.
        const auto grey = render(100, 50, 25, in, format);
        const double level = white == 1 ? 0.4f * 1.25f : std::trunc(in[0][0] / white * 1.25 * white + 1e-9);
        EXPECT_NEAR(grey[0][0], level, white == 1 ? 1e-7 : 0);
        EXPECT_EQ(grey[0][1], grey[0][0]);
        EXPECT_EQ(grey[0][2], grey[0][0]);
        EXPECT_EQ(grey[1], in[1]);
        // No saturation: a grey of the largest component's value.
        const auto none = render(40, -100, 0, in, format);
        for (int c = 0; c < 3; ++c)
            EXPECT_EQ(none[2][c], in[2][0]);
        // Saturation doubled: s = 0.75 * 2, so the floor (1 - s) v = -0.4, negative at float and 0 at
        // the integer depths; the rising component (1 - 2/3 s) v is 0 up to rounding.
        const auto twice = render(0, 100, 0, in, format);
        EXPECT_EQ(twice[2][0], in[2][0]);
        EXPECT_NEAR(twice[2][1], 0, white == 1 ? 1e-7 : 0);
        EXPECT_NEAR(twice[2][2], white == 1 ? -0.4 : 0, 1e-7);
    }
}

TEST(ColorCorrection, AWholeTurnGivesTheColourBack) {
    for (const PixelFormat format : kEveryFormat) {
        const double white = whiteOf(format);
        const auto in = inUnitsOf(kColours, format);
        for (const double turn : {360.0, -360.0}) {
            const auto out = render(turn, 0, 0, in, format);
            for (std::size_t i = 0; i < in.size(); ++i) {
                for (int c = 0; c < 3; ++c) {
                    // Cut toward zero, a component can fall one level short at the integer depths.
                    EXPECT_LE(out[i][c], in[i][c] + (white == 1 ? 1e-6 : 0)) << format << " " << i;
                    EXPECT_GE(out[i][c], in[i][c] - (white == 1 ? 1e-6 : 1)) << format << " " << i;
                }
                EXPECT_EQ(out[i][3], in[i][3]);
            }
        }
    }
}

TEST(ColorCorrection, AHueBeyondAWholeTurnIsCorrectedOnce) {
    // Cyan at h = 1/2 turned by 1.75: 2.25 less one turn is 1.25, so x = 7.5 lies in no sector and takes
    // the first row, (v, q, p) with e = 1/2 (7 is odd): orange (1, 0.5, 0), not the chartreuse of a
    // quarter turn.
    for (const PixelFormat format : kEveryFormat) {
        const double white = whiteOf(format);
        ImageBuffer source = imageOf(inUnitsOf({{0, 1, 1, 1}}, format), format);
        Layer layer(&source);
        Image::HSVCCFilter<StandaloneHost> node(layer, 1.75f, 0, 0);
        const auto out = renderNode(node, source.rect, format);
        EXPECT_EQ(out[0], (Pixel{white, white == 1 ? 0.5 : std::trunc(white / 2), 0, white})) << format;
    }
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Test
