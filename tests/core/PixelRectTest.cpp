// PixelRect: sentinels, intersection, extension and containment.
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "image/core/PixelRect.h"

namespace Tw::Image {
namespace TW_FILE_LOCAL {

using Words = std::array<uint32_t, 4>;

Words words(const PixelRect& r) {
    Words w;
    static_assert(sizeof(PixelRect) == sizeof(w));
    std::memcpy(w.data(), &r, sizeof(w));
    return w;
}

TEST(PixelRect, SentinelsAndEmptiness) {
    EXPECT_EQ(words(PixelRect::infinite()), (Words{0x80000000u, 0x80000000u, 0x7fffffffu, 0x7fffffffu}));
    EXPECT_EQ(words(PixelRect::empty()), (Words{0x7fffffffu, 0x7fffffffu, 0x80000000u, 0x80000000u}));
    EXPECT_EQ(words(PixelRect{}), words(PixelRect::empty()));
    EXPECT_TRUE(PixelRect::infinite().isInfinite());
    EXPECT_FALSE(PixelRect::infinite().isEmpty());
    EXPECT_TRUE(PixelRect::empty().isEmpty());
    // Infinity needs all four words; emptiness needs only one inverted or flat axis.
    EXPECT_FALSE((PixelRect{INT32_MIN, INT32_MIN, INT32_MAX, 0}).isInfinite());
    EXPECT_TRUE((PixelRect{3, 0, 3, 5}).isEmpty());
    EXPECT_TRUE((PixelRect{0, 4, 5, 2}).isEmpty());
    EXPECT_FALSE((PixelRect{-5, -5, -4, -4}).isEmpty());
}

TEST(PixelRect, IntersectionExtensionAndContainment) {
    const PixelRect inf = PixelRect::infinite();
    const PixelRect a{-10, 0, 20, 30}, b{5, -7, 40, 12};
    EXPECT_EQ(a.intersect(b), (PixelRect{5, 0, 20, 12}));
    EXPECT_EQ(inf.intersect(a), a);
    EXPECT_EQ(a.intersect(inf), a);
    EXPECT_TRUE(inf.intersect(inf).isInfinite());
    const PixelRect apart = a.intersect(PixelRect{30, 40, 50, 60});
    EXPECT_EQ(apart, (PixelRect{30, 40, 20, 30}));
    EXPECT_TRUE(apart.isEmpty());

    EXPECT_EQ(a.extend(b), (PixelRect{-10, -7, 40, 30}));
    EXPECT_TRUE(a.extend(inf).isInfinite());
    EXPECT_TRUE(inf.extend(a).isInfinite());
    EXPECT_EQ(PixelRect::empty().extend(b), b);

    EXPECT_TRUE(a.contains(a));
    for (const PixelRect& out : {PixelRect{-11, 0, 20, 30}, PixelRect{-10, -1, 20, 30},
                                 PixelRect{-10, 0, 21, 30}, PixelRect{-10, 0, 20, 31}, inf})
        EXPECT_FALSE(a.contains(out));
    EXPECT_TRUE(inf.contains(a));
    EXPECT_TRUE(inf.contains(inf));
}

// Margins and moves near the ends of the coordinate range stop there instead of overflowing; an infinite
// rectangle stays infinite.
TEST(PixelRect, GrowingAndMovingStopAtTheCoordinateRange) {
    const PixelRect nearEnds{INT32_MIN + 3, -5, INT32_MAX - 2, 5};
    EXPECT_EQ(nearEnds.grown(10, 1), (PixelRect{INT32_MIN, -6, INT32_MAX, 6}));
    EXPECT_EQ(nearEnds.translated(-4, INT64_C(1) << 40),
              (PixelRect{INT32_MIN, INT32_MAX, INT32_MAX - 6, INT32_MAX}));
    EXPECT_EQ((PixelRect{0, 0, 10, 10}).grown(-2, 3), (PixelRect{2, -3, 8, 13}));
    EXPECT_TRUE(PixelRect::infinite().grown(5, 5).isInfinite());
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Image
