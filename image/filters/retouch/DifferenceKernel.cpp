#include "image/filters/retouch/DifferenceKernel.h"

#include <array>

#include "image/graph/CoveredRuns.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

void differenceBand(ImageBuffer& output, const ImageBuffer& a, const ImageBuffer& b, const PixelRect& band,
                    CpuFeatures features, Progress& progress) {
    dispatchDepthKernel(output, features, [&](auto layout, auto isa) {
        using T = typename decltype(layout)::Component;
        const std::array<ImageView<T>, 2> ins = {ImageView<T>::of(a), ImageView<T>::of(b)};
        forEachCoveredRun<kPixelLanes<decltype(isa)>>(
            ImageView<T>::of(output), ins, band, progress,
            [&]<int Lanes>(const std::array<const T*, 2>& in, T* out) {
                // Integer values convert to float exactly, so this is the integers' own difference.
                storeTruncated<Lanes>(out,
                                      absolute<Lanes>(loadFloats<Lanes>(in[0]) - loadFloats<Lanes>(in[1])));
            });
    });
}

}  // namespace Tw::Image
