// Images written and read as lists of pixels, for tests that check components one by one.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "image/core/ImageBuffer.h"
#include "image/core/PixelFormat.h"
#include "image/graph/KernelDispatch.h"

namespace Tw::Test {

// Red, green, blue, alpha in the image's stored units.
using Pixel = std::array<double, 4>;

// One row of pixels, starting at (left, top), each component where the format puts it.
inline Image::ImageBuffer imageOf(const std::vector<Pixel>& pixels, Image::PixelFormat format,
                                  int32_t left = 0, int32_t top = 0) {
    Image::ImageBuffer image;
    image.allocate({left, top, left + static_cast<int32_t>(pixels.size()), top + 1}, format);
    const auto positions = Image::componentPositions(format).value();
    Image::dispatchLayout(image, [&](auto layout) {
        using T = typename decltype(layout)::Component;
        auto* row = reinterpret_cast<T*>(image.pixels());
        for (std::size_t x = 0; x < pixels.size(); ++x)
            for (int c = 0; c < 4; ++c)
                row[x * 4 + positions[c]] = static_cast<T>(pixels[x][c]);
    });
    return image;
}

// Every pixel of `image`, row after row.
inline std::vector<Pixel> pixelsOf(const Image::ImageBuffer& image) {
    std::vector<Pixel> pixels(static_cast<std::size_t>(image.rect.width() * image.rect.height()));
    const auto positions = Image::componentPositions(image.pixelFormat()).value();
    Image::dispatchLayout(image, [&](auto layout) {
        using T = typename decltype(layout)::Component;
        std::size_t i = 0;
        for (int y = image.rect.top; y < image.rect.bottom; ++y)
            for (int x = image.rect.left; x < image.rect.right; ++x, ++i)
                for (int c = 0; c < 4; ++c)
                    pixels[i][c] = reinterpret_cast<const T*>(image.pixelAddress(x, y))[positions[c]];
    });
    return pixels;
}

}  // namespace Tw::Test
