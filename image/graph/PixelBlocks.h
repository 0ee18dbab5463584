// The row loop of per-pixel kernels that work on blocks of whole pixels, a fixed number at a time, such as
// kernels that turn a block into planes of one component (StoredVectors.h). Each row of a band is cut
// into the span where every input has pixels, run straight from the images, and the pixels around it and
// at its end, which are staged through blocks on the stack: a pixel an input lacks reads as transparent
// black there, and the staged block is padded with transparent black. The kernel always sees whole
// blocks, so a pixel's result never depends on where in a row it lies.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include "image/graph/ImageView.h"
#include "image/graph/PixelSpans.h"

namespace Tw::Image {

// Vectors of pixels that kernels with long chains of dependent operations (colour conversions) work on
// side by side, each step of the chain over all of them before the next, so that the processor overlaps
// the chains instead of waiting on each.
inline constexpr int kBlocksAbreast = 3;

// Calls apply(inputs, output) for `BlockPixels` pixels at a time; inputs and output address the first
// components of a block. `output` may be an input's own pixels.
template <int BlockPixels, class T, std::size_t N, class Progress, class Apply>
void forEachPixelBlock(const ImageView<T>& out, const std::array<ImageView<T>, N>& ins, const PixelRect& band,
                       Progress& progress, Apply&& apply) {
    constexpr int kComponents = 4 * BlockPixels;
    PixelRect covered = PixelRect::infinite();
    for (const auto& in : ins)
        covered = covered.intersect(in.hasPixels() ? in.rect : PixelRect::empty());
    // Pixels begin..end of row y, through blocks on the stack.
    const auto staged = [&](int32_t begin, int32_t end, int32_t y) {
        for (int32_t x = begin; x < end; x += BlockPixels) {
            const int32_t count = std::min(end - x, BlockPixels);
            T blocks[N][kComponents] = {};
            std::array<const T*, N> at;
            for (std::size_t i = 0; i < N; ++i) {
                const PixelRect row{x, y, x + count, y + 1};
                const PixelRect present =
                    ins[i].hasPixels() ? row.intersect(ins[i].rect) : PixelRect::empty();
                if (!present.isEmpty()) {
                    std::memcpy(blocks[i] + 4 * (present.left - x), ins[i].at(present.left, y),
                                sizeof(T) * 4 * present.width());
                }
                at[i] = blocks[i];
            }
            T result[kComponents];
            apply(at, result);
            std::memcpy(out.at(x, y), result, sizeof(T) * 4 * count);
        }
    };
    forEachRow(band, progress, [&](int32_t y) {
        forEachInputSpan(
            band, y, covered,
            [&](int32_t begin, int32_t end) {
                std::array<const T*, N> at;
                int32_t x = begin;
                for (; x + BlockPixels <= end; x += BlockPixels) {
                    for (std::size_t i = 0; i < N; ++i)
                        at[i] = ins[i].at(x, y);
                    apply(at, out.at(x, y));
                }
                if (x < end) staged(x, end, y);
            },
            [&](int32_t begin, int32_t end) { staged(begin, end, y); });
    });
}

}  // namespace Tw::Image
