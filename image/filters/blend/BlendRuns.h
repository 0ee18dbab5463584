// The row loop of the blend kernel. Each row of a band is cut where either input's rectangle begins or
// ends, into runs over which each input either has pixels or reads as transparent black throughout. A run
// goes through the mode a block at a time: the inputs are loaded into planes (an input without pixels
// reads from planes of zeros), the mode's kernel makes the output's planes, and these are stored. Only
// the loads and stores know the depth and component order, so they are compiled for every layout and
// variant, and the modes once per variant. The loop tests no pixel.
#pragma once

#include <algorithm>
#include <array>
#include <type_traits>

#include "image/filters/blend/BlendBlock.h"
#include "image/graph/ImageView.h"
#include "image/graph/PixelSpans.h"
#include "image/graph/RgbaPlanes.h"

namespace Tw::Image {

// Runs `kernel` over `band` of `out`, with `top` laid over `base` at `opacity`, both read at the output
// pixel's place.
template <class Layout, int Lanes, class Progress>
void blendRuns(const ImageView<typename Layout::Component>& out,
               const ImageView<typename Layout::Component>& base,
               const ImageView<typename Layout::Component>& top, const PixelRect& band, Progress& progress,
               BlendModeKernel kernel, CpuFeatures features, float opacity) {
    using T = typename Layout::Component;
    using F = FloatVector<Lanes>;
    BlendPlanes basePlanes, topPlanes, outPlanes;
    BlendBlock block{nullptr, nullptr, &outPlanes, 0, BlendDepth::of<T>(), opacity};
    // Integers are rounded half up: + 0.5, and the store truncates.
    const auto toStored = [](F v) {
        if constexpr (std::is_same_v<T, float>) {
            return v;
        } else {
            return v + 0.5f;
        }
    };
    const std::array<PixelRect, 2> inputRects = {base.hasPixels() ? base.rect : PixelRect::empty(),
                                                 top.hasPixels() ? top.rect : PixelRect::empty()};
    forEachRow(band, progress, [&](int32_t y) {
        forEachCoverageRun(band, y, inputRects, [&](int32_t begin, int32_t end, std::array<bool, 2> covers) {
            const auto [hasBase, hasTop] = covers;
            block.base = hasBase ? &basePlanes : &kTransparentPlanes;
            block.top = hasTop ? &topPlanes : &kTransparentPlanes;
            for (int32_t x = begin; x < end; x += kBlendBlockPixels) {
                const int count = std::min(end - x, kBlendBlockPixels);
                if (hasBase) loadRgbaPlanes<Layout, Lanes>(base.at(x, y), count, basePlanes);
                if (hasTop) loadRgbaPlanes<Layout, Lanes>(top.at(x, y), count, topPlanes);
                block.pixels = (count + Lanes - 1) / Lanes * Lanes;
                kernel(block, features);
                storeRgbaPlanes<Layout, Lanes>(outPlanes, count, out.at(x, y), toStored);
            }
        });
    });
}

}  // namespace Tw::Image
