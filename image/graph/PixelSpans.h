// Per-pixel kernels read each input at the output pixel's own place; where an input has no pixel, it
// reads as transparent black. This cuts a row of a band into the span the input covers and the spans
// it does not, so the kernel's inner loop never tests a pixel.
#pragma once

#include <algorithm>

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

}  // namespace Tw::Image
