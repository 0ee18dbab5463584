// The kernel of SharpenFilter. It takes the processor's features and a progress sink rather than the
// host, so that it compiles once, in SharpenKernel.cpp, whatever the hosts the filter is built for.
#pragma once

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// out = (c - med) * amount + c per component, alpha included, over `band` of `output`: c the input's
// component, med the median of its 3 x 3 window with coordinates clamped to the input. Integer results
// are limited to 0..white and truncated; floats are left as they come.
void sharpenBand(ImageBuffer& output, const ImageBuffer& input, const PixelRect& band, CpuFeatures features,
                 Progress& progress, float amount);

}  // namespace Tw::Image
