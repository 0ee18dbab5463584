// The filter stage of CompoundBlurFilter: each pixel the mean of a box of the summed-area table
// (CompoundBlurTable.h) whose half width the blur map sets. It takes the processor's features and a
// progress sink rather than the host, so that it compiles once, in CompoundBlurKernel.cpp.
#pragma once

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// Each pixel (x, y) of `band` of `output` becomes the mean of the source over a box around it, read from
// `table` (the sums of the source over the table's rectangle). The map's pixel at (x, y), normalised at 8
// and 16 bits, gives m = max(0, 0.3 r + 0.59 g + 0.11 b); a pixel outside the map reads as 0. The half
// width h is min(1, m) * radiusX, or with `invert` (0 above 1, else 1 - m) * radiusX, on both axes alike.
// The box runs from x - h to x + h and y - h to y + h, cut to the table; its fractional edges read the
// table by bilinear interpolation, a cell outside the table reading zero: `table` must lie within a border
// of one cell of zeros in its storage. Integer results are limited to 0..white and cut toward zero.
void compoundBlurBand(ImageBuffer& output, const ImageBuffer& table, const ImageBuffer& map,
                      const PixelRect& band, CpuFeatures features, Progress& progress, float radiusX,
                      bool invert);

}  // namespace Tw::Image
