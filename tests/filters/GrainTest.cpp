// Grain: detail put back from the unsmoothed image, against the formula on clamped windows of the
// difference worked out pixel by pixel at every depth, and the cases that carry nothing or everything.
#include <gtest/gtest.h>

#include <cmath>

#include "image/filters/retouch/GrainFilter.h"
#include "tests/support/ComponentGrid.h"

namespace Tw::Image {
namespace TW_FILE_LOCAL {

using Host = Tw::Host::Standalone::Host;
using Tw::Test::componentAt;
using Tw::Test::gridImage;

ImageBuffer grain(ImageBuffer& detail, ImageBuffer& receiver, float amount) {
    FilterLayer<Host> detailLayer(&detail);
    FilterLayer<Host> receiverLayer(&receiver);
    GrainFilter<Host> node(detailLayer, receiverLayer, amount);
    return Tw::Test::renderImage(node, detail.rect, detail.pixelFormat());
}

// Component c of `image` at (x, y) clamped to its own rectangle.
double clampedAt(const ImageBuffer& image, int32_t x, int32_t y, int c) {
    const PixelRect& r = image.rect;
    return componentAt(image, std::clamp(x, r.left, r.right - 1), std::clamp(y, r.top, r.bottom - 1), c);
}

// receiver + (d(centre) - med) * amount with d = detail - receiver; integer products truncated before
// the addition, sums limited to 0..white.
double expected(const ImageBuffer& detail, const ImageBuffer& receiver, int32_t x, int32_t y, int c,
                float amount) {
    const auto difference = [&](int32_t u, int32_t v) {
        return static_cast<double>(static_cast<float>(clampedAt(detail, u, v, c)) -
                                   static_cast<float>(clampedAt(receiver, u, v, c)));
    };
    std::array<double, 9> window;
    for (int k = 0; k < 9; ++k)
        window[k] = difference(x + k % 3 - 1, y + k / 3 - 1);
    const float excess = static_cast<float>(difference(x, y) - Tw::Test::medianOf(window));
    const double base = clampedAt(receiver, x, y, c);
    if (detail.depth() == 32) return excess * amount + static_cast<float>(base);
    return std::clamp(base + std::trunc(excess * amount), 0.0, double(formatMaximum(detail.pixelFormat())));
}

TEST(Grain, FollowsTheFormulaOnEachImagesOwnClampedWindowsAtEveryDepth) {
    unsigned seed = 1;
    for (const PixelFormat format : Tw::Test::kGridFormats) {
        // The receiver covers less than the detail on three sides, so its windows clamp apart.
        ImageBuffer detail = Tw::Test::randomGridImage({-2, 1, 41, 12}, format, seed++);
        ImageBuffer receiver = Tw::Test::randomGridImage({0, 1, 37, 10}, format, seed++);
        for (const float amount : {0.5f, 0.77f, 1.0f}) {
            Tw::Test::forEachComponent(
                grain(detail, receiver, amount), [&](int32_t x, int32_t y, int c, double v) {
                    ASSERT_EQ(v, expected(detail, receiver, x, y, c, amount))
                        << "depth " << detail.depth() << " amount " << amount << " at " << x << ", " << y;
                });
        }
    }
}

TEST(Grain, EqualImagesAndUniformShiftsCarryNothingOver) {
    for (const PixelFormat format : Tw::Test::kGridFormats) {
        const double unit = formatMaximum(format) == 1 ? 1.0 / 256 : 1;
        ImageBuffer receiver = gridImage({0, 0, 23, 6}, format, [&](int32_t x, int32_t y, int c) {
            return ((x * 7 + y * 13 + c) % 200) * unit;
        });
        ImageBuffer shifted = gridImage({0, 0, 23, 6}, format, [&](int32_t x, int32_t y, int c) {
            return ((x * 7 + y * 13 + c) % 200 + 30) * unit;
        });
        for (ImageBuffer* detail : {&receiver, &shifted}) {
            Tw::Test::forEachComponent(grain(*detail, receiver, 0.8f),
                                       [&](int32_t x, int32_t y, int c, double v) {
                                           ASSERT_EQ(v, componentAt(receiver, x, y, c)) << x << ", " << y;
                                       });
        }
    }
}

TEST(Grain, AnIsolatedDifferenceIsRestoredInFullAtAmountOne) {
    for (const PixelFormat format : Tw::Test::kGridFormats) {
        const double unit = formatMaximum(format) == 1 ? 1.0 / 256 : 1;
        ImageBuffer receiver =
            gridImage({0, 0, 20, 7}, format, [&](int32_t, int32_t, int) { return 100 * unit; });
        // One spot 37 above the receiver; and, in the corner, a block of 2 x 2 whose corner pixel's clamped
        // window holds nothing but the block, so that its median is the block's own difference.
        ImageBuffer detail = gridImage({0, 0, 20, 7}, format, [&](int32_t x, int32_t y, int) {
            return (x == 11 && y == 3 ? 137 : x < 2 && y < 2 ? 150 : 100) * unit;
        });
        const ImageBuffer out = grain(detail, receiver, 1.0f);
        Tw::Test::forEachComponent(out, [&](int32_t x, int32_t y, int c, double v) {
            const bool restored = (x == 11 && y == 3) || (x == 1 && y == 1);
            ASSERT_EQ(v, restored ? componentAt(detail, x, y, c) : 100 * unit) << x << ", " << y;
        });
    }
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Image
