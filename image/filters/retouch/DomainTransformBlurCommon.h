// The kernels of the domain transform's plane nodes: the derivative planes along rows and columns, and
// extra edges added onto a plane. A plane holds one float per pixel, in the allocation of an 8-bit
// four-component image of the same rectangle.
//
// D(x, y) = 1 + scale * sum over the four components of |guide(neighbour) - guide(x, y)|, the neighbour
// being (x + 1, y) along rows and (x, y + 1) down columns: the plane at x holds the step from x to x + 1.
// Coordinates are clamped to the guide's rectangle, so at its last column (or row) the step is 0 and D is
// 1. Differences are in units of white before they are summed: 8-bit ones are divided by 255, 16-bit ones
// scaled by 2^-15. The components are summed in memory order from 0, whatever the channel order.
//
// The kernels take the processor's features and a progress sink rather than the host, so that they
// compile once, in DomainTransformBlurCommon.cpp, whatever the hosts the nodes are built for.
#pragma once

#include <cstdint>

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// The float at (x, y) of a plane.
inline float* planeAt(const ImageBuffer& plane, int32_t x, int32_t y) {
    return reinterpret_cast<float*>(plane.pixelAddress(x, y));
}

struct DomainTransformBlurCommon {
    // The plane along rows over `band`, from the guide (input 0).
    static void ComputeTileDX(ImageBuffer& plane, ImageBuffer* const* inputs, const PixelRect& band,
                              CpuFeatures features, Progress& progress, float scale);
    // The plane down columns over `band`, from the guide (input 0).
    static void ComputeTileDY(ImageBuffer& plane, ImageBuffer* const* inputs, const PixelRect& band,
                              CpuFeatures features, Progress& progress, float scale);
    // out = (e0 + e1 + e2 + e3) * scale in units of white + D, with E the edges image (input 0) and D the
    // plane (input 1). Where E has no pixel its sum is 0; where D has none it reads as the flat 1.
    static void ComputeTileAddEdges(ImageBuffer& plane, ImageBuffer* const* inputs, const PixelRect& band,
                                    CpuFeatures features, Progress& progress, float scale);
};

}  // namespace Tw::Image
