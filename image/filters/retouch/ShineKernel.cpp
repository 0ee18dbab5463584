#include "image/filters/retouch/ShineKernel.h"

#include <array>

#include "image/graph/CoveredRuns.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

void shineBand(ImageBuffer& output, const ImageBuffer& image, const ImageBuffer& once,
               const ImageBuffer& thrice, const PixelRect& band, CpuFeatures features, Progress& progress,
               float scale) {
    const float keep = 1.0f - scale;
    // b above 0.001 in double precision is b at least 0.001f: the float nearest 0.001 lies just above it,
    // the one below it under it.
    constexpr float kLeastLevel = 0.001f;
    dispatchDepthKernel(output, features, [&](auto layout, auto isa) {
        using T = typename decltype(layout)::Component;
        const std::array<ImageView<T>, 3> ins = {ImageView<T>::of(image), ImageView<T>::of(once),
                                                 ImageView<T>::of(thrice)};
        forEachCoveredRun<kPixelLanes<decltype(isa)>>(
            ImageView<T>::of(output), ins, band, progress,
            [&]<int Lanes>(const std::array<const T*, 3>& in, T* out) {
                using F = FloatVector<Lanes>;
                const F o = loadFloats<Lanes>(in[0]);
                const F b = loadFloats<Lanes>(in[1]);
                const F d = loadFloats<Lanes>(in[2]);
                const auto levelled = (b >= kLeastLevel) & (b > d);
                const F darkened = o * (d / b * scale + keep);
                storeStored<Lanes>(out, clampedStored<T, Lanes>(levelled ? darkened : o));
            });
    });
}

}  // namespace Tw::Image
