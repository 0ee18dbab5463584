// Shine removal: its kernel against the formula at every depth, and the node over its three blurs.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "image/filters/retouch/ShineFilter.h"
#include "tests/support/ComponentGrid.h"

namespace Tw::Image {
namespace TW_FILE_LOCAL {

using Host = Tw::Host::Standalone::Host;
using Tw::Test::componentAt;
using Tw::Test::gridImage;

ImageBuffer nearThresholdImage(const PixelRect& rect, PixelFormat format, unsigned seed) {
    std::mt19937 random(seed);
    const double white = formatMaximum(format);
    // Floats gather near the 0.001 threshold now and then; integers take 0 as often.
    const double nearThreshold[] = {0.0, 0.0005, 0.001, 0.0010001, 0.002};
    return gridImage(rect, format, [&](int32_t, int32_t, int) {
        if (random() % 6 == 0) return white == 1 ? nearThreshold[random() % 5] : 0.0;
        if (white == 1) return std::uniform_real_distribution<double>(0.0, 1.5)(random);
        return std::floor(std::uniform_real_distribution<double>(0, white + 1)(random));
    });
}

TEST(Shine, PullsDownByTheRatioWhereTheThirdBlurIsDarkerAtEveryDepth) {
    unsigned seed = 3;
    for (const PixelFormat format : Tw::Test::kGridFormats) {
        const PixelRect rect{-1, 2, 30, 9};
        const ImageBuffer o = nearThresholdImage(rect, format, seed++);
        const ImageBuffer b = nearThresholdImage(rect, format, seed++);
        const ImageBuffer d = nearThresholdImage(rect, format, seed++);
        for (const float scale : {1.0f, 0.6f}) {
            ImageBuffer out;
            out.allocate(rect, format);
            Progress progress;
            shineBand(out, o, b, d, rect, cpuFeatures(), progress, scale);
            const float white = static_cast<float>(formatMaximum(format));
            Tw::Test::forEachComponent(out, [&](int32_t x, int32_t y, int c, double value) {
                const auto oc = static_cast<float>(componentAt(o, x, y, c));
                const auto bc = static_cast<float>(componentAt(b, x, y, c));
                const auto dc = static_cast<float>(componentAt(d, x, y, c));
                float result = oc;
                if (static_cast<double>(bc) > 0.001 && bc > dc)
                    result = oc * (dc / bc * scale + (1.0f - scale));
                if (white != 1) result = std::trunc(std::clamp(result, 0.0f, white));
                ASSERT_EQ(value, result)
                    << "depth " << out.depth() << " at " << x << ", " << y << " b " << bc;
            });
        }
    }
}

TEST(ShineFilter, OnlyDarkensAndNoScaleDropsTheNode) {
    for (const PixelFormat format : Tw::Test::kGridFormats) {
        ImageBuffer input = nearThresholdImage({0, 0, 40, 24}, format, 11);
        FilterLayer<Host> layer(&input);
        const DomainTransformParams blur{3, 3, 0.4f, 3};
        ShineFilter<Host> shine(layer, blur, 0.7f);
        const ImageBuffer out = Tw::Test::renderImage(shine, input.rect, format);
        int darkened = 0;
        Tw::Test::forEachComponent(out, [&](int32_t x, int32_t y, int c, double value) {
            ASSERT_LE(value, componentAt(input, x, y, c)) << x << ", " << y;
            darkened += value < componentAt(input, x, y, c);
        });
        EXPECT_GT(darkened, 0);

        EXPECT_EQ(ShineFilter<Host>(layer, blur, 0.0f).passThroughInput(), 0);
    }
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Image
