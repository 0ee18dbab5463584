// What an image asks of the host it is rendered for.
//
// A host decides where pixel storage comes from (After Effects hands out memory handles; the standalone
// host uses aligned memory and counts it) and which frame the render writes into, whose format new images
// of the same depth take. An image without a host uses plain aligned memory.
#pragma once

#include <cstddef>

namespace Tw::Image {

class ImageBuffer;

// Storage is aligned to a cache line, more than the 32 bytes the widest kernels need.
inline constexpr std::size_t kPixelAlignment = 64;

std::byte* allocateAlignedPixels(std::size_t bytes);
void releaseAlignedPixels(std::byte* pixels) noexcept;

class ImageHost {
public:
    // Throws std::bad_alloc when no memory is left.
    virtual std::byte* allocatePixels(std::size_t bytes) { return allocateAlignedPixels(bytes); }
    virtual void releasePixels(std::byte* pixels, std::size_t /*bytes*/) noexcept {
        releaseAlignedPixels(pixels);
    }

    // The frame the current render writes into, or null.
    virtual const ImageBuffer* outputFrame() const { return nullptr; }

protected:
    ImageHost() = default;
    ImageHost(const ImageHost&) = default;
    ImageHost& operator=(const ImageHost&) = default;
    ~ImageHost() = default;
};

}  // namespace Tw::Image
