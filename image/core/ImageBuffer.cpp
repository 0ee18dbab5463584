#include "image/core/ImageBuffer.h"

#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace Tw::Image {

std::byte* allocateAlignedPixels(std::size_t bytes) {
    return static_cast<std::byte*>(::operator new (bytes, std::align_val_t{kPixelAlignment}));
}

void releaseAlignedPixels(std::byte* pixels) noexcept {
    ::operator delete (pixels, std::align_val_t{kPixelAlignment});
}

namespace {

// The top row of a frame whose rows may run backwards in memory.
std::byte* topRowOf(const FrameRecord& frame) {
    if (!frame.data) return nullptr;
    if (frame.rowbytes >= 0) return frame.data;
    return frame.data + static_cast<std::ptrdiff_t>(-int64_t{frame.rowbytes} * (int64_t{frame.height} - 1));
}

}  // namespace

ImageBuffer::ImageBuffer(ImageHost* host, const FrameRecord& frame, PixelFormat format)
    : host_(host), frame_(frame), pixelFormat_(format), depth_(formatDepth(format)) {
    rect = {frame.originX, frame.originY, frame.originX + frame.width, frame.originY + frame.height};
    validRect = rect;
    firstPixel_ = topRowOf(frame);
    rowStride_ = frame.rowbytes;
}

ImageBuffer::ImageBuffer(ImageBuffer&& other) noexcept {
    *this = std::move(other);
}

ImageBuffer& ImageBuffer::operator=(ImageBuffer&& other) noexcept {
    if (this != &other) {
        release();
        host_ = other.host_;
        frame_ = std::exchange(other.frame_, {});
        firstPixel_ = std::exchange(other.firstPixel_, nullptr);
        rowStride_ = std::exchange(other.rowStride_, 0);
        ownedBytes_ = std::exchange(other.ownedBytes_, 0);
        pixelFormat_ = other.pixelFormat_;
        depth_ = other.depth_;
        ownership_ = std::exchange(other.ownership_, Ownership::None);
        rect = other.rect;
        validRect = other.validRect;
    }
    return *this;
}

void ImageBuffer::release() noexcept {
    if (ownership_ == Ownership::Owner && frame_.data) {
        if (host_) {
            host_->releasePixels(frame_.data, ownedBytes_);
        } else {
            releaseAlignedPixels(frame_.data);
        }
    }
    frame_ = {};
    firstPixel_ = nullptr;
    rowStride_ = 0;
    ownedBytes_ = 0;
    ownership_ = Ownership::None;
}

void ImageBuffer::allocateDepth(const PixelRect& newRect, int depth) {
    PixelFormat format;
    switch (depth) {
        case 8:
            format = fourCC("argb");
            break;
        case 16:
            format = fourCC("ae16");
            break;
        case 32:
            format = fourCC("ae32");
            break;
        default:
            throw std::bad_alloc();
    }
    // Intermediate images match the output frame's format where they can, so that the last node writes
    // into the frame without a conversion.
    if (const ImageBuffer* output = host_ ? host_->outputFrame() : nullptr) {
        if (output->hasStorage() && output->depth() == depth) format = output->pixelFormat();
    }
    allocate(newRect, format);
}

void ImageBuffer::allocateLike(const ImageBuffer& reference, const PixelRect& newRect) {
    allocate(newRect, reference.pixelFormat());
}

void ImageBuffer::allocate(const PixelRect& newRect, PixelFormat format) {
    release();
    const int depth = formatDepth(format);
    if (depth != 8 && depth != 16 && depth != 32) throw std::bad_alloc();
    pixelFormat_ = format;
    depth_ = depth;
    rect = newRect;
    validRect = newRect;
    if (newRect.isEmpty()) return;

    // Rows are padded to a multiple of 32 bytes so that vector loads never straddle a row's end.
    const int64_t width = int64_t{newRect.right} - newRect.left;
    const int64_t height = int64_t{newRect.bottom} - newRect.top;
    // Row bytes are a host's 32-bit field, and the whole must be addressable: a 32-bit build can't take
    // what a 64-bit one can.
    const int64_t rowbytes = (bytesPerPixel() * width + 31) & ~int64_t{31};
    if (rowbytes > std::numeric_limits<int32_t>::max()) throw std::bad_alloc();
    if (height > std::numeric_limits<std::ptrdiff_t>::max() / rowbytes) throw std::bad_alloc();
    const auto bytes = static_cast<std::size_t>(rowbytes * height);
    std::byte* data = host_ ? host_->allocatePixels(bytes) : allocateAlignedPixels(bytes);

    frame_ = {data,
              static_cast<int32_t>(rowbytes),
              static_cast<int32_t>(width),
              static_cast<int32_t>(height),
              newRect.left,
              newRect.top};
    firstPixel_ = data;
    rowStride_ = rowbytes;
    ownedBytes_ = bytes;
    ownership_ = Ownership::Owner;
}

void ImageBuffer::viewOf(const ImageBuffer& parent, const PixelRect& viewRect) {
    // Taken before release(), which would clear them if the parent is this image itself.
    const PixelRect clipped = viewRect.intersect(parent.rect);
    std::byte* first =
        !clipped.isEmpty() && parent.hasStorage() ? parent.pixelAddress(clipped.left, clipped.top) : nullptr;
    const auto stride = parent.rowStride_;
    const auto frame = parent.frame_;
    const auto ownership = parent.ownership_;
    const auto format = parent.pixelFormat_;
    const auto depth = parent.depth_;
    const auto valid = parent.validRect;
    if (&parent == this) {
        // Narrowing an image to part of itself keeps what it owns.
        rect = clipped;
        firstPixel_ = first;
        return;
    }
    release();
    host_ = parent.host_;
    frame_ = frame;
    pixelFormat_ = format;
    depth_ = depth;
    validRect = valid;
    rect = clipped;
    firstPixel_ = first;
    rowStride_ = stride;
    ownership_ = ownership == Ownership::Owner ? Ownership::View : Ownership::None;
}

void ImageBuffer::clear(const PixelRect& area) {
    const PixelRect region = area.intersect(rect);
    if (region.isEmpty() || !hasStorage()) return;
    const auto rowBytes = static_cast<std::size_t>(region.width()) * bytesPerPixel();
    const bool wholeStorage = ownership_ == Ownership::Owner && firstPixel_ == frame_.data &&
                              region == rect && region.width() == frame_.width &&
                              region.height() == frame_.height;
    if (wholeStorage) {
        std::memset(frame_.data, 0, ownedBytes_);
        return;
    }
    for (int32_t y = region.top; y < region.bottom; ++y) {
        std::memset(pixelAddress(region.left, y), 0, rowBytes);
    }
}

void ImageBuffer::clearOutside(const PixelRect& area, const PixelRect& kept) {
    const PixelRect inside = kept.intersect(area);
    if (inside.isEmpty()) {
        clear(area);
        return;
    }
    clear({area.left, area.top, area.right, inside.top});
    clear({area.left, inside.bottom, area.right, area.bottom});
    clear({area.left, inside.top, inside.left, inside.bottom});
    clear({inside.right, inside.top, area.right, inside.bottom});
}

}  // namespace Tw::Image
