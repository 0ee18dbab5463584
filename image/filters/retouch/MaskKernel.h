// The kernel of MaskFilter. It takes the processor's features and a progress sink rather than the host,
// so that it compiles once, in MaskKernel.cpp, whatever the hosts the filter is built for.
#pragma once

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// (b - a) * m + a in all four components over `band` of `output`, with m the alpha of `mask` as a
// fraction of white, or 1 - m when `inverted`. Where an image has no pixel it reads as transparent black.
// Integer results are cut toward zero.
void maskBand(ImageBuffer& output, const ImageBuffer& a, const ImageBuffer& b, const ImageBuffer& mask,
              const PixelRect& band, CpuFeatures features, Progress& progress, bool inverted);

}  // namespace Tw::Image
