// The kernel of GrainFilter. It takes the processor's features and a progress sink rather than the host,
// so that it compiles once, in GrainKernel.cpp, whatever the hosts the filter is built for.
#pragma once

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// Over `band` of `output`, per component, alpha included, with d = detail - receiver at each place of
// the 3 x 3 window (coordinates clamped to each image's own rectangle) and med their median:
//     out = receiver + (d(centre) - med) * amount
// Integer products are truncated before the addition, and the sums limited to 0..white.
void grainBand(ImageBuffer& output, const ImageBuffer& detail, const ImageBuffer& receiver,
               const PixelRect& band, CpuFeatures features, Progress& progress, float amount);

}  // namespace Tw::Image
