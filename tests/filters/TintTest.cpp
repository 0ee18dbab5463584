// "Tint" against its ramp, transcribed plainly below in single precision, at every depth and in both
// component orders, and at its edge cases worked out by hand.
#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "plugins/TintPlugin.h"
#include "tests/support/NodeRender.h"

namespace Tw::Test {
namespace {

using Image::ImageBuffer;
using Image::PixelFormat;
using Plugins::TintPlugin;
namespace Param = Tw::Host::Param;
namespace TintParam = Plugins::TintParam;

struct Ramp {
    std::array<double, 4> points;  // percent
    std::array<Param::ParamColor, 4> colours;
};

// The ramp of the default points, its greys at the points themselves: 0.33 and 0.66 of white.
const Ramp kGreyRamp{{0, 33, 66, 100}, {{{0, 0, 0}, {0.33, 0.33, 0.33}, {0.66, 0.66, 0.66}, {1, 1, 1}}}};

// The colour of the ramp at the luminance of `in` (fractions), the tests taken in their order.
Pixel tinted(const Pixel& in, const Ramp& ramp) {
    float a[4];
    for (int k = 0; k < 4; ++k)
        a[k] = static_cast<float>(ramp.points[k] / 100.0);
    const auto colour = [&](int k, int c) {
        const auto& col = ramp.colours[k];
        return static_cast<float>(c == 0 ? col.red : c == 1 ? col.green : col.blue);
    };
    const float l = 0.3f * static_cast<float>(in[0]) + 0.59f * static_cast<float>(in[1]) +
                    0.11f * static_cast<float>(in[2]);
    Pixel out = in;
    for (int c = 0; c < 3; ++c) {
        const auto mix = [&](int from) {
            const float w = (l - a[from]) / (a[from + 1] - a[from]);
            return colour(from, c) + (colour(from + 1, c) - colour(from, c)) * w;
        };
        out[c] = a[0] >= l   ? colour(0, c)
                 : l >= a[3] ? colour(3, c)
                 : a[1] > l  ? mix(0)
                 : a[2] > l  ? mix(1)
                             : mix(2);
    }
    return out;
}

Pixel tintedStored(const Pixel& stored, PixelFormat format, const Ramp& ramp) {
    const double white = whiteOf(format);
    if (white == 1) return tinted(stored, ramp);
    Pixel fractions = stored;
    for (int c = 0; c < 3; ++c)
        fractions[c] = white == 255 ? static_cast<float>(stored[c]) / 255.0f
                                    : static_cast<float>(stored[c]) * 3.0517578e-5f;
    Pixel out = tinted(fractions, ramp);
    for (int c = 0; c < 3; ++c)
        out[c] = std::trunc(static_cast<float>(out[c]) * static_cast<float>(white));
    return out;
}

std::vector<Pixel> render(const Ramp& ramp, const std::vector<Pixel>& stored, PixelFormat format) {
    TintPlugin<StandaloneHost> effect;
    Param::Parameters params;
    effect.defineParameters(params);
    for (int k = 0; k < 4; ++k) {
        params.setFloat(TintParam::Point1 + k, ramp.points[k]);
        params.setColor(ramp.colours[k], TintParam::Color1 + k);
    }
    ImageBuffer in = imageOf(stored, format);
    ImageBuffer out;
    out.allocate(in.rect, format);
    EXPECT_EQ(effect.render(params, in, out), 0);
    return pixelsOf(out);
}

const std::vector<Pixel> kColours = {{0, 0, 0, 1},         {1, 1, 1, 0.5},        {1, 0, 0, 1},
                                     {0, 1, 0, 0},         {0, 0, 1, 0.25},       {0.8, 0.6, 0.5, 1},
                                     {0.2, 0.4, 0.9, 1},   {0.5, 0.5, 0.5, 0.75}, {0.3, 0.7, 0.1, 1},
                                     {0.95, 0.9, 0.85, 1}, {0.1, 0.2, 0.15, 1},   {0.6, 0.3, 0.7, 1}};

TEST(Tint, FollowsTheRampAtEveryDepth) {
    // The defaults, a coloured ramp in order, and one whose second point lies above its third.
    const Ramp coloured{{10, 30, 60, 85}, {{{0.1, 0, 0.3}, {0.9, 0.2, 0.1}, {0.2, 0.8, 0.4}, {1, 0.9, 0.6}}}};
    const Ramp unsorted{{10, 70, 40, 90}, coloured.colours};
    for (const Ramp& ramp : {kGreyRamp, coloured, unsorted}) {
        for (const PixelFormat format : kEveryFormat) {
            SCOPED_TRACE(testing::Message() << format << " " << ramp.points[1]);
            const auto in = inUnitsOf(kColours, format);
            const auto out = render(ramp, in, format);
            for (std::size_t i = 0; i < in.size(); ++i)
                EXPECT_EQ(out[i], tintedStored(in[i], format, ramp)) << i;
        }
    }
}

TEST(Tint, TheDefaultsGiveTheGreyOfTheLuminance) {
    // Pure red has luminance 0.3, on the first piece: 0.33 * 0.3 / 0.33 = 0.3, cut at 8 bits from 76.5
    // to 76. Grey 0.5 lies on the second piece: 0.33 + 0.33 * (0.5 - 0.33) / 0.33 = 0.5.
    const auto out8 = render(kGreyRamp, {{255, 0, 0, 255}, {128, 128, 128, 7}}, Image::fourCC("bgra"));
    EXPECT_EQ(out8[0], (Pixel{76, 76, 76, 255}));
    for (int c = 0; c < 3; ++c)
        EXPECT_NEAR(out8[1][c], 128, 1);
    EXPECT_EQ(out8[1][3], 7);
    const auto outFloat = render(kGreyRamp, {{1, 0, 0, 1}, {0.5, 0.5, 0.5, 2}}, Image::fourCC("ae32"));
    for (int c = 0; c < 3; ++c) {
        EXPECT_NEAR(outFloat[0][c], 0.3, 1e-6);
        EXPECT_NEAR(outFloat[1][c], 0.5, 1e-6);
    }
    EXPECT_EQ(outFloat[1][3], 2);
}

TEST(Tint, EqualMiddlePointsAndAFirstPointAtTheTop) {
    const Param::ParamColor black{0, 0, 0}, red{1, 0, 0}, green{0, 1, 0}, blue{0, 0, 1};
    const auto format = Image::fourCC("ae32");
    // Points 2 and 3 both at 50: below it the first piece, from it on the third; no division by zero.
    // Greys of luminance 0.25 and 0.75 lie halfway along those pieces.
    const auto equal = render({{0, 50, 50, 100}, {black, red, green, blue}},
                              {{0.25, 0.25, 0.25, 1}, {0.75, 0.75, 0.75, 1}}, format);
    for (int c = 0; c < 3; ++c) {
        EXPECT_NEAR(equal[0][c], (Pixel{0.5, 0, 0, 1})[c], 1e-6);
        EXPECT_NEAR(equal[1][c], (Pixel{0, 0.5, 0.5, 1})[c], 1e-6);
    }
    // The first point at 100: its colour wherever the luminance is at most 1. A float pixel above it
    // passes the first test and takes the last colour.
    const auto top = render({{100, 33, 66, 100}, {red, green, blue, black}},
                            {{0.2, 0.9, 0.4, 1}, {1, 0, 0, 1}, {2, 2, 2, 1}}, format);
    EXPECT_EQ(top[0], (Pixel{1, 0, 0, 1}));
    EXPECT_EQ(top[1], (Pixel{1, 0, 0, 1}));
    EXPECT_EQ(top[2], (Pixel{0, 0, 0, 1}));
}

TEST(Tint, APointOutOfOrderShadowsTheNext) {
    // Points 10, 70, 40, 90. Luminance 0.5 is below the second point, so the first piece takes it, at
    // (0.5 - 0.1) / 0.6 = 2/3; 0.8 is past the second and third, so the third piece, from point 3 at
    // 0.4, at (0.8 - 0.4) / 0.5 = 0.8. No pixel reaches the second piece.
    const Param::ParamColor black{0, 0, 0}, red{1, 0, 0}, green{0, 1, 0}, blue{0, 0, 1};
    const auto out = render({{10, 70, 40, 90}, {black, red, green, blue}},
                            {{0.5, 0.5, 0.5, 1}, {0.8, 0.8, 0.8, 1}}, Image::fourCC("ae32"));
    for (int c = 0; c < 3; ++c) {
        EXPECT_NEAR(out[0][c], (Pixel{2 / 3., 0, 0, 1})[c], 1e-6);
        EXPECT_NEAR(out[1][c], (Pixel{0, 0.2, 0.8, 1})[c], 1e-6);
    }
}

}  // namespace
}  // namespace Tw::Test
