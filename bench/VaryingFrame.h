// The frames of the comparisons with a plain copy: 3840 x 2160 (or another size) of smoothly varying
// values, so that per-pixel arithmetic meets every kind of value.
#pragma once

#include <cstddef>

#include "image/core/ImageBuffer.h"
#include "image/core/PixelFormat.h"

namespace Tw::Bench {

inline constexpr Image::PixelRect kUhdFrame{0, 0, 3840, 2160};

// Each component of the frame on a period of its own, starting `phase` components in; integers run
// through every value below 251, floats from 0 to 1.
Image::ImageBuffer varyingFrame(Image::PixelFormat format, std::size_t phase = 0,
                                const Image::PixelRect& rect = kUhdFrame);

}  // namespace Tw::Bench
