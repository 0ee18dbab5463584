// ImageDescriptor: the small record by which image formats are compared and handed to allocation.
#pragma once

#include <cstdint>

namespace Tw::Image {

class ImageBuffer;

struct ImageDescriptor {
    // What a component is: 0 8-bit, 2 16-bit with white 32768, 3 16-bit with a lower white, 5 float;
    // 1 and 4 are further 8-bit and 16-bit slots.
    enum FormatIndex : int32_t { Int8 = 0, Int16 = 2, Int16Low = 3, Float32 = 5 };
    // Set when rows run the same way as in the output frame.
    static constexpr int32_t kSameRowDirection = 2;
    // Logical components 0, 1, 2, 3 at positions 0, 1, 2, 3, two bits each, highest first.
    static constexpr uint8_t kIdentitySwizzle = 27;

    uint64_t channels = 4;
    float scale = 1.0f;
    int32_t formatIndex = Int8;
    uint8_t swizzleCode = kIdentitySwizzle;
    int32_t flags = kSameRowDirection;
    int32_t maximum = 0;

    // Describes `image`; its host's output frame, if any, sets the row-direction flag.
    static ImageDescriptor of(const ImageBuffer& image);

    int depth() const;

    friend bool operator==(const ImageDescriptor&, const ImageDescriptor&) = default;
};

// Bytes of one component by format index; 0 for an index of 6 or more.
uint32_t bytesPerComponent(int32_t formatIndex);

}  // namespace Tw::Image
