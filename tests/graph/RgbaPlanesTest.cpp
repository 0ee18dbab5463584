// Pixels to planes of components and back, at every depth, in both orders, at both vector widths.
#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <vector>

#include "image/graph/RgbaPlanes.h"

namespace Tw::Image {
namespace TW_FILE_LOCAL {

constexpr int kPixels = 16;

// Component c (red, green, blue, alpha) of pixel k is 4k + c + 1, placed where the layout keeps it.
template <class Layout>
std::vector<typename Layout::Component> numberedPixels() {
    std::vector<typename Layout::Component> pixels(4 * kPixels);
    const int positions[4] = {Layout::red, Layout::green, Layout::blue, Layout::alpha};
    for (int k = 0; k < kPixels; ++k)
        for (int c = 0; c < 4; ++c)
            pixels[static_cast<std::size_t>(4 * k + positions[c])] =
                static_cast<typename Layout::Component>(4 * k + c + 1);
    return pixels;
}

template <class Layout, int Lanes>
void expectRoundTrip(int count) {
    using T = typename Layout::Component;
    const auto pixels = numberedPixels<Layout>();
    RgbaPlanes<kPixels> planes;
    loadRgbaPlanes<Layout, Lanes>(pixels.data(), count, planes);
    // Each lane holds the four components of one pixel or, up to a whole vector, zeros; every pixel
    // stands in some lane.
    std::set<int> seen;
    const int lanes = (count + Lanes - 1) / Lanes * Lanes;
    for (int i = 0; i < lanes; ++i) {
        const float red = planes.component[0][i];
        for (int c = 1; c < 4; ++c)
            EXPECT_EQ(planes.component[c][i], red == 0 ? 0.0f : red + static_cast<float>(c)) << "lane " << i;
        if (red != 0) seen.insert(static_cast<int>(red - 1) / 4);
    }
    EXPECT_EQ(seen.size(), static_cast<std::size_t>(count));
    EXPECT_EQ(*seen.rbegin(), count - 1);

    // The store puts them back where they came from and writes nothing beyond `count` pixels.
    std::vector<T> out(4 * kPixels, T(77));
    storeRgbaPlanes<Layout, Lanes>(planes, count, out.data(), [](auto v) { return v; });
    for (std::size_t i = 0; i < out.size(); ++i)
        EXPECT_EQ(out[i], i < static_cast<std::size_t>(4 * count) ? pixels[i] : T(77)) << "component " << i;
}

template <class T, ComponentOrder Order>
void expectRoundTrips() {
    using Layout = PixelLayout<T, Order>;
    for (const int count : {kPixels, 1, 5, 11}) {
        expectRoundTrip<Layout, 4>(count);
        expectRoundTrip<Layout, 8>(count);
    }
}

TEST(RgbaPlanes, LoadsAndStoresEveryLayoutAndWidth) {
    expectRoundTrips<uint8_t, ComponentOrder::Argb>();
    expectRoundTrips<uint8_t, ComponentOrder::Bgra>();
    expectRoundTrips<uint16_t, ComponentOrder::Argb>();
    expectRoundTrips<uint16_t, ComponentOrder::Bgra>();
    expectRoundTrips<float, ComponentOrder::Argb>();
    expectRoundTrips<float, ComponentOrder::Bgra>();
}

TEST(RgbaPlanes, IntegersAreTruncatedAndKeepTheirLowBits) {
    RgbaPlanes<8> planes{};
    const float values[4] = {-1.5f, 256.75f, 65535.9f, 70000.0f};
    for (int c = 0; c < 4; ++c)
        planes.component[c][0] = values[c];
    uint8_t bytes[4];
    storeRgbaPlanes<PixelLayout<uint8_t, ComponentOrder::Bgra>, 4>(planes, 1, bytes,
                                                                   [](auto v) { return v; });
    EXPECT_EQ(bytes[2], 255);  // red: -1
    EXPECT_EQ(bytes[1], 0);    // green: 256
    EXPECT_EQ(bytes[0], 255);  // blue: 65535
    EXPECT_EQ(bytes[3], 112);  // alpha: 70000 = 0x11170
    uint16_t words[4];
    storeRgbaPlanes<PixelLayout<uint16_t, ComponentOrder::Argb>, 8>(planes, 1, words,
                                                                    [](auto v) { return v; });
    EXPECT_EQ(words[1], 65535);
    EXPECT_EQ(words[2], 256);
    EXPECT_EQ(words[3], 65535);
    EXPECT_EQ(words[0], 4464);  // 0x11170 & 0xffff
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Image
