#include "image/filters/retouch/GrainKernel.h"

#include <array>
#include <type_traits>

#include "image/graph/KernelDispatch.h"
#include "image/graph/MedianWindows.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

void grainBand(ImageBuffer& output, const ImageBuffer& detail, const ImageBuffer& receiver,
               const PixelRect& band, CpuFeatures features, Progress& progress, float amount) {
    dispatchDepthKernel(output, features, [&](auto layout, auto isa) {
        using T = typename decltype(layout)::Component;
        constexpr int kLanes = kPixelLanes<decltype(isa)>;
        // Differences of integer components are whole numbers well within float's exact range, so their
        // median taken in float is the median of the integers, and so are the sums below.
        forEachMedianWindow<float, kLanes>(
            ImageView<T>::of(output), std::array{ImageView<T>::of(detail), ImageView<T>::of(receiver)}, band,
            progress,
            []<int N>(const std::array<const T*, 2>& pixels) {
                return loadFloats<N>(pixels[0]) - loadFloats<N>(pixels[1]);
            },
            [amount]<int N>(FloatVector<N> medians, const std::array<const T*, 2>& centres, T* out) {
                using F = FloatVector<N>;
                const F base = loadFloats<N>(centres[1]);
                const F grain = (loadFloats<N>(centres[0]) - base) - medians;
                if constexpr (std::is_same_v<T, float>) {
                    storeStored<N>(out, grain * amount + base);
                } else {
                    // Cut toward zero before the addition. Beyond 2^24 either way the sum is past the
                    // component's range whatever it is, and within it the truncation is defined.
                    constexpr float kBeyondRange = 0x1p24f;
                    const F product = min<N>(max<N>(F{} - kBeyondRange, grain * amount), F{} + kBeyondRange);
                    const F truncated =
                        __builtin_convertvector(__builtin_convertvector(product, IntVector<N>), F);
                    storeStored<N>(out, clampedStored<T, N>(base + truncated));
                }
            });
    });
}

}  // namespace Tw::Image
