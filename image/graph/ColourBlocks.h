// The band walk of per-pixel colour kernels that work on red, green and blue as fractions of white: 8-bit
// components divided by 255, 16-bit ones times 2^-15, floats as they are. Results go back scaled by white,
// limited to 0..white and cut toward zero at the integer depths, and as computed at float. Alpha passes
// unchanged, bit for bit. A pixel outside the input reads as transparent black.
//
// A kernel gives a correction: a callable that changes kBlocksAbreast blocks of colours in place,
// `correct(RgbVectors<Lanes> (&colours)[kBlocksAbreast])`, generic over Lanes, so that it is compiled
// inside each processor variant.
#pragma once

#include <array>
#include <cstring>
#include <type_traits>

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/CieLab.h"
#include "image/graph/ImageView.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/PixelBlocks.h"
#include "image/graph/Progress.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

// The colour of a block of T in planes, as fractions of white.
template <class T, int Lanes>
[[gnu::always_inline]] inline RgbVectors<Lanes> colourOfPlanes(const FloatVector<Lanes> (&planes)[4],
                                                               const ComponentPlaces& places) {
    return {fractionsOf<T, Lanes>(planes[places.red]), fractionsOf<T, Lanes>(planes[places.green]),
            fractionsOf<T, Lanes>(planes[places.blue])};
}

// kBlocksAbreast blocks of Lanes pixels from `in`, corrected, to `out`.
template <class T, int Lanes, class Correct>
[[gnu::always_inline]] inline void correctColourBlocks(const T* in, T* out, const ComponentPlaces& places,
                                                       const Correct& correct) {
    FloatVector<Lanes> planes[kBlocksAbreast][4];
    RgbVectors<Lanes> colours[kBlocksAbreast];
    for (int k = 0; k < kBlocksAbreast; ++k) {
        loadPixelPlanes<Lanes>(in + 4 * Lanes * k, planes[k]);
        colours[k] = colourOfPlanes<T, Lanes>(planes[k], places);
    }
    correct(colours);
    // Scaled and limited only: the store cuts the fractions off, as wholeLevelsOf would, in one step.
    const auto levels = [](FloatVector<Lanes> fractions) {
        if constexpr (std::is_same_v<T, float>) {
            return fractions;
        } else {
            return limitedToWhite<T, Lanes>(fractions * ComponentTraits<T>::white);
        }
    };
    for (int k = 0; k < kBlocksAbreast; ++k) {
        planes[k][places.red] = levels(colours[k].red);
        planes[k][places.green] = levels(colours[k].green);
        planes[k][places.blue] = levels(colours[k].blue);
        storePixelPlanes<Lanes>(out + 4 * Lanes * k, planes[k]);
    }
}

// `correct` over `band` of `output`, reading `input` at the same places. An `identity` correction copies
// the input instead: its pixels come back bit for bit, which the conversions to fractions and back would
// not promise.
template <class Correct>
void correctColourBand(ImageBuffer& output, const ImageBuffer& input, const PixelRect& band,
                       CpuFeatures features, Progress& progress, bool identity, const Correct& correct) {
    // The places of the components are taken at run time: the code of a correction is compiled once per
    // depth, not once per depth and order.
    const ComponentPlaces places = ComponentPlaces::of(output);
    dispatchDepthKernel(output, features, [&](auto layout, auto isa) {
        using T = typename decltype(layout)::Component;
        constexpr int lanes = kPixelLanes<decltype(isa)>;
        constexpr int blockPixels = kBlocksAbreast * lanes;
        forEachPixelBlock<blockPixels>(ImageView<T>::of(output), std::array{ImageView<T>::of(input)}, band,
                                       progress, [&](const std::array<const T*, 1>& in, T* out) {
                                           if (identity) {
                                               std::memmove(out, in[0], sizeof(T) * 4 * blockPixels);
                                           } else {
                                               correctColourBlocks<T, lanes>(in[0], out, places, correct);
                                           }
                                       });
    });
}

}  // namespace Tw::Image
