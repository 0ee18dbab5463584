#include "image/filters/retouch/MaskKernel.h"

#include <array>
#include <cstddef>
#include <utility>

#include "image/graph/CoveredRuns.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

void maskBand(ImageBuffer& output, const ImageBuffer& a, const ImageBuffer& b, const ImageBuffer& mask,
              const PixelRect& band, CpuFeatures features, Progress& progress, bool inverted) {
    dispatchKernel(output, features, [&](auto layout, auto isa) {
        using Layout = decltype(layout);
        using T = typename Layout::Component;
        const std::array<ImageView<T>, 3> ins = {ImageView<T>::of(a), ImageView<T>::of(b),
                                                 ImageView<T>::of(mask)};
        forEachCoveredRun<kPixelLanes<decltype(isa)>>(
            ImageView<T>::of(output), ins, band, progress,
            [&]<int Lanes>(const std::array<const T*, 3>& in, T* out) {
                using F = FloatVector<Lanes>;
                const F alphas = loadFloats<Lanes>(in[2]);
                // Each pixel's alpha in all four of its lanes.
                const F spread = [&]<std::size_t... Lane>(std::index_sequence<Lane...>) {
                    return F(__builtin_shufflevector(alphas, alphas, (Lane / 4 * 4 + Layout::alpha)...));
                }
                (std::make_index_sequence<Lanes>{});
                const F m = fractionsOf<T, Lanes>(spread);
                const F weight = inverted ? 1.0f - m : m;
                const F first = loadFloats<Lanes>(in[0]);
                storeTruncated<Lanes>(out, (loadFloats<Lanes>(in[1]) - first) * weight + first);
            });
    });
}

}  // namespace Tw::Image
