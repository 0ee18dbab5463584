// The kernel of ShineFilter. It takes the processor's features and a progress sink rather than the host,
// so that it compiles once, in ShineKernel.cpp, whatever the hosts the filter is built for.
#pragma once

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// Per component, alpha included, over `band` of `output`: where `once` (b) is above 0.001 and above
// `thrice` (d), out = o * (d / b * scale + (1 - scale)); elsewhere out = o, o being `image`. Integer
// components enter as their raw values; results are limited to 0..white and truncated.
void shineBand(ImageBuffer& output, const ImageBuffer& image, const ImageBuffer& once,
               const ImageBuffer& thrice, const PixelRect& band, CpuFeatures features, Progress& progress,
               float scale);

}  // namespace Tw::Image
