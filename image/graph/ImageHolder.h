// Counted references to images, and the pair of them a node delivers.
//
// A node's result is shared between its consumers and released by the last of them; a holder may also
// borrow an image that someone else keeps alive (the output frame of a render), in which case it counts
// nothing and frees nothing.
#pragma once

#include <memory>

#include "image/core/ImageBuffer.h"
#include "image/graph/Device.h"

namespace Tw::Image {

using ImageHolder = std::shared_ptr<ImageBuffer>;

inline ImageHolder borrowImage(ImageBuffer& image) {
    return ImageHolder(ImageHolder(), &image);
}

// What a node delivers: its image on the processor, and the device's image on the dormant device path.
struct ResultPair {
    ImageHolder image;
    DeviceImageHolder deviceImage;

    bool holdsAnything() const { return image || deviceImage; }
    void reset() {
        image.reset();
        deviceImage.reset();
    }
};

}  // namespace Tw::Image
