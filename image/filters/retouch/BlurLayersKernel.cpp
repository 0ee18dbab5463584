#include "image/filters/retouch/BlurLayersKernel.h"

#include <array>

#include "image/graph/CoveredRuns.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

void blurLayersBand(ImageBuffer& output, const ImageBuffer& image, const ImageBuffer& blur1,
                    const ImageBuffer& blur2, const PixelRect& band, CpuFeatures features, Progress& progress,
                    float scale1, float scale2) {
    dispatchDepthKernel(output, features, [&](auto layout, auto isa) {
        using T = typename decltype(layout)::Component;
        const std::array<ImageView<T>, 3> ins = {ImageView<T>::of(image), ImageView<T>::of(blur1),
                                                 ImageView<T>::of(blur2)};
        forEachCoveredRun<kPixelLanes<decltype(isa)>>(
            ImageView<T>::of(output), ins, band, progress,
            [&]<int Lanes>(const std::array<const T*, 3>& in, T* out) {
                using F = FloatVector<Lanes>;
                const F o = loadFloats<Lanes>(in[0]);
                const F b1 = loadFloats<Lanes>(in[1]);
                const F b2 = loadFloats<Lanes>(in[2]);
                const F texture = o - b2;
                const F mixed = (b2 - b1) * scale1 + b1;
                const F result = texture * scale2 + mixed;
                storeStored<Lanes>(out, clampedStored<T, Lanes>(result));
            });
    });
}

}  // namespace Tw::Image
