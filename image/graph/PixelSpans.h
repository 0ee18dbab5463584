// Per-pixel kernels read each input at the output pixel's own place; where an input has no pixel, it
// reads as transparent black. These cut a row of a band into spans over which each input either has
// pixels throughout or has none, so the kernel's inner loop never tests a pixel.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "image/core/PixelRect.h"

namespace Tw::Image {

template <class Inside, class Outside>
void forEachInputSpan(const PixelRect& band, int32_t y, const PixelRect& input, Inside&& inside,
                      Outside&& outside) {
    if (input.isEmpty() || y < input.top || y >= input.bottom) {
        outside(band.left, band.right);
        return;
    }
    const int32_t begin = std::clamp(input.left, band.left, band.right);
    const int32_t end = std::clamp(input.right, begin, band.right);
    if (band.left < begin) outside(band.left, begin);
    if (begin < end) inside(begin, end);
    if (end < band.right) outside(end, band.right);
}

// Calls run(begin, end, covers) for the spans of row y of `band`, cut wherever one of `inputs` begins or
// ends; covers[i] tells whether input i has pixels over the whole span.
template <std::size_t N, class Run>
void forEachCoverageRun(const PixelRect& band, int32_t y, const std::array<PixelRect, N>& inputs, Run&& run) {
    // Where `rect` next starts or stops covering the row after `from`.
    const auto nextEdge = [&](const PixelRect& rect, int32_t from) {
        if (rect.isEmpty() || y < rect.top || y >= rect.bottom) return band.right;
        if (from < rect.left) return std::min(rect.left, band.right);
        if (from < rect.right) return std::min(rect.right, band.right);
        return band.right;
    };
    for (int32_t x = band.left; x < band.right;) {
        int32_t end = band.right;
        std::array<bool, N> covers;
        for (std::size_t i = 0; i < N; ++i) {
            end = std::min(end, nextEdge(inputs[i], x));
            covers[i] = inputs[i].contains({x, y, x + 1, y + 1});
        }
        run(x, end, covers);
        x = end;
    }
}

}  // namespace Tw::Image
