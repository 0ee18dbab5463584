// The two passes of the minimum and maximum filter on the processor: along the rows over a band of rows,
// and down the columns over a band of columns, each with the line algorithm of MinMaxLine.h.
//
// Both vectorise across lines rather than along them, since the algorithm walks a line one position at
// a time. The row pass interleaves as many rows as fill a vector (RowInterleave.h). The column pass takes
// a vector's worth of adjacent columns as one line and goes block by block of the algorithm across the
// whole band: the rows one block reads are then read across the band while they are in the cache, where
// walking each column from top to bottom would meet a new memory page at every row. Comparisons are
// exact, so every variant gives the same bits.
//
// The algorithm is the one block scheme at every depth and on every processor. A sliding histogram of 256
// levels would be the plain alternative for processors without a vector unit; every x86-64 processor has
// one, so it is not built.
//
// The passes take the processor's features and a progress sink rather than the host, so that their
// kernels compile once, in MinMaxPasses.cpp, whatever the hosts the filter is built for.
#pragma once

#include <cstdint>

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"


namespace Tw::Image {

// One pass of `Op` (MinOp or MaxOp) over `band` of `output` with radius `radius`: along the rows, or down
// the columns. Every component is filtered alike, so the component order plays no part.
template <class Op>
void minMaxPass(const ImageBuffer& input, ImageBuffer& output, const PixelRect& band, CpuFeatures features,
                Progress& progress, int32_t radius, bool downColumns);

}  // namespace Tw::Image
