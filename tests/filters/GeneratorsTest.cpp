// "Ramp" and "Gradient" against their formulas worked out plainly below, at every depth and in both
// component orders.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

#include "image/filters/tone/GradientFilter.h"
#include "plugins/GradientPlugin.h"
#include "plugins/RampPlugin.h"
#include "tests/support/NodeRender.h"

namespace Tw::Test {
namespace TW_FILE_LOCAL {

using Image::ImageBuffer;
using Image::PixelFormat;
using Image::PixelRect;
namespace Param = Tw::Host::Param;
namespace RampParam = Plugins::RampParam;

// Fractions of white, in single precision, as `format` stores them: cut toward zero at the integer depths.
Pixel stored(const std::array<double, 3>& colour, PixelFormat format) {
    const auto white = static_cast<float>(whiteOf(format));
    Pixel p{0, 0, 0, white};
    for (int c = 0; c < 3; ++c) {
        const auto fraction = static_cast<float>(colour[c]);
        p[c] = white == 1 ? fraction : std::trunc(fraction * white);
    }
    return p;
}

// A frame of 16 x 4 pixels; the points are fractions of it, as a user gives them.
constexpr PixelRect kFrame{0, 0, 16, 4};

struct RampSettings {
    Param::ParamPoint from, to;  // fractions of the frame
    double point2, point3;       // percent
    std::array<Param::ParamColor, 4> colours;
};

std::vector<Pixel> renderRamp(const RampSettings& settings, PixelFormat format) {
    Plugins::RampPlugin<StandaloneHost> effect;
    ImageBuffer in;
    in.allocate(kFrame, format);
    return pixelsOf(renderEffectImage(effect, in, [&](Param::Parameters& params) {
        params.setPoint(settings.from, RampParam::Point1);
        params.setFloat(RampParam::Point2, settings.point2);
        params.setFloat(RampParam::Point3, settings.point3);
        params.setPoint(settings.to, RampParam::Point4);
        for (int k = 0; k < 4; ++k)
            params.setColor(settings.colours[k], RampParam::Color1 + k);
    }));
}

const std::array<Param::ParamColor, 4> kColours{
    {{0.1, 0.2, 0.3}, {0.9, 0.5, 0.1}, {0.2, 0.8, 0.6}, {1, 0.4, 0}}};

std::array<double, 3> colourOf(int k) {
    return {kColours[k].red, kColours[k].green, kColours[k].blue};
}

// Along row 1 from column 2 to column 14: t = (x - 2) / 12, with inner stops at 0.3 and 0.6.
TEST(Ramp, TakesItsPiecesInOrderAlongTheLine) {
    const RampSettings settings{{2 / 16.0, 0.25}, {14 / 16.0, 0.25}, 30, 60, kColours};
    for (PixelFormat format : kEveryFormat) {
        const std::vector<Pixel> pixels = renderRamp(settings, format);
        // The colour of the ramp at column x, any row: the line is level.
        const auto expected = [&](int x) {
            const float direction = 12.0f * (1.0f / 12.0f) * (1.0f / 12.0f);
            const float t = static_cast<float>(x - 2) * direction;
            const auto mix = [&](int from, float weight) {
                std::array<double, 3> c;
                for (int i = 0; i < 3; ++i) {
                    const float a = static_cast<float>(colourOf(from)[i]);
                    const float b = static_cast<float>(colourOf(from + 1)[i]);
                    c[i] = a + (b - a) * weight;
                }
                return c;
            };
            if (x <= 2) return colourOf(0);
            if (x >= 14) return colourOf(3);
            if (x <= 5) return mix(0, t / 0.3f);                    // t up to 0.25
            if (x <= 9) return mix(1, (t - 0.3f) / (0.6f - 0.3f));  // t from 1/3 to 7/12
            return mix(2, (t - 0.6f) / (1.0f - 0.6f));              // t from 2/3 to 11/12
        };
        for (int y = 0; y < 4; ++y)
            for (int x = 0; x < 16; ++x)
                EXPECT_EQ(pixels[y * 16 + x], stored(expected(x), format))
                    << Image::formatDepth(format) << " bits, pixel " << x << "," << y;
    }
}

TEST(Ramp, GivesColour1EverywhereWhenItsEndsMeetAndOneColourWhenAllAreOne) {
    for (PixelFormat format : kEveryFormat) {
        const std::vector<Pixel> met = renderRamp({{0.5, 0.5}, {0.5, 0.5}, 30, 60, kColours}, format);
        for (const Pixel& p : met)
            EXPECT_EQ(p, stored(colourOf(0), format));
        const Param::ParamColor one{0.7, 0.25, 0.5};
        const std::vector<Pixel> solid = renderRamp({{0, 0}, {1, 1}, 30, 60, {one, one, one, one}}, format);
        for (const Pixel& p : solid)
            EXPECT_EQ(p, stored({0.7, 0.25, 0.5}, format));
    }
}

// Four points on one column, a row apart, their colours red, green, blue and white.
const Image::GradientField kColumnOfPoints{{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 1}}},
                                           {{{-0x1p30f, 0}, {-0x1p30f, 1}, {-0x1p30f, 2}, {-0x1p30f, 3}}}};

