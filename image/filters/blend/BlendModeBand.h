// The blend kernel: one template over the mode, whose instances the filter picks once per band. Each
// output pixel reads the base and the top at its own place, a pixel outside an input's rectangle reading
// as transparent black, and its mode's rule makes the result (BlendRules.h). Every variant works on
// whole pixels in float lanes with the same operations, so all give the same bits.
//
// Only the files of the mode groups (BlendModeGroups.h) include this header.
#pragma once

#include <cstdint>

#include "image/filters/blend/BlendModeGroups.h"
#include "image/filters/blend/BlendModeList.h"
#include "image/filters/blend/BlendRuns.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

// Lanes / 4 pixels of mode Mode.
template <class Mode, class Layout, int Lanes, class T>
[[gnu::always_inline]] inline void blendPixels(const T* base, const T* top, T* out, float opacity) {
    using Px = BlendLanes<Layout, Lanes>;
    using F = typename Px::F;
    const F b = loadFloats<Lanes>(base);
    const F t = loadFloats<Lanes>(top);
    const F result = Mode::template compose<Px>(b, t, blendWeights<Px>(b, t, opacity));
    storeStored<Lanes>(out, Px::Depth::stored(result));
}

// Runs mode Mode over `band` of `output`, with `top` laid over `base` at `opacity`.
template <class Mode>
void blendModeBand(ImageBuffer& output, const ImageBuffer& base, const ImageBuffer& top,
                   const PixelRect& band, CpuFeatures features, Progress& progress, float opacity) {
    dispatchKernel(output, features, [&](auto layout, auto isa) {
        using Layout = decltype(layout);
        using T = typename Layout::Component;
        constexpr int lanes = kPixelLanes<decltype(isa)>;
        forEachBlendRun<lanes / 4>(ImageView<T>::of(output),
                                   ImageView<T>::of(kExchangesInputs<Mode> ? top : base),
                                   ImageView<T>::of(kExchangesInputs<Mode> ? base : top), band, progress,
                                   [&](const T* under, const T* over, T* out) {
                                       blendPixels<Mode, Layout, lanes>(under, over, out, opacity);
                                   });
    });
}

template <int Group>
void BlendModeGroup<Group>::blend(int mode, ImageBuffer& output, const ImageBuffer& base,
                                  const ImageBuffer& top, const PixelRect& band, CpuFeatures features,
                                  Progress& progress, float opacity) {
    withBlendModeIn<firstMode, endMode>(mode, [&](auto blendMode) {
        blendModeBand<typename decltype(blendMode)::type>(output, base, top, band, features, progress,
                                                          opacity);
    });
}

}  // namespace Tw::Image
