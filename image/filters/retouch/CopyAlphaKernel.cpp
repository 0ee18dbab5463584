#include "image/filters/retouch/CopyAlphaKernel.h"

#include <array>
#include <bit>
#include <cstddef>

#include "image/graph/CoveredRuns.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

void copyAlphaBand(ImageBuffer& output, const ImageBuffer& colour, const ImageBuffer& alpha,
                   const PixelRect& band, CpuFeatures features, Progress& progress) {
    dispatchKernel(output, features, [&](auto layout, auto isa) {
        using Layout = decltype(layout);
        using T = typename Layout::Component;
        const std::array<ImageView<T>, 2> ins = {ImageView<T>::of(colour), ImageView<T>::of(alpha)};
        forEachCoveredRun<kPixelLanes<decltype(isa)>>(
            ImageView<T>::of(output), ins, band, progress,
            [&]<int Lanes>(const std::array<const T*, 2>& in, T* out) {
                // The stored vectors as bytes, alpha's bytes taken from the second.
                using Bytes = Vector<uint8_t, sizeof(Stored<T, Lanes>)>;
                Bytes fromAlpha{};
                for (std::size_t byte = 0; byte < sizeof(Bytes); ++byte)
                    fromAlpha[byte] = byte / sizeof(T) % 4 == Layout::alpha ? 0xff : 0;
                const auto c = std::bit_cast<Bytes>(loadStored<Lanes>(in[0]));
                const auto a = std::bit_cast<Bytes>(loadStored<Lanes>(in[1]));
                storeStored<Lanes>(out, std::bit_cast<Stored<T, Lanes>>((c & ~fromAlpha) | (a & fromAlpha)));
            });
    });
}

}  // namespace Tw::Image
