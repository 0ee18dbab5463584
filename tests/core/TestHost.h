// A host for image tests: counts the storage it hands out and can name an output frame.
#pragma once

#include "image/core/ImageBuffer.h"

namespace Tw::Image::Testing {

class TestHost final : public ImageHost {
public:
    std::byte* allocatePixels(std::size_t bytes) override {
        ++allocations;
        allocatedBytes += bytes;
        return ImageHost::allocatePixels(bytes);
    }
    void releasePixels(std::byte* pixels, std::size_t bytes) noexcept override {
        ++releases;
        releasedBytes += bytes;
        ImageHost::releasePixels(pixels, bytes);
    }
    const ImageBuffer* outputFrame() const override { return output; }

    const ImageBuffer* output = nullptr;
    int allocations = 0, releases = 0;
    std::size_t allocatedBytes = 0, releasedBytes = 0;
};

// Component c of pixel (x, y) as T.
template <class T>
T& component(const ImageBuffer& image, int x, int y, int c) {
    return reinterpret_cast<T*>(image.pixelAddress(x, y))[c];
}

template <class T>
void fill(const ImageBuffer& image, T value) {
    for (int y = image.rect.top; y < image.rect.bottom; ++y)
        for (int x = image.rect.left; x < image.rect.right; ++x)
            for (int c = 0; c < 4; ++c)
                component<T>(image, x, y, c) = value;
}

}  // namespace Tw::Image::Testing
