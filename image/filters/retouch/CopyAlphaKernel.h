// The kernel of CopyAlphaFilter. It takes the processor's features and a progress sink rather than the
// host, so that it compiles once, in CopyAlphaKernel.cpp, whatever the hosts the filter is built for.
#pragma once

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// Red, green and blue of `colour` with the alpha of `alpha` over `band` of `output`, each the stored value
// as it is. Where an image has no pixel it reads as transparent black.
void copyAlphaBand(ImageBuffer& output, const ImageBuffer& colour, const ImageBuffer& alpha,
                   const PixelRect& band, CpuFeatures features, Progress& progress);

}  // namespace Tw::Image
