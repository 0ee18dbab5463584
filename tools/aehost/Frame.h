// Frame: the frames a caller hands to the host and gets back, held plainly: rows from top to bottom with no
// padding, four components a pixel in ARGB or BGRA order, at 8 bits (white 255), 16 bits (white 32768) or
// float (white 1). It converts to and from the system's ImageBuffer, in which files are read and written and
// the standalone host renders.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "image/core/ImageBuffer.h"
#include "image/core/PixelFormat.h"
#include "tools/common/ComponentOrder.h"

namespace Tw::Tools::AeHost {

struct Frame {
    int32_t width = 0;
    int32_t height = 0;
    int depth = 8;
    ComponentOrder order = ComponentOrder::Argb;
    std::vector<std::byte> pixels;

    // Every byte zero.
    static Frame blank(int32_t width, int32_t height, int depth, ComponentOrder order);
    // The pixels of `image` (any row stride), in its depth and order.
    static Frame copyOf(const Image::ImageBuffer& image);

    int bytesPerPixel() const { return depth / 8 * 4; }
    int32_t rowBytes() const { return width * bytesPerPixel(); }
    std::byte* row(int32_t y) { return pixels.data() + static_cast<std::ptrdiff_t>(y) * rowBytes(); }
    const std::byte* row(int32_t y) const {
        return pixels.data() + static_cast<std::ptrdiff_t>(y) * rowBytes();
    }
    // "argb", "ae16", "ae32" for ARGB frames; "bgra", "Bgra", "BGra" for BGRA ones.
    Image::PixelFormat pixelFormat() const;

    // The same picture upside down.
    Frame flippedVertically() const;
    // An image over these pixels, with its top left pixel at (originX, originY); the frame keeps the memory
    // and must outlive the image.
    Image::ImageBuffer view(int32_t originX = 0, int32_t originY = 0);

    friend bool operator==(const Frame&, const Frame&) = default;
};

}  // namespace Tw::Tools::AeHost
