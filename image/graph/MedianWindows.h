// The band loop of kernels built on the median of each pixel's 3 x 3 window (MedianNetwork.h).
//
// A window that reaches past an input's rectangle takes the nearest pixel inside it: rows and columns are
// clamped to each input's own rectangle, input by input. Rows cost one clamp per output row, since each
// input's three rows are picked once. Columns are clamped only in the rim, the pixels whose window leaves
// some input at the left or right, which run one pixel at a time; everywhere else the work runs a whole
// vector of pixels at a time, with the same results.
//
// A vector's windows are three vectors of columns, read at one pixel to the left, in place and one pixel
// to the right, each sorted where it stands; the kernel's own arithmetic then turns their medians and the
// centre pixels into output. Sorting each column once and keeping it for the neighbouring windows would
// save minima and maxima, but the stores and loads of the kept columns cost as much, and stores into
// scratch can stall the loads of a row whose addresses they resemble; nothing but the output is written.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "image/graph/ImageView.h"
#include "image/graph/MedianNetwork.h"
#include "image/graph/PixelVector.h"

namespace Tw::Image {

// What a 3 x 3 window kernel reads of an input for `rect` of output: one pixel more on every side, within
// what the input can give. An infinite rectangle stays infinite.
inline PixelRect medianWindowInputRect(const PixelRect& rect, const PixelRect& inputBounds) {
    return rect.grown(1, 1).intersect(inputBounds);
}

namespace Detail {

// One input's rows above, at and below an output row, each clamped to the input's rectangle. An input
// without pixels reads as one transparent black pixel everywhere.
template <class T>
struct ClampedRows {
    const T* rows[3];
    int32_t left;
    int32_t last;

    static ClampedRows of(const ImageView<T>& view, int32_t y) {
        static constexpr T kTransparent[4] = {};
        if (!view.hasPixels()) return {{kTransparent, kTransparent, kTransparent}, 0, 0};
        ClampedRows clamped{{}, view.rect.left, view.rect.right - 1};
        for (int row = 0; row < 3; ++row)
            clamped.rows[row] =
                view.at(view.rect.left, std::clamp(y + row - 1, view.rect.top, view.rect.bottom - 1));
        return clamped;
    }
    // Pixel x of row 0 (above), 1 (at) or 2 (below), the column clamped unless the caller knows it inside.
    template <bool Clamp>
    const T* at(int row, int32_t x) const {
        return rows[row] + 4 * ((Clamp ? std::clamp(x, left, last) : x) - left);
    }
};

// Calls body.template operator()<n, Clamp>(x) for runs of n pixels from `begin` to `end`: n = Pixels,
// unclamped, inside [coveredBegin, coveredEnd) as far as whole runs go; n = 1, clamped, everywhere else.
template <int Pixels, class Body>
[[gnu::always_inline]] inline void forEachRun(int32_t begin, int32_t end, int32_t coveredBegin,
                                              int32_t coveredEnd, Body&& body) {
    const int32_t runsBegin = std::clamp(coveredBegin, begin, end);
    const int32_t runsEnd = std::clamp(coveredEnd, runsBegin, end);
    int32_t x = begin;
    for (; x < runsBegin; ++x)
        body.template operator()<1, true>(x);
    for (; x + Pixels <= runsEnd; x += Pixels)
        body.template operator()<Pixels, false>(x);
    for (; x < end; ++x)
        body.template operator()<1, true>(x);
}

}  // namespace Detail

// Runs a 3 x 3 median kernel over `band` of `out`, with vectors as wide as `Lanes` floats. The kernel gives
//   sample.template operator()<N>(std::array<const T*, K> pixels) -> Vector<E, N>: the values whose
//       median is taken, for the N / 4 pixels from each input's pointer;
//   finish.template operator()<N>(Vector<E, N> medians, std::array<const T*, K> centres, T* out): N / 4
//       output pixels from their medians and each input's centre pixels.
// N is the width of the vector in elements of E, or 4 for a single pixel.
template <class E, int Lanes, class T, std::size_t K, class Progress, class Sample, class Finish>
void forEachMedianWindow(const ImageView<T>& out, const std::array<ImageView<T>, K>& ins,
                         const PixelRect& band, Progress& progress, Sample&& sample, Finish&& finish) {
    constexpr int kElements = Lanes * static_cast<int>(sizeof(float) / sizeof(E));
    constexpr int kPixels = kElements / 4;

    // The columns whose windows lie inside every input, left and right; rows are clamped apart.
    int32_t coveredBegin = INT32_MIN, coveredEnd = INT32_MAX;
    for (const auto& in : ins) {
        coveredBegin = std::max(coveredBegin, in.hasPixels() ? in.rect.left + 1 : INT32_MAX);
        coveredEnd = std::min(coveredEnd, in.hasPixels() ? in.rect.right - 1 : INT32_MIN);
    }

    forEachRow(band, progress, [&](int32_t y) {
        std::array<Detail::ClampedRows<T>, K> rows;
        for (std::size_t k = 0; k < K; ++k)
            rows[k] = Detail::ClampedRows<T>::of(ins[k], y);
        const auto pixelsAt = [&]<bool Clamp>(int row, int32_t x) {
            std::array<const T*, K> at;
            for (std::size_t k = 0; k < K; ++k)
                at[k] = rows[k].template at<Clamp>(row, x);
            return at;
        };
        Detail::forEachRun<kPixels>(
            band.left, band.right, coveredBegin, coveredEnd, [&]<int n, bool clamp>(int32_t x) {
                // The columns of the windows around x: each sorted where it stands, x - 1, x and x + 1.
                const auto sortedAt = [&](int32_t u) {
                    const auto valuesAt = [&](int row) {
                        return sample.template operator()<4 * n>(pixelsAt.template operator()<clamp>(row, u));
                    };
                    return sortColumn<E, 4 * n>(valuesAt(0), valuesAt(1), valuesAt(2));
                };
                finish.template operator()<4 * n>(
                    medianOfColumns(sortedAt(x - 1), sortedAt(x), sortedAt(x + 1)),
                    pixelsAt.template operator()<clamp>(1, x), out.at(x, y));
            });
    });
}

}  // namespace Tw::Image
