// How an effect names the further layers it reads: by ordinal, 1 being its first layer parameter.
#pragma once

#include <cstdint>
#include <span>

#include "image/core/ImageBuffer.h"
#include "image/core/PixelRect.h"

namespace Tw::Image {

// A further layer wanted for a render: its ordinal, the region wanted, a time offset in frames.
struct LayerRequest {
    int ordinal = 0;
    PixelRect rect;
    int32_t timeOffset = 0;
};

// The images of an effect's further layers, by ordinal from 1 (at index 0); null where none is chosen.
using LayerImages = std::span<ImageBuffer* const>;

}  // namespace Tw::Image
