// The row loop of the retouching per-pixel kernels over several inputs. Each row of a band is cut into
// the span where every input has pixels, run a vector at a time, and the pixels around it, run one at a
// time with transparent black standing in for an input that has no pixel there. The inner loops never
// test a pixel.
#pragma once

#include <array>
#include <cstddef>

#include "image/graph/ImageView.h"
#include "image/graph/PixelSpans.h"

namespace Tw::Image {

// Calls apply.template operator()<L>(inputs, output) for L / 4 pixels at a time: L = Lanes over the
// covered span as far as whole vectors go, L = 4 for every other pixel.
template <int Lanes, class T, std::size_t N, class Progress, class Apply>
void forEachCoveredRun(const ImageView<T>& out, const std::array<ImageView<T>, N>& ins, const PixelRect& band,
                       Progress& progress, Apply&& apply) {
    static constexpr T kTransparent[4] = {};
    PixelRect covered = PixelRect::infinite();
    for (const auto& in : ins)
        covered = covered.intersect(in.hasPixels() ? in.rect : PixelRect::empty());
    forEachRow(band, progress, [&](int32_t y) {
        forEachInputSpan(
            band, y, covered,
            [&](int32_t begin, int32_t end) {
                constexpr int32_t kPixels = Lanes / 4;
                std::array<const T*, N> at;
                int32_t x = begin;
                for (; x + kPixels <= end; x += kPixels) {
                    for (std::size_t i = 0; i < N; ++i)
                        at[i] = ins[i].at(x, y);
                    apply.template operator()<Lanes>(at, out.at(x, y));
                }
                for (; x < end; ++x) {
                    for (std::size_t i = 0; i < N; ++i)
                        at[i] = ins[i].at(x, y);
                    apply.template operator()<4>(at, out.at(x, y));
                }
            },
            [&](int32_t begin, int32_t end) {
                std::array<const T*, N> at;
                for (int32_t x = begin; x < end; ++x) {
                    for (std::size_t i = 0; i < N; ++i) {
                        const bool has = ins[i].hasPixels() && ins[i].rect.contains({x, y, x + 1, y + 1});
                        at[i] = has ? ins[i].at(x, y) : kTransparent;
                    }
                    apply.template operator()<4>(at, out.at(x, y));
                }
            });
    });
}

}  // namespace Tw::Image
