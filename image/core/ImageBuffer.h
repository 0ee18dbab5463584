// ImageBuffer: the one image object of the system.
//
// A rectangle of interleaved four-component pixels with a signed row stride. It either owns storage it
// allocated, adopts a frame someone else owns, or is a view into another image; a view costs no pixels,
// which is what lets a chain of per-pixel filters run in the caller's buffer. Kernels see an image only as
// `pixels()` (the first pixel of the top row), `rowStride()` and `rect`.
//
// Components are unsigned 8-bit (white 255), unsigned 16-bit (white 32768) or float (white 1.0, values
// outside 0..1 allowed); their order within the pixel comes from the pixel format.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/core/ImageHost.h"
#include "image/core/PixelFormat.h"
#include "image/core/PixelRect.h"

namespace Tw::Image {

// A frame as a host describes it. `data` is the lowest address of the storage; a negative `rowbytes` says
// that the picture's top row is the last one in memory.
struct FrameRecord {
    std::byte* data = nullptr;
    int32_t rowbytes = 0;
    int32_t width = 0;
    int32_t height = 0;
    int32_t originX = 0;
    int32_t originY = 0;
};

class ImageBuffer {
public:
    enum class Ownership : int32_t { View = -1, None = 0, Owner = 1 };

    explicit ImageBuffer(ImageHost* host = nullptr) : host_(host) {}
    // Adopts a frame that someone else owns and keeps alive.
    ImageBuffer(ImageHost* host, const FrameRecord& frame, PixelFormat format);
    ImageBuffer(ImageBuffer&& other) noexcept;
    ImageBuffer& operator=(ImageBuffer&& other) noexcept;
    ImageBuffer(const ImageBuffer&) = delete;
    ImageBuffer& operator=(const ImageBuffer&) = delete;
    ~ImageBuffer() { release(); }

    // Allocates `rect` at depth 8, 16 or 32 in "argb", "ae16" or "ae32", or in the format of the host's
    // output frame when that has the same depth. Any other depth throws std::bad_alloc. An empty
    // rectangle is stored and allocates nothing.
    void allocateDepth(const PixelRect& rect, int depth);
    // Allocates `rect` in the format and depth of `reference`.
    void allocateLike(const ImageBuffer& reference, const PixelRect& rect);
    // Allocates `rect` in `format`, at the format's depth; a format without 8, 16 or 32-bit components
    // throws std::bad_alloc.
    void allocate(const PixelRect& rect, PixelFormat format);
    // Becomes a view of `rect` within `parent`, clipped to the parent's rectangle; an empty intersection
    // leaves a view with no pixels. The parent must outlive the view.
    void viewOf(const ImageBuffer& parent, const PixelRect& rect);
    // Sets `rect`, clipped to this image, to zero.
    void clear(const PixelRect& rect);
    // Sets the parts of `area` outside `kept` to zero: what a filter writes where it has nothing to say.
    void clearOutside(const PixelRect& area, const PixelRect& kept);
    // Copies the intersection of both rectangles from `source`, converting depth and component order.
    // Every conversion truncates; the rest of this image stays as it was.
    void copyFrom(const ImageBuffer& source);
    // Frees what this image owns and leaves it without storage.
    void release() noexcept;

    std::byte* pixels() const { return firstPixel_; }
    std::ptrdiff_t rowStride() const { return rowStride_; }
    bool hasStorage() const { return firstPixel_ != nullptr; }
    int bytesPerPixel() const { return depth_ / 8 * 4; }
    // Address of pixel (x, y) in frame coordinates; no bounds check.
    std::byte* pixelAddress(int32_t x, int32_t y) const {
        return firstPixel_ + (static_cast<std::ptrdiff_t>(y) - rect.top) * rowStride_ +
               (static_cast<std::ptrdiff_t>(x) - rect.left) * bytesPerPixel();
    }

    ImageHost* host() const { return host_; }
    const FrameRecord& frame() const { return frame_; }
    PixelFormat pixelFormat() const { return pixelFormat_; }
    int depth() const { return depth_; }
    Ownership ownership() const { return ownership_; }

    // The pixels this image addresses, in frame coordinates.
    PixelRect rect = {0, 0, 0, 0};
    // Where the content means something; a node stores its bounds here when it allocates its output.
    PixelRect validRect = {0, 0, 0, 0};

private:
    ImageHost* host_ = nullptr;
    FrameRecord frame_;
    std::byte* firstPixel_ = nullptr;
    std::ptrdiff_t rowStride_ = 0;
    std::size_t ownedBytes_ = 0;
    PixelFormat pixelFormat_ = fourCC("argb");
    int depth_ = 8;
    Ownership ownership_ = Ownership::None;
};

}  // namespace Tw::Image
