// The band walk of generators: kernels that read no image and paint each pixel from its place alone.
// A generator gives a paint, a callable that turns the places of a block of pixels into their colours,
// `paint(const PixelPlaces<Lanes>&) -> PaintedColour<Lanes>`, generic over Lanes so that it is compiled
// inside each processor variant. Colours are fractions of white; alpha is white everywhere.
//
// Stores: integer depths take the colour scaled by white, limited to 0..white (a NaN giving 0) and cut
// toward zero; float takes it as computed, except that every NaN becomes one NaN. x86 and arm64 make
// NaNs of opposite signs, and a frame must hold the same bits on every processor.
#pragma once

#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/ImageView.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/Progress.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

// The column and the row of each lane's pixel, as floats converted from the whole numbers.
template <int Lanes>
struct PixelPlaces {
    FloatVector<Lanes> x, y;
};

template <int Lanes>
struct PaintedColour {
    FloatVector<Lanes> red, green, blue;
};

// Every pixel one colour.
struct SolidPaint {
    template <int Lanes>
    [[gnu::always_inline]] PaintedColour<Lanes> operator()(const PixelPlaces<Lanes>& /*at*/) const {
        using F = FloatVector<Lanes>;
        return {F{} + red, F{} + green, F{} + blue};
    }

    float red, green, blue;
};

namespace Detail {

// Fractions of white as a stored value of T, still in float lanes (see the top of the file).
template <class T, int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> storedLevels(FloatVector<Lanes> fractions) {
    if constexpr (std::is_same_v<T, float>) {
        constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
        return fractions == fractions ? fractions : FloatVector<Lanes>{} + kNaN;
    } else {
        return limitedToWhite<T, Lanes>(fractions * ComponentTraits<T>::white);
    }
}

}  // namespace Detail

// `paint` over `band` of `output`. Every pixel is painted in a whole block of lanes, the row's last ones
// through a block on the stack, so that its colour never depends on where in the row it lies.
template <class Paint>
void paintBand(ImageBuffer& output, const PixelRect& band, CpuFeatures features, Progress& progress,
               const Paint& paint) {
    dispatchKernel(output, features, [&](auto layout, auto isa) {
        using Layout = decltype(layout);
        using T = typename Layout::Component;
        constexpr int lanes = kPixelLanes<decltype(isa)>;
        using F = FloatVector<lanes>;
        const ImageView<T> out = ImageView<T>::of(output);
        const IntVector<lanes> laneOffsets = pixelOfPlaneLanes<lanes, T>();
        const auto paintBlock = [&](int32_t x, F y, T* pixels) {
            const PaintedColour<lanes> colour =
                paint(PixelPlaces<lanes>{__builtin_convertvector(laneOffsets + x, F), y});
            F planes[4];
            planes[Layout::alpha] = F{} + Layout::white;
            planes[Layout::red] = Detail::storedLevels<T, lanes>(colour.red);
            planes[Layout::green] = Detail::storedLevels<T, lanes>(colour.green);
            planes[Layout::blue] = Detail::storedLevels<T, lanes>(colour.blue);
            storePixelPlanes<lanes>(pixels, planes);
        };
        forEachRow(band, progress, [&](int32_t row) {
            const F y = F{} + static_cast<float>(row);
            int32_t x = band.left;
            for (; int64_t{band.right} - x >= lanes; x += lanes)
                paintBlock(x, y, out.at(x, row));
            if (x < band.right) {
                T block[4 * lanes];
                paintBlock(x, y, block);
                std::memcpy(out.at(x, row), block, sizeof(T) * 4 * static_cast<std::size_t>(band.right - x));
            }
        });
    });
}

}  // namespace Tw::Image
