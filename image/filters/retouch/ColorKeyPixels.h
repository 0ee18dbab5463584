// What the colour-key kernels share: the key's point of a block of pixels, and the band loop over two
// inputs. The kernels work on blocks of whole pixels in planes of one component (StoredVectors.h), so that
// the costly arithmetic of the key runs once per pixel rather than once per component.
#pragma once

#include <array>

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/filters/retouch/ColorKeySpace.h"
#include "image/graph/CieLab.h"
#include "image/graph/ColourBlocks.h"
#include "image/graph/ImageView.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/PixelBlocks.h"
#include "image/graph/Progress.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

// kBlocksAbreast blocks of Lanes pixels of the keyed image, in planes, with their points in the key's
// space and the key's strength there.
template <class T, int Lanes>
struct KeyedBlocks {
    using F = FloatVector<Lanes>;

    [[gnu::always_inline]] KeyedBlocks(const KeyBox& box, const ComponentPlaces& places, const T* pixels) {
        RgbVectors<Lanes> colours[kBlocksAbreast];
        for (int k = 0; k < kBlocksAbreast; ++k) {
            loadPixelPlanes<Lanes>(pixels + 4 * Lanes * k, planes[k]);
            colours[k] = colourOfPlanes<T, Lanes>(planes[k], places);
        }
        LabVectors<Lanes> lab[kBlocksAbreast];
        labFromEncoded<Lanes, kBlocksAbreast>(colours, lab);
        for (int k = 0; k < kBlocksAbreast; ++k)
            points[k] = keySpaceOfLab<Lanes>(lab[k]);
        for (int k = 0; k < kBlocksAbreast; ++k)
            strengths[k] = keyStrength<Lanes>(box, points[k]);
    }

    F planes[kBlocksAbreast][4];
    KeyVectors<Lanes> points[kBlocksAbreast];
    F strengths[kBlocksAbreast];
};

// Calls keyBlock.template operator()<T, Lanes>(a, b, out, places) for kBlocksAbreast blocks of Lanes
// pixels of `band` at a time, a from image `a` and b from image `b` at the place of out; where an image
// has no pixel, it reads as transparent black.
template <class KeyBlock>
void runKeyedBand(ImageBuffer& output, const ImageBuffer& a, const ImageBuffer& b, const PixelRect& band,
                  CpuFeatures features, Progress& progress, KeyBlock&& keyBlock) {
    const ComponentPlaces places = ComponentPlaces::of(output);
    dispatchDepthKernel(output, features, [&](auto layout, auto isa) {
        using T = typename decltype(layout)::Component;
        constexpr int lanes = kPixelLanes<decltype(isa)>;
        const std::array<ImageView<T>, 2> ins = {ImageView<T>::of(a), ImageView<T>::of(b)};
        forEachPixelBlock<kBlocksAbreast * lanes>(
            ImageView<T>::of(output), ins, band, progress, [&](const std::array<const T*, 2>& in, T* out) {
                keyBlock.template operator()<T, lanes>(in[0], in[1], out, places);
            });
    });
}

}  // namespace Tw::Image