// A left whose bits are those of -2.0f: u = -2, h = -1 and the falloff 1 / (2 h^2) = 0.5. Every column of
// the four, from -2^30 on, is -2^30 as a float, so a pixel's weights are those of its row alone.
TEST(Gradient, WeighsThePointsByTheFalloffTheOutputsLeftGives) {
    const int32_t left = std::bit_cast<int32_t>(-2.0f);
    ASSERT_EQ(left, -(1 << 30));
    for (PixelFormat format : kEveryFormat) {
        Image::GradientFilter<StandaloneHost> gradient(kColumnOfPoints);
        const std::vector<Pixel> pixels = renderNode(gradient, {left, 0, left + 4, 4}, format);
        for (int y = 0; y < 4; ++y) {
            double weights[4], sum = 0;
            for (int i = 0; i < 4; ++i)
                sum += weights[i] = std::exp(-0.5 * (y - i) * (y - i));
            std::array<double, 3> colour{};
            for (int i = 0; i < 4; ++i)
                for (int c = 0; c < 3; ++c)
                    colour[c] += kColumnOfPoints.colors[i][c] * weights[i] / sum;
            const Pixel expected = stored(colour, format);
            for (int x = 0; x < 4; ++x) {
                const Pixel& p = pixels[y * 4 + x];
                for (int c = 0; c < 4; ++c)
                    EXPECT_NEAR(p[c], expected[c], 1e-6) << Image::formatDepth(format) << " bits, row " << y;
            }
        }
    }
}

// A left whose bits are those of -infinity: h^2 is infinite and the falloff 0, so every weight is 1 and
// the four colours mix in equal parts, wherever the points lie.
TEST(Gradient, MixesTheColoursEvenlyAtAFalloffOf0) {
    const int32_t left = std::bit_cast<int32_t>(-std::numeric_limits<float>::infinity());
    for (PixelFormat format : kEveryFormat) {
        Image::GradientFilter<StandaloneHost> gradient(kColumnOfPoints);
        for (const Pixel& p : renderNode(gradient, {left, 0, left + 3, 2}, format))
            EXPECT_EQ(p, stored({0.5, 0.5, 0.5}, format)) << Image::formatDepth(format) << " bits";
    }
}

// At a left of 0 the falloff is infinite: every weight is 0 or, on a point, no number, and so is every
// colour. Integer depths store 0; float stores one NaN, positive, whatever the processor makes.
TEST(Gradient, PaintsNoNumberOrBlackOverAWholeFrame) {
    for (PixelFormat format : kEveryFormat) {
        Plugins::GradientPlugin<StandaloneHost> effect;
        ImageBuffer in;
        in.allocate(kFrame, format);
        const double white = whiteOf(format);
        for (const Pixel& p : pixelsOf(renderEffectImage(effect, in, [](Param::Parameters&) {}))) {
            for (int c = 0; c < 3; ++c) {
                if (white == 1) {
                    EXPECT_TRUE(std::isnan(p[c]) && !std::signbit(p[c])) << p[c];
                } else {
                    EXPECT_EQ(p[c], 0) << white;
                }
            }
            EXPECT_EQ(p[3], white);
        }
    }
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Test
