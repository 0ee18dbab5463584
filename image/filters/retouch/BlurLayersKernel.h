// The kernel of BlurLayersFilter. It takes the processor's features and a progress sink rather than the
// host, so that it compiles once, in BlurLayersKernel.cpp, whatever the hosts the filter is built for.
#pragma once

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// out = (o - b2) * scale2 + ((b2 - b1) * scale1 + b1) over `band` of `output`, per component, alpha
// included, with o from `image`, b1 from `blur1` and b2 from `blur2`. Integer results are limited to
// 0..white and truncated.
void blurLayersBand(ImageBuffer& output, const ImageBuffer& image, const ImageBuffer& blur1,
                    const ImageBuffer& blur2, const PixelRect& band, CpuFeatures features, Progress& progress,
                    float scale1, float scale2);

}  // namespace Tw::Image
