// "CIE CC" against its formulas, worked out in double precision, at every depth and in both component
// orders, and its node's folding.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "plugins/CIECCPlugin.h"
#include "tests/support/LabReference.h"
#include "tests/support/NodeRender.h"

namespace Tw::Test {
namespace TW_FILE_LOCAL {

using Image::ImageBuffer;
using Image::PixelFormat;
using Plugins::CIE_CC_Plugin;
namespace CIECCParam = Plugins::CIECCParam;
namespace Param = Tw::Host::Param;

// The correction of one colour by its formulas: hue in turns, turning the (a, b) plane backward, chroma
// and lightness multipliers. Red, green and blue in 0..1; alpha stays.
Pixel corrected(const Pixel& in, double hue, double chroma, double lightness) {
    const Lab lab = labOf(in);
    const double cosine = std::cos(2 * std::numbers::pi * hue), sine = std::sin(2 * std::numbers::pi * hue);
    return encodedOf({lab.lightness * lightness, chroma * (cosine * lab.a + sine * lab.b),
                      chroma * (-sine * lab.a + cosine * lab.b)},
                     in);
}

std::vector<Pixel> render(double hue, double saturation, double brightness, const std::vector<Pixel>& stored,
                          PixelFormat format) {
    return renderEffect<CIE_CC_Plugin<StandaloneHost>>(stored, format, [&](Param::Parameters& params) {
        params.setFloat(CIECCParam::Hue, hue);
        params.setFloat(CIECCParam::Saturation, saturation);
        params.setFloat(CIECCParam::Brightness, brightness);
    });
}

// Colours of whole 8-bit steps, among them black, white, a dark one on the straight foot of the curves,
// and saturated ones that a turn of hue takes out of gamut.
const std::vector<Pixel> kColours = {
    {0, 0, 0, 1},       {1, 1, 1, 0.5},        {6 / 255., 4 / 255., 9 / 255., 1},
    {0.8, 0.6, 0.5, 1}, {0.2, 0.4, 0.9, 0.25}, {1, 0, 0, 1},
    {0, 1, 0.2, 0},     {0.5, 0.5, 0.5, 1},    {0.3, 0.7, 0.1, 0.75}};

TEST(CIECC, FollowsTheFormulasAtEveryDepth) {
    struct Settings {
        double hue, saturation, brightness;
    };
    for (const Settings s : {Settings{40, 0, 0}, Settings{-150, 30, -20}, Settings{0, -60, 45}}) {
        for (const PixelFormat format : kEveryFormat) {
            SCOPED_TRACE(testing::Message() << format << " " << s.hue << " " << s.saturation);
            const double white = whiteOf(format);
            const auto in = inUnitsOf(kColours, format);
            const auto out = render(s.hue, s.saturation, s.brightness, in, format);
            for (std::size_t i = 0; i < in.size(); ++i) {
                Pixel fractions = in[i];
                for (double& c : fractions)
                    c /= white;
                const Pixel want =
                    corrected(fractions, s.hue / 360, 1 + s.saturation / 100, 1 + s.brightness / 100);
                for (int c = 0; c < 3; ++c) {
                    if (white == 1) {
                        EXPECT_NEAR(out[i][c], want[c], 2e-5 * std::max(1.0, std::fabs(want[c])))
                            << i << " " << c;
                    } else {
                        // Cut toward zero: a result within float rounding of a whole level may land on
                        // either.
                        const double level = std::clamp(want[c] * white, 0.0, white);
                        EXPECT_LE(out[i][c], std::trunc(level + 1e-3)) << i << " " << c;
                        EXPECT_GE(out[i][c], std::trunc(level - 1e-3)) << i << " " << c;
                    }
                }
                EXPECT_EQ(out[i][3], in[i][3]);
            }
        }
    }
}

TEST(CIECC, AWholeTurnGivesTheColourBack) {
    // The two matrices of the round trip are inverses to their four digits only: that, not the
    // arithmetic, bounds how closely a colour comes back (saturated red gains 3e-4 of green).
    for (const PixelFormat format : kEveryFormat) {
        const double white = whiteOf(format);
        const auto in = inUnitsOf(kColours, format);
        const auto out = render(360, 0, 0, in, format);
        for (std::size_t i = 0; i < in.size(); ++i) {
            for (int c = 0; c < 3; ++c) {
                if (white == 1) {
                    EXPECT_NEAR(out[i][c], in[i][c], 3e-4) << i;
                    EXPECT_NEAR(out[i][c], corrected(in[i], 1, 1, 1)[c], 2e-5) << i;
                } else {
                    EXPECT_NEAR(out[i][c], in[i][c], white == 255 ? 1 : 10) << format << " " << i;
                }
            }
        }
        // At the integer depths black and white come back exactly: results beyond them are limited.
        if (white != 1) {
            EXPECT_EQ(out[0], in[0]);
            EXPECT_EQ(out[1], in[1]);
        }
    }
}

TEST(CIECC, NoChromaLeavesANeutralGreyOfTheSameLightness) {
    const auto out = render(75, -100, 0, inUnitsOf(kColours, Image::fourCC("BGra")), Image::fourCC("BGra"));
    for (std::size_t i = 0; i < kColours.size(); ++i) {
        const Pixel want = corrected(kColours[i], 75.0 / 360, 0, 1);
        EXPECT_NEAR(out[i][0], out[i][1], 2e-4 * out[i][1] + 1e-6);
        EXPECT_NEAR(out[i][2], out[i][1], 2e-4 * out[i][1] + 1e-6);
        EXPECT_NEAR(out[i][1], want[1], 2e-5);
    }
}

TEST(CIECC, CorrectionsInSeriesFoldIntoOne) {
    ::Tw::Test::BareHost host;
    ImageBuffer source = imageOf({{0.8, 0.6, 0.5, 1}}, Image::fourCC("ae32"));
    Layer layer(&source);
    Image::CCFilter<StandaloneHost> first(layer, 0.125f, -0.5f, 0.25f);
    Image::CCFilter<StandaloneHost> second(first, 0.25f, 1.0f, -0.5f);
    renderNode(second, source.rect, Image::fourCC("ae32"));
    EXPECT_THAT(second.inputs, testing::ElementsAre(&layer));
    EXPECT_FLOAT_EQ(second.hue, 0.375f);
    EXPECT_FLOAT_EQ(second.chroma, 1.0f);
    EXPECT_FLOAT_EQ(second.lightness, 0.625f);
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Test
