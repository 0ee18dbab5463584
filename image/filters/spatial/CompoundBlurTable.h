// The summed-area table behind CompoundBlurFilter, built in place in two stages over the table's
// rectangle: the running sums along each row, then the running sums of those down each column. It holds
// four floats a pixel in the source's component order, and sums the components as the source stores them
// (8-bit and 16-bit values are not scaled to fractions). The kernels take the processor's features and a
// progress sink rather than the host, so that they compile once, in CompoundBlurTable.cpp.
//
// The sums are plain float additions, left to right and top to bottom, with no compensation, so a sum is
// exact only while it stays a whole number of at most 2^24. Integer frames are exact up to there: at 8
// bits a region of up to 65,793 white pixels above and left of a cell (257 x 256), at 16 bits (white
// 32768) one of 512. Past it each sum keeps 24 significant bits, and since a box's mean is the difference
// of four such sums, its error grows with their size, not with the box's: the sums of a white 8-bit
// 1920 x 1080 frame reach 5.3e8, whose last place is 64, and a box of one pixel far from the top left comes
// out up to 31 levels off. Float frames are never exact: one of 1920 x 1080 of values around half of white
// sums to about 2^20, where the last place is an eighth of white, and such a box is off by up to 6 % of
// white.
#pragma once

#include <cstdint>

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

// The float format with the component order of `image`: "ae32" for orders with alpha first, "BGra" for
// the rest.
PixelFormat floatFormatLike(const ImageBuffer& image);

// For each row of `band`: `table` at x becomes the sum of `source` from the left of `table` up to and
// including x. A pixel outside `source` adds nothing.
void compoundBlurRowSums(const ImageBuffer& source, ImageBuffer& table, const PixelRect& band,
                         CpuFeatures features, Progress& progress);

// One row of the table summed down its columns: `to` = `above` + `sums`, for `count` floats, a multiple
// of 4, Lanes at a time. `to` may be `sums`.
template <int Lanes>
[[gnu::always_inline]] inline void addRowAbove(float* to, const float* above, const float* sums,
                                               int32_t count) {
    int32_t i = 0;
    for (; i + Lanes <= count; i += Lanes)
        storeStored<Lanes>(to + i, loadStored<Lanes>(above + i) + loadStored<Lanes>(sums + i));
    for (; i < count; i += 4)
        storeStored<4>(to + i, loadStored<4>(above + i) + loadStored<4>(sums + i));
}

// For the columns of `band`, a band of whole columns, once every row of `table` holds its row sums: `table`
// at y becomes the sum of those row sums from the top of `table` up to and including y, row after row
// down, each row adding the finished one above it.
void compoundBlurColumnSums(ImageBuffer& table, const PixelRect& band, CpuFeatures features,
                            Progress& progress);

}  // namespace Tw::Image
