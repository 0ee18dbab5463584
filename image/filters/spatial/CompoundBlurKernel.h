// The filter stage of CompoundBlurFilter: each pixel the mean of a box of the summed-area table
// (CompoundBlurTable.h) whose half width the blur map sets. It takes the processor's features and a
// progress sink rather than the host, so that it compiles once, in CompoundBlurKernel.cpp.
#pragma once

#include <atomic>

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/core/PixelRect.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// Whether the boxes over a table of `table` with half widths up to `radiusX` read the table summed down
// its columns by each worker, a strip of columns at a time, for the few rows around the strip's current
// one (the table then holds only its row sums); otherwise the table must be summed whole down its columns
// first. Each worker keeps those rows in a ring; when the boxes reach so far that the ring would hold
// about as much as the table, or more than a few megabytes, the table is summed whole instead.
bool compoundBlurSumsInWindows(const PixelRect& table, float radiusX);

// Each pixel (x, y) of `band` of `output` becomes the mean of the source over a box around it, read from
// `table`: the sums of the source over the table's rectangle, along its rows, and down its columns too
// unless compoundBlurSumsInWindows. The map's pixel at (x, y), normalised at 8 and 16 bits, gives
// m = max(0, 0.3 r + 0.59 g + 0.11 b); a pixel outside the map reads as 0. The half width h is
// min(1, m) * radiusX, or with `invert` (0 above 1, else 1 - m) * radiusX, on both axes alike. The box
// runs from x - h to x + h and y - h to y + h, cut to the table; its fractional edges read the table by
// bilinear interpolation, a cell outside the table reading zero: `table` must lie within a border of one
// cell of zeros in its storage. Integer results are limited to 0..white and cut toward zero.
//
// The output goes in strips of whole columns of `band`, each summing the rows it reads for itself. Workers
// that share `band` and `nextStrip` (from 0) take its strips in turn until none is left, so a worker that
// gets less of the processor does fewer of them, and the pixels are the same whoever does which.
void compoundBlurBand(ImageBuffer& output, const ImageBuffer& table, const ImageBuffer& map,
                      const PixelRect& band, std::atomic<int32_t>& nextStrip, CpuFeatures features,
                      Progress& progress, float radiusX, bool invert);

}  // namespace Tw::Image
