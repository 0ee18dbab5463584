// Stage 1 of a domain transform pass: the feedback weight of every pixel, W = 2^(a * D), with D from a
// derivative plane. Computed once per pixel and pass, so that the recursion that follows is left with one
// multiply and two additions per component. The power of two is VectorMath's, whose bits are the same in
// every processor variant and at every vector width.
//
// The stage takes the processor's features and a progress sink rather than the host, so that its kernel
// compiles once, in DomainTransformWeights.cpp, whatever the hosts the filter is built for.
#pragma once

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// Fills `band` of the weight plane from the same pixels of the derivative plane. There is no progress to
// report for a pass yet: `abortCheck` is called at the same rows as a kernel would report, only for an
// abort to take effect.
void computeWeightsBand(const ImageBuffer& derivative, ImageBuffer& weights, const PixelRect& band,
                        CpuFeatures features, Progress& abortCheck, float a);

}  // namespace Tw::Image
