// The kernel of EdgesFilter. It takes the processor's features and a progress sink rather than the host,
// so that it compiles once, in EdgesKernel.cpp, whatever the hosts the filter is built for.
#pragma once

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// How EdgesFilter turns the strength of an edge into a pixel.
struct EdgeShading {
    float thresh;  // strengths below it give no edge
    bool invert;   // dark edges on white instead of bright edges on black

    friend bool operator==(const EdgeShading&, const EdgeShading&) = default;
};

// Over `band` of `output`: per colour component m = sqrtf(max(0, y)^2 + max(0, x)^2) of the responses
// `across` (x) and `along` (y) at the same place, where a pixel outside a response's rectangle reads 0;
// m where m >= thresh, else 0 (1 - m, else 1, inverted). Alpha is white. Integer responses are taken as
// fractions of white, and results are scaled back with 0.5 added, limited to 0..white and truncated.
void edgesBand(ImageBuffer& output, const ImageBuffer& across, const ImageBuffer& along,
               const PixelRect& band, CpuFeatures features, Progress& progress, const EdgeShading& shading);

}  // namespace Tw::Image
