// The row loop of the blend kernel. Each row of a band is cut where either input's rectangle begins or
// ends, into runs over which each input either has pixels or reads as transparent black throughout. A run
// goes a vector of pixels at a time, an input without pixels reading from a block of zeros that does not
// advance; the few pixels left at a run's end go through the same vector by way of copies. So one width
// of code serves every pixel, and the inner loop tests nothing.
#pragma once

#include <algorithm>
#include <array>
#include <cstring>

#include "image/graph/ImageView.h"

namespace Tw::Image {

namespace Detail {

// Where `rect` starts or stops covering row y between `from` and `to`: the first of its edges after
// `from`, or `to`.
inline int32_t nextEdge(const PixelRect& rect, int32_t y, int32_t from, int32_t to) {
    if (rect.isEmpty() || y < rect.top || y >= rect.bottom) return to;
    if (from < rect.left) return std::min(rect.left, to);
    if (from < rect.right) return std::min(rect.right, to);
    return to;
}

}  // namespace Detail

// Calls apply(base, top, out) for Pixels pixels at a time over `band` of `out`, reading `base` and `top`
// at the same places.
template <int Pixels, class T, class Progress, class Apply>
void forEachBlendRun(const ImageView<T>& out, const ImageView<T>& base, const ImageView<T>& top,
                     const PixelRect& band, Progress& progress, Apply&& apply) {
    constexpr int kComponents = 4 * Pixels;
    static constexpr T kTransparent[kComponents] = {};
    const PixelRect baseRect = base.hasPixels() ? base.rect : PixelRect::empty();
    const PixelRect topRect = top.hasPixels() ? top.rect : PixelRect::empty();
    forEachRow(band, progress, [&](int32_t y) {
        for (int32_t x = band.left; x < band.right;) {
            const int32_t end = std::min(Detail::nextEdge(baseRect, y, x, band.right),
                                         Detail::nextEdge(topRect, y, x, band.right));
            const bool hasBase = baseRect.contains({x, y, x + 1, y + 1});
            const bool hasTop = topRect.contains({x, y, x + 1, y + 1});
            const T* b = hasBase ? base.at(x, y) : kTransparent;
            const T* t = hasTop ? top.at(x, y) : kTransparent;
            const int baseStep = hasBase ? kComponents : 0;
            const int topStep = hasTop ? kComponents : 0;
            T* o = out.at(x, y);
            int32_t left = end - x;
            for (; left >= Pixels; left -= Pixels, b += baseStep, t += topStep, o += kComponents)
                apply(b, t, o);
            if (left > 0) {
                const std::size_t bytes = static_cast<std::size_t>(left) * 4 * sizeof(T);
                std::array<T, kComponents> baseCopy{}, topCopy{}, result;
                std::memcpy(baseCopy.data(), b, bytes);
                std::memcpy(topCopy.data(), t, bytes);
                apply(baseCopy.data(), topCopy.data(), result.data());
                std::memcpy(o, result.data(), bytes);
            }
            x = end;
        }
    });
}

}  // namespace Tw::Image
