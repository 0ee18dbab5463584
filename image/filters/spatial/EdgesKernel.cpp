#include "image/filters/spatial/EdgesKernel.h"

#include <array>
#include <type_traits>

#include "image/graph/CoveredRuns.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/StoredVectors.h"
#include "image/graph/VectorMath.h"

namespace Tw::Image {

namespace {

// The lanes of a vector of Lanes / 4 pixels that hold alpha in `Layout`: all bits set there.
template <class Layout, int Lanes>
[[gnu::always_inline]] inline IntVector<Lanes> alphaLanes() {
    IntVector<Lanes> mask;
    for (int lane = 0; lane < Lanes; ++lane)
        mask[lane] = lane % 4 == Layout::alpha ? -1 : 0;
    return mask;
}

template <class Layout, class Isa, bool Invert>
void shadeEdges(ImageBuffer& output, const ImageBuffer& across, const ImageBuffer& along,
                const PixelRect& band, Progress& progress, float thresh) {
    using T = typename Layout::Component;
    const std::array<ImageView<T>, 2> responses = {ImageView<T>::of(across), ImageView<T>::of(along)};
    forEachCoveredRun<kPixelLanes<Isa>>(
        ImageView<T>::of(output), responses, band, progress,
        [thresh]<int Lanes>(const std::array<const T*, 2>& in, T* out) {
            using F = FloatVector<Lanes>;
            // Only the side of an edge where the second derivative is positive counts: the other side's
            // negative response is dropped, as integer responses have already lost it.
            const F x = max<Lanes>(F{}, fractionsOf<T, Lanes>(loadFloats<Lanes>(in[0])));
            const F y = max<Lanes>(F{}, fractionsOf<T, Lanes>(loadFloats<Lanes>(in[1])));
            const F m = squareRoot<Lanes>(y * y + x * x);
            const auto kept = m >= thresh;
            F shade;
            if constexpr (Invert) {
                shade = kept ? 1.0f - m : F{} + 1.0f;
            } else {
                shade = kept ? m : F{};
            }
            shade = alphaLanes<Layout, Lanes>() ? F{} + 1.0f : shade;
            if constexpr (std::is_same_v<T, float>) {
                storeStored<Lanes>(out, shade);
            } else {
                storeStored<Lanes>(
                    out, truncatedStored<T, Lanes>(limitedToWhite<T, Lanes>(shade * Layout::white + 0.5f)));
            }
        });
}

}  // namespace

void edgesBand(ImageBuffer& output, const ImageBuffer& across, const ImageBuffer& along,
               const PixelRect& band, CpuFeatures features, Progress& progress, const EdgeShading& shading) {
    dispatchKernel(output, features, [&](auto layout, auto isa) {
        using Layout = decltype(layout);
        using Isa = decltype(isa);
        if (shading.invert) {
            shadeEdges<Layout, Isa, true>(output, across, along, band, progress, shading.thresh);
        } else {
            shadeEdges<Layout, Isa, false>(output, across, along, band, progress, shading.thresh);
        }
    });
}

}  // namespace Tw::Image
