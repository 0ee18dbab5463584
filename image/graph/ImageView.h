// What a kernel sees of an image: its rectangle, the first pixel, the signed row stride, and for inputs
// how far sampling reaches beyond the rectangle. Built by value on the stack of `computeTile`.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/core/ImageBuffer.h"

namespace Tw::Image {

template <class T>
struct ImageView {
    PixelRect rect = {0, 0, 0, 0};
    std::byte* pixels = nullptr;
    std::ptrdiff_t stride = 0;
    PixelRect padding = {0, 0, 0, 0};

    static ImageView of(const ImageBuffer& image) { return {image.rect, image.pixels(), image.rowStride()}; }

    bool hasPixels() const { return pixels != nullptr && !rect.isEmpty(); }
    // The four components of pixel (x, y); no bounds check.
    T* at(int32_t x, int32_t y) const {
        return reinterpret_cast<T*>(pixels + (static_cast<std::ptrdiff_t>(y) - rect.top) * stride) +
               (static_cast<std::ptrdiff_t>(x) - rect.left) * 4;
    }
};

// Walks the rows of `band` from top to bottom, reporting after rows 0, 32, 64, ... of the band. That
// report is also where an abort takes effect, so a worker stops within 32 rows.
template <class Progress, class ProcessRow>
void forEachRow(const PixelRect& band, Progress& progress, ProcessRow&& processRow) {
    const int height = band.isEmpty() ? 0 : band.height();
    for (int k = 0; k < height; ++k) {
        processRow(band.top + k);
        if (k % 32 == 0) progress.progress(static_cast<uint64_t>(k), static_cast<uint64_t>(height));
    }
}

}  // namespace Tw::Image
