// The kernel of DifferenceFilter. It takes the processor's features and a progress sink rather than the
// host, so that it compiles once, in DifferenceKernel.cpp, whatever the hosts the filter is built for.
#pragma once

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// |a - b| per component, alpha included, over `band` of `output`. Float differences have their sign
// cleared; integer ones are the exact unsigned difference.
void differenceBand(ImageBuffer& output, const ImageBuffer& a, const ImageBuffer& b, const PixelRect& band,
                    CpuFeatures features, Progress& progress);

}  // namespace Tw::Image
