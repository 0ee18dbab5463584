// copyFrom: depth conversion, component order, row direction and the copied region.
#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

#include "TestHost.h"

namespace Tw::Image {
namespace TW_FILE_LOCAL {

using Testing::component;
using Testing::fill;

// One row of pixels, pixel i holding values[i] in all four components.
template <class T>
ImageBuffer rowOf(PixelFormat format, const std::vector<T>& values) {
    ImageBuffer image;
    image.allocateLike(ImageBuffer(nullptr, FrameRecord{}, format),
                       {0, 0, static_cast<int>(values.size()), 1});
    for (int x = 0; x < image.rect.right; ++x)
        for (int c = 0; c < 4; ++c)
            component<T>(image, x, 0, c) = values[x];
    return image;
}

template <class T>
void expectPixel(const ImageBuffer& image, int x, std::array<T, 4> expected) {
    for (int c = 0; c < 4; ++c)
        EXPECT_EQ(component<T>(image, x, 0, c), expected[c]) << "pixel " << x << "." << c;
}

// Every component, alpha included, goes by the same rule.
template <class To, class From>
void expectConversion(PixelFormat from, PixelFormat to, const std::vector<From>& values,
                      const std::vector<To>& expected) {
    ImageBuffer destination = rowOf(to, std::vector<To>(values.size(), To{7}));
    destination.copyFrom(rowOf(from, values));
    for (std::size_t x = 0; x < values.size(); ++x)
        expectPixel<To>(destination, x, {expected[x], expected[x], expected[x], expected[x]});
}

const PixelFormat k8 = fourCC("argb"), k16 = fourCC("ae16"), k32 = fourCC("ae32");

TEST(ImageCopy, ConversionBetweenEveryPairOfDepthsTruncates) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    expectConversion<uint8_t, uint8_t>(k8, k8, {0, 128, 255}, {0, 128, 255});
    expectConversion<uint16_t, uint8_t>(k8, k16, {0, 1, 128, 254, 255}, {0, 128, 16448, 32639, 32768});
    expectConversion<float, uint8_t>(k8, k32, {0, 51, 128, 255}, {0.0f, 51 / 255.0f, 128 / 255.0f, 1.0f});
    expectConversion<uint8_t, uint16_t>(k16, k8, {128, 16448, 32767, 32768, 65535}, {0, 127, 254, 255, 255});
    expectConversion<uint16_t, uint16_t>(k16, k16, {16448, 32768, 40000}, {16448, 32768, 40000});
    expectConversion<float, uint16_t>(k16, k32, {1, 16384, 32768}, {1.0f / 32768, 0.5f, 1.0f});
    // 1.0 is white by the multiplication and 1.0000001 by the clamp.
    expectConversion<uint8_t, float>(k32, k8, {0.0f, 1.0f, 1.0000001f, 1.5f, -0.2f, nan, 0.999f, 0.5f},
                                     {0, 255, 255, 255, 0, 0, 254, 127});
    expectConversion<uint16_t, float>(k32, k16, {1.0f, 1.0000001f, 1.5f, -0.2f, nan, 0.999f, 0.5f},
                                      {32768, 32768, 32768, 0, 0, 32735, 16384});
    expectConversion<float, float>(k32, k32, {-0.2f, 1.5f}, {-0.2f, 1.5f});
}

TEST(ImageCopy, ComponentsLandInTheirPlaces) {
    const uint8_t a = 10, r = 20, g = 30, b = 40;
    ImageBuffer argb = rowOf<uint8_t>(k8, {0});
    for (int c = 0; c < 4; ++c)
        component<uint8_t>(argb, 0, 0, c) = std::array{a, r, g, b}[c];

    ImageBuffer bgra = rowOf<uint8_t>(fourCC("bgra"), {0}), back = rowOf<uint8_t>(k8, {0});
    bgra.copyFrom(argb);
    expectPixel<uint8_t>(bgra, 0, {b, g, r, a});
    back.copyFrom(bgra);
    expectPixel<uint8_t>(back, 0, {a, r, g, b});
    // Orders that are not their own inverse show which way the mapping goes.
    ImageBuffer yuy2 = rowOf<uint8_t>(fourCC("yuy2"), {0}), uyvy = rowOf<uint8_t>(fourCC("uyvy"), {0});
    yuy2.copyFrom(argb);
    expectPixel<uint8_t>(yuy2, 0, {r, g, b, a});
    uyvy.copyFrom(argb);
    expectPixel<uint8_t>(uyvy, 0, {g, r, a, b});

    // Reordering together with a change of depth, both ways.
    ImageBuffer floatBgra = rowOf<float>(fourCC("BGra"), {0.0f});
    floatBgra.copyFrom(argb);
    expectPixel<float>(floatBgra, 0, {b / 255.0f, g / 255.0f, r / 255.0f, a / 255.0f});
    ImageBuffer deepBgra = rowOf<uint16_t>(fourCC("Bgra"), {0}), floatArgb = rowOf<float>(k32, {0.0f});
    for (int c = 0; c < 4; ++c)
        component<uint16_t>(deepBgra, 0, 0, c) = std::array<uint16_t, 4>{4096, 8192, 16384, 32768}[c];
    back.copyFrom(deepBgra);
    expectPixel<uint8_t>(back, 0, {255, 127, 63, 31});
    floatArgb.copyFrom(deepBgra);
    expectPixel<float>(floatArgb, 0, {1.0f, 0.5f, 0.25f, 0.125f});
}

TEST(ImageCopy, RowsFollowThePictureWhateverTheirDirectionInMemory) {
    // Two pixels by three rows in memory that runs upward: memory row m holds picture row 2 - m.
    std::array<uint8_t, 24> memory;
    for (int i = 0; i < 24; ++i)
        memory[i] = static_cast<uint8_t>((2 - i / 8) * 10 + i % 8 / 4);
    const FrameRecord upward{reinterpret_cast<std::byte*>(memory.data()), -8, 2, 3, 5, 7};
    const ImageBuffer source(nullptr, upward, k8);

    ImageBuffer same, deep;
    same.allocateDepth(source.rect, 8);
    deep.allocateDepth(source.rect, 16);
    same.copyFrom(source);
    deep.copyFrom(source);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 2; ++x) {
            EXPECT_EQ(component<uint8_t>(same, 5 + x, 7 + y, 3), y * 10 + x);
            EXPECT_EQ(component<uint16_t>(deep, 5 + x, 7 + y, 3), (y * 10 + x) * 32768 / 255);
        }
    // And back into memory that runs upward, by both paths.
    std::array<uint8_t, 24> target{};
    ImageBuffer destination(nullptr, FrameRecord{reinterpret_cast<std::byte*>(target.data()), -8, 2, 3, 5, 7},
                            k8);
    destination.copyFrom(same);
    EXPECT_EQ(target, memory);
    destination.copyFrom(deep);
    for (int i = 0; i < 24; ++i)
        EXPECT_EQ(target[i], (memory[i] * 32768 / 255 * 255) >> 15) << i;
}

TEST(ImageCopy, OnlyTheIntersectionIsWritten) {
    for (int depth : {8, 16}) {  // by rows, and by conversion
        ImageBuffer destination, source;
        destination.allocateDepth({0, 0, 4, 4}, 8);
        fill<uint8_t>(destination, 7);
        source.allocateDepth({2, 1, 6, 3}, depth);
        depth == 8 ? fill<uint8_t>(source, 255) : fill<uint16_t>(source, 32768);
        destination.copyFrom(source);
        for (int y = 0; y < 4; ++y)
            for (int x = 0; x < 4; ++x)
                for (int c = 0; c < 4; ++c)
                    EXPECT_EQ(component<uint8_t>(destination, x, y, c), x >= 2 && y >= 1 && y < 3 ? 255 : 7)
                        << depth << ": " << x << "," << y;
    }
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Image
