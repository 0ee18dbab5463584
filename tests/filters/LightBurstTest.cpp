// "Light Burst": its node against the formula transcribed plainly below, at every depth, and streaks and
// fades worked out by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "image/filters/tone/LightBurstFilter.h"
#include "tests/support/ComponentGrid.h"

namespace Tw::Image {
namespace TW_FILE_LOCAL {

using Host = Tw::Host::Standalone::Host;
using Tw::Test::componentAt;
using Tw::Test::forEachComponent;
using Tw::Test::gridImage;

struct Burst {
    float radius, centerX, centerY, amount;
};

ImageBuffer burst(ImageBuffer& input, const Burst& b) {
    FilterLayer<Host> layer(&input);
    LightBurstFilter<Host> node(layer, b.radius, b.centerX, b.centerY, b.amount);
    return Tw::Test::renderImage(node, input.rect, input.pixelFormat());
}

// Component c at (x, y): the brightest of ceil(radius) samples along the ray towards the centre, each
// clamped to the frame, mixed into the pixel by the amount in single precision; integers cut toward zero.
double expected(const ImageBuffer& in, int32_t x, int32_t y, int c, const Burst& b) {
    const PixelRect& r = in.rect;
    const auto at = [&](int32_t u, int32_t v) {
        return componentAt(in, std::clamp(u, r.left, r.right - 1), std::clamp(v, r.top, r.bottom - 1), c);
    };
    const float dx = b.centerX - static_cast<float>(x), dy = b.centerY - static_cast<float>(y);
    const float len = std::sqrt(dx * dx + dy * dy);
    const float ux = len > 0 ? dx / len : 0, uy = len > 0 ? dy / len : 0;
    double best = 0;
    for (int k = 0; k < static_cast<int>(std::ceil(b.radius)); ++k)
        best = std::max(best, at(x + static_cast<int32_t>(k * ux), y + static_cast<int32_t>(k * uy)));
    const float p = static_cast<float>(at(x, y));
    const float out = (static_cast<float>(best) - p) * b.amount + p;
    return in.depth() == 32 ? out : std::trunc(out);
}

TEST(LightBurst, FollowsTheFormulaAtEveryDepth) {
    // Centres inside the frame, on a pixel and far outside it; rays that leave the frame and ones that stay.
    const Burst bursts[] = {
        {7.2f, 10.3f, 20.7f, 0.37f}, {12, 30, 8, 1}, {3.5f, -20, 50, 0.8f}, {0.4f, 5, 5, 0.5f}};
    for (const PixelFormat format : Tw::Test::kGridFormats) {
        ImageBuffer input = Tw::Test::randomGridImage({-3, 2, 45, 37}, format, 9);
        for (const Burst& b : bursts) {
            forEachComponent(burst(input, b), [&](int32_t x, int32_t y, int c, double value) {
                ASSERT_EQ(value, expected(input, x, y, c, b))
                    << "depth " << input.depth() << " radius " << b.radius << " at " << x << ", " << y;
            });
        }
    }
}

// Whole levels of 8 bits in each depth's units, exact in all of them.
double level(PixelFormat format, double eightBit) {
    const double white = formatMaximum(format);
    return white == 1 ? eightBit / 256 : white == 255 ? eightBit : eightBit * 128;
}

TEST(LightBurst, ABrightPointStreaksAwayFromTheCentreOverTheRayAndNoFurther) {
    // Row 20 looks left to the centre at x = 5, so pixels 21 to 26 meet the point at x = 20 within their
    // 7 samples (radius 6.5) and take 3/4 of the way to it: 16 + 224 * 3/4 = 184; the point, its own
    // brightest sample, stays. Pixels nearer the centre look away from it, and rows beside it never step
    // onto row 20 within 7 samples.
    for (const PixelFormat format : Tw::Test::kGridFormats) {
        ImageBuffer input = gridImage({0, 0, 60, 41}, format, [&](int32_t x, int32_t y, int) {
            return level(format, x == 20 && y == 20 ? 240 : 16);
        });
        forEachComponent(burst(input, {6.5f, 5, 20, 0.75f}), [&](int32_t x, int32_t y, int, double value) {
            const double streak = x == 20 ? 240 : x > 20 && x <= 26 ? 184 : 16;
            ASSERT_EQ(value, level(format, y == 20 ? streak : 16)) << x << ", " << y;
        });
    }
}

TEST(LightBurst, APixelWithoutADirectionKeepsItsValue) {
    // On the centre every offset is 0; so it is everywhere for a centre that is no number or lies
    // infinitely far, whose direction is no number.
    const float nan = std::numeric_limits<float>::quiet_NaN(), far = std::numeric_limits<float>::infinity();
    for (const PixelFormat format : Tw::Test::kGridFormats) {
        ImageBuffer input = Tw::Test::randomGridImage({0, 0, 30, 20}, format, 4);
        EXPECT_EQ(componentAt(burst(input, {9, 12, 9, 0.6f}), 12, 9, 2), componentAt(input, 12, 9, 2));
        for (const Burst& b : {Burst{9, nan, 9, 0.6f}, Burst{9, far, 3, 0.6f}}) {
            forEachComponent(burst(input, b), [&](int32_t x, int32_t y, int c, double value) {
                const float p = static_cast<float>(componentAt(input, x, y, c));
                // A negative float loses to the starting 0 of the brightest sample.
                ASSERT_EQ(value, p < 0 ? (0 - p) * 0.6f + p : p) << x << ", " << y;
            });
        }
    }
}

// A "Radius" of 0 meets nothing: (0 - p) / 4 + p, alpha too, cut toward zero.
TEST(LightBurst, ARadiusOfNothingFadesToTransparentBlack) {
    const auto faded = [](PixelFormat format, double p) {
        ImageBuffer flat = gridImage({0, 0, 9, 9}, format, [&](int32_t, int32_t, int) { return p; });
        return componentAt(burst(flat, {0, 4, 4, 0.25f}), 7, 2, 0);
    };
    EXPECT_EQ(faded(fourCC("argb"), 201), 150);      // 150.75
    EXPECT_EQ(faded(fourCC("ae16"), 30001), 22500);  // 22500.75
    EXPECT_EQ(faded(fourCC("ae32"), 0.8), -0.8f * 0.25f + 0.8f);
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Image
