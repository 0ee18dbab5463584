// The blend kernel: one template over the mode, whose instances the filter picks once per band. Each
// output pixel reads the base and the top at its own place, a pixel outside an input's rectangle reading
// as transparent black, and its mode's rule makes the result (BlendRules.h). Every variant works on
// whole pixels in float lanes with the same operations, so all give the same bits.
#pragma once

#include <cstdint>

#include "image/filters/blend/BlendModeList.h"
#include "image/filters/blend/BlendRuns.h"
#include "image/filters/retouch/RetouchVectors.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/Progress.h"

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
template <class Mode, class Host>
void computeBlendTile(Host& host, ImageBuffer& output, const ImageBuffer& base, const ImageBuffer& top,
                      const PixelRect& band, uint32_t threadIndex, float opacity) {
    dispatchKernel(output, host.cpuFeatures(), [&](auto layout, auto isa) {
        using Layout = decltype(layout);
        using T = typename Layout::Component;
        constexpr int lanes = kPixelLanes<decltype(isa)>;
        HostProgress<Host> progress(host, threadIndex);
        forEachBlendRun<lanes / 4>(ImageView<T>::of(output),
                                   ImageView<T>::of(kExchangesInputs<Mode> ? top : base),
                                   ImageView<T>::of(kExchangesInputs<Mode> ? base : top), band, progress,
                                   [&](const T* under, const T* over, T* out) {
                                       blendPixels<Mode, Layout, lanes>(under, over, out, opacity);
                                   });
    });
}

}  // namespace Tw::Image
