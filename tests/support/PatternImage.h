// Test frames with something in every component: smooth ramps, a hard edge, and noise that differs from
// pixel to pixel and component to component, so that a kernel which mixes up places, components or rows
// cannot come out right by chance.
#pragma once

#include <cmath>
#include <cstdint>

#include "image/core/ImageBuffer.h"
#include "image/core/PixelFormat.h"
#include "image/graph/KernelDispatch.h"

namespace Tw::Test {

// Component c (red, green, blue, alpha) of pixel (x, y) as a fraction of white, in 0..1; `seed` varies the
// noise.
inline double patternValue(int32_t x, int32_t y, int c, uint32_t seed) {
    uint32_t h = static_cast<uint32_t>(x) * 73856093u ^ static_cast<uint32_t>(y) * 19349663u ^
                 static_cast<uint32_t>(c) * 83492791u ^ seed * 2654435761u;
    h ^= h >> 13;
    h *= 0x5bd1e995u;
    h ^= h >> 15;
    const double noise = (h & 0xffff) / 65535.0;
    const double ramp = 0.5 + 0.4 * std::sin(0.11 * x + 0.07 * y + c);
    const double edge = x > 20 ? 0.3 : 0.0;
    if (c == 3) return 0.35 + 0.65 * (0.7 * ramp + 0.3 * noise);
    return std::fmod(0.6 * ramp + 0.25 * noise + edge, 1.0);
}

// An image of `rect` in `format` filled with the pattern; integer formats round it to whole steps.
inline Image::ImageBuffer patternImage(const Image::PixelRect& rect, Image::PixelFormat format,
                                       uint32_t seed = 0) {
    Image::ImageBuffer image;
    image.allocate(rect, format);
    const auto positions = Image::componentPositions(format).value();
    Image::dispatchLayout(image, [&](auto layout) {
        using T = typename decltype(layout)::Component;
        const double white = decltype(layout)::white;
        for (int32_t y = rect.top; y < rect.bottom; ++y) {
            T* pixel = reinterpret_cast<T*>(image.pixelAddress(rect.left, y));
            for (int32_t x = rect.left; x < rect.right; ++x, pixel += 4) {
                for (int c = 0; c < 4; ++c) {
                    const double v = patternValue(x, y, c, seed) * white;
                    pixel[positions[c]] = static_cast<T>(white == 1 ? v : std::round(v));
                }
            }
        }
    });
    return image;
}

}  // namespace Tw::Test
