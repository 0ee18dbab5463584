#include "image/core/ImageDescriptor.h"

#include "image/core/ImageBuffer.h"

namespace Tw::Image {

uint32_t bytesPerComponent(int32_t formatIndex) {
    constexpr uint32_t kBytes[] = {1, 1, 2, 2, 2, 4};
    return formatIndex >= 0 && formatIndex < 6 ? kBytes[formatIndex] : 0;
}

int ImageDescriptor::depth() const {
    switch (formatIndex) {
        case Float32:
            return 32;
        case Int16:
        case Int16Low:
        case 4:
            return 16;
        default:
            return 8;
    }
}

ImageDescriptor ImageDescriptor::of(const ImageBuffer& image) {
    ImageDescriptor descriptor;
    const int maximum = formatMaximum(image.pixelFormat());
    if (image.depth() == 32) {
        descriptor.formatIndex = Float32;
    } else if (image.depth() == 16) {
        descriptor.formatIndex = maximum < 32768 ? Int16Low : Int16;
    }
    if (descriptor.formatIndex == Int16 || descriptor.formatIndex == Int16Low) descriptor.maximum = maximum;
    if (const auto positions = componentPositions(image.pixelFormat())) {
        descriptor.swizzleCode = static_cast<uint8_t>((*positions)[0] << 6 | (*positions)[1] << 4 |
                                                      (*positions)[2] << 2 | (*positions)[3]);
    }
    const ImageBuffer* output = image.host() ? image.host()->outputFrame() : nullptr;
    const bool outputFlipped = output && output->rowStride() < 0;
    const bool imageFlipped = image.rowStride() < 0;
    descriptor.flags = outputFlipped == imageFlipped ? kSameRowDirection : 0;
    return descriptor;
}

}  // namespace Tw::Image
