#include "image/filters/spatial/SharpenKernel.h"

#include <array>
#include <bit>
#include <cstring>
#include <type_traits>

#include "image/graph/KernelDispatch.h"
#include "image/graph/MedianWindows.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

void sharpenBand(ImageBuffer& output, const ImageBuffer& input, const PixelRect& band, CpuFeatures features,
                 Progress& progress, float amount) {
    // Integer components and their differences are exact in float, so this is the difference of the
    // integers taken to float.
    const auto sharpened = [amount](auto c, auto median) { return (c - median) * amount + c; };
    dispatchDepthKernel(output, features, [&](auto layout, auto isa) {
        using T = typename decltype(layout)::Component;
        constexpr int kLanes = kPixelLanes<decltype(isa)>;
        // The median is taken on the components as they are stored: 8-bit ones fill a vector four times
        // over what floats would.
        forEachMedianWindow<T, kLanes>(
            ImageView<T>::of(output), std::array{ImageView<T>::of(input)}, band, progress,
            []<int N>(const std::array<const T*, 1>& pixels) {
                Vector<T, N> components;
                std::memcpy(&components, pixels[0], sizeof components);
                return components;
            },
            [&]<int N>(Vector<T, N> medians, const std::array<const T*, 1>& centres, T* out) {
                if constexpr (!std::is_same_v<T, float> && N * sizeof(T) == sizeof(IntVector<kLanes>)) {
                    // A whole vector of integer components, as many to a 32-bit lane as fit: all are
                    // treated alike, so shifts and masks take them apart and put them together again in
                    // place, with no shuffles.
                    constexpr int kPerLane = 4 / sizeof(T);
                    IntVector<kLanes> centreLanes;
                    std::memcpy(&centreLanes, centres[0], sizeof centreLanes);
                    FloatVector<kLanes> c[kPerLane], median[kPerLane], result[kPerLane];
                    laneComponents<T, kLanes>(centreLanes, c);
                    laneComponents<T, kLanes>(std::bit_cast<IntVector<kLanes>>(medians), median);
                    for (int k = 0; k < kPerLane; ++k)
                        result[k] = limitedToWhite<T, kLanes>(sharpened(c[k], median[k]));
                    const IntVector<kLanes> lanes = componentLanes<T, kLanes>(result);
                    std::memcpy(out, &lanes, sizeof lanes);
                } else {
                    // One pixel, or a vector of floats.
                    T median[N];
                    std::memcpy(median, &medians, sizeof median);
                    const FloatVector<N> c = loadFloats<N>(centres[0]);
                    storeStored<N>(out, clampedStored<T, N>(sharpened(c, loadFloats<N>(median))));
                }
            });
    });
}

}  // namespace Tw::Image
