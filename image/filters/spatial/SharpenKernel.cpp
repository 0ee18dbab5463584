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
                if constexpr (std::is_same_v<T, uint8_t> && N == 4 * kLanes) {
                    // A whole vector of 8-bit pixels, one pixel a 32-bit lane: shifts and masks take the
                    // components apart and put them together again, leaving the shuffle unit alone.
                    IntVector<kLanes> centrePixels;
                    std::memcpy(&centrePixels, centres[0], sizeof centrePixels);
                    FloatVector<kLanes> c[4], median[4], result[4];
                    pixelBytes<kLanes>(centrePixels, c);
                    pixelBytes<kLanes>(std::bit_cast<IntVector<kLanes>>(medians), median);
                    for (int k = 0; k < 4; ++k)
                        result[k] = limitedToWhite<T, kLanes>(sharpened(c[k], median[k]));
                    const IntVector<kLanes> pixels = bytesOfPixels<kLanes>(result);
                    std::memcpy(out, &pixels, sizeof pixels);
                } else {
                    T median[N];
                    std::memcpy(median, &medians, sizeof median);
                    forEachFloatGroup<N, kLanes>([&]<int L>(int i) {
                        const FloatVector<L> c = loadFloats<L>(centres[0] + i);
                        storeStored<L>(out + i, clampedStored<T, L>(sharpened(c, loadFloats<L>(median + i))));
                    });
                }
            });
    });
}

}  // namespace Tw::Image
