// Images made from and read as a function of (x, y, component), components in memory order and in the
// image's own units, for tests of filters that treat the four components alike.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <random>
#include <vector>

#include "image/core/ImageBuffer.h"
#include "image/graph/ImageView.h"
#include "image/graph/KernelDispatch.h"
#include "tests/support/NodeRender.h"

namespace Tw::Test {

using ComponentFunction = std::function<double(int32_t x, int32_t y, int c)>;

// Every depth, and both component orders at 8 bits.
inline const Image::PixelFormat kGridFormats[] = {Image::fourCC("argb"), Image::fourCC("ae16"),
                                                  Image::fourCC("ae32"), Image::fourCC("bgra")};

inline Image::ImageBuffer gridImage(const Image::PixelRect& rect, Image::PixelFormat format,
                                    const ComponentFunction& value) {
    Image::ImageBuffer image;
    image.allocate(rect, format);
    Image::dispatchLayout(image, [&](auto layout) {
        using T = typename decltype(layout)::Component;
        const auto view = Image::ImageView<T>::of(image);
        for (int32_t y = rect.top; y < rect.bottom; ++y)
            for (int32_t x = rect.left; x < rect.right; ++x)
                for (int c = 0; c < 4; ++c)
                    view.at(x, y)[c] = static_cast<T>(value(x, y, c));
    });
    return image;
}

// The same with value(x, y, c) a fraction of white, which the integer formats round to whole steps.
inline Image::ImageBuffer fractionImage(const Image::PixelRect& rect, Image::PixelFormat format,
                                        const ComponentFunction& value) {
    const double white = Image::formatMaximum(format);
    return gridImage(rect, format, [&](int32_t x, int32_t y, int c) {
        const double v = value(x, y, c) * white;
        return white == 1 ? v : std::round(v);
    });
}

// Any 8-bit value; 16-bit values up to white, 32768, included; floats from -0.5 to 2.
inline Image::ImageBuffer randomGridImage(const Image::PixelRect& rect, Image::PixelFormat format,
                                          unsigned seed) {
    std::mt19937 random(seed);
    const double white = Image::formatMaximum(format);
    return gridImage(rect, format, [&](int32_t, int32_t, int) {
        if (white == 1) return std::uniform_real_distribution<double>(-0.5, 2.0)(random);
        return std::floor(std::uniform_real_distribution<double>(0, white + 1)(random));
    });
}

// Component c of pixel (x, y), as a double (exact at every depth).
inline double componentAt(const Image::ImageBuffer& image, int32_t x, int32_t y, int c) {
    double value = 0;
    Image::dispatchLayout(image, [&](auto layout) {
        value = Image::ImageView<typename decltype(layout)::Component>::of(image).at(x, y)[c];
    });
    return value;
}

// Calls check(x, y, c, value) for every component of `image`.
inline void forEachComponent(const Image::ImageBuffer& image,
                             const std::function<void(int32_t, int32_t, int, double)>& check) {
    for (int32_t y = image.rect.top; y < image.rect.bottom; ++y)
        for (int32_t x = image.rect.left; x < image.rect.right; ++x)
            for (int c = 0; c < 4; ++c)
                check(x, y, c, componentAt(image, x, y, c));
}

// Every component of `image`, pixel after pixel, in memory order.
inline std::vector<double> componentsOf(const Image::ImageBuffer& image) {
    std::vector<double> values;
    forEachComponent(image, [&](int32_t, int32_t, int, double v) { values.push_back(v); });
    return values;
}

// Component c of the nine pixels of the 3 x 3 window around (x, y), row by row, each coordinate clamped to
// the image's rectangle.
inline std::array<double, 9> clampedWindow(const Image::ImageBuffer& image, int32_t x, int32_t y, int c) {
    std::array<double, 9> values;
    const Image::PixelRect& r = image.rect;
    for (int k = 0; k < 9; ++k)
        values[k] = componentAt(image, std::clamp(x + k % 3 - 1, r.left, r.right - 1),
                                std::clamp(y + k / 3 - 1, r.top, r.bottom - 1), c);
    return values;
}

inline double medianOf(std::array<double, 9> values) {
    std::nth_element(values.begin(), values.begin() + 4, values.end());
    return values[4];
}

}  // namespace Tw::Test
