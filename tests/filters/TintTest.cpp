// "Tint" against its ramp, transcribed plainly below in single precision, at every depth and in both
// component orders, and at its edge cases worked out by hand.
#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "plugins/TintPlugin.h"
#include "tests/support/NodeRender.h"

namespace Tw::Test {
namespace TW_FILE_LOCAL {

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
    return renderEffect<TintPlugin<StandaloneHost>>(stored, format, [&](Param::Parameters& params) {
        for (int k = 0; k < 4; ++k) {
            params.setFloat(TintParam::Point1 + k, ramp.points[k]);
            params.setColor(ramp.colours[k], TintParam::Color1 + k);
        }
    });
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

// Values worked out by hand. The defaults give the grey of the luminance: pure red, of luminance 0.3,
// lies on the first piece, 0.33 * 0.3 / 0.33 = 0.3, cut at 8 bits from 76.5 to 76; grey 0.5 on the
// second, 0.33 + 0.33 * (0.5 - 0.33) / 0.33. Points 2 and 3 both at 50: below it the first piece, from it
// on the third, with no division by zero. The first point at 100: its colour wherever the luminance is at
// most 1; a float pixel above it passes the first test and takes the last colour. Points 10, 70, 40, 90:
// luminance 0.5 is below the second point, so the first piece takes it, at (0.5 - 0.1) / 0.6 = 2/3; 0.8
// is past the second and third, so the third piece, from point 3 at 0.4, at (0.8 - 0.4) / 0.5 = 0.8. No
// pixel reaches the second piece.
TEST(Tint, ValuesWorkedByHand) {
    const Param::ParamColor black{0, 0, 0}, red{1, 0, 0}, green{0, 1, 0}, blue{0, 0, 1};
    const Ramp equal{{0, 50, 50, 100}, {black, red, green, blue}},
        top{{100, 33, 66, 100}, {red, green, blue, black}},
        unsorted{{10, 70, 40, 90}, {black, red, green, blue}};
    const PixelFormat k8 = Image::fourCC("bgra"), k32 = Image::fourCC("ae32");
    struct Case {
        const Ramp& ramp;
        PixelFormat format;
        Pixel in, want;
    };
    const Case cases[] = {
        {kGreyRamp, k8, {255, 0, 0, 255}, {76, 76, 76, 255}},
        {kGreyRamp, k32, {1, 0, 0, 1}, {0.3, 0.3, 0.3, 1}},
        {kGreyRamp, k32, {0.5, 0.5, 0.5, 2}, {0.5, 0.5, 0.5, 2}},
        {equal, k32, {0.25, 0.25, 0.25, 1}, {0.5, 0, 0, 1}},
        {equal, k32, {0.75, 0.75, 0.75, 1}, {0, 0.5, 0.5, 1}},
        {top, k32, {0.2, 0.9, 0.4, 1}, {1, 0, 0, 1}},
        {top, k32, {1, 0, 0, 1}, {1, 0, 0, 1}},
        {top, k32, {2, 2, 2, 1}, {0, 0, 0, 1}},
        {unsorted, k32, {0.5, 0.5, 0.5, 1}, {2 / 3., 0, 0, 1}},
        {unsorted, k32, {0.8, 0.8, 0.8, 1}, {0, 0.2, 0.8, 1}},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const Pixel out = render(cases[i].ramp, {cases[i].in}, cases[i].format)[0];
        for (int c = 0; c < 4; ++c)
            EXPECT_NEAR(out[c], cases[i].want[c], 1e-6) << "case " << i << ", component " << c;
    }
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Test
