#include "image/filters/retouch/ColorKeyKernel.h"

#include "image/filters/retouch/ColorKeyPixels.h"

namespace Tw::Image {

void colorKeyBand(ImageBuffer& output, const ImageBuffer& a, const ImageBuffer& b, const PixelRect& band,
                  CpuFeatures features, Progress& progress, const SkinKey& key, bool inverted,
                  ColorKeyOutput result, bool baseAlpha) {
    const KeyBox box(key, inverted);
    // What the key writes is asked per block rather than compiled into the kernel: the branch always goes
    // the same way, and one copy of the key's conversions serves all three results.
    runKeyedBand(
        output, a, b, band, features, progress,
        [&]<class T, int Lanes>(const T* first, const T* second, T* out, const ComponentPlaces& places) {
            using F = FloatVector<Lanes>;
            const KeyedBlocks<T, Lanes> keyed(box, places, second);
            for (int k = 0; k < kBlocksAbreast; ++k) {
                const F m = keyed.strengths[k];
                const F(&bs)[4] = keyed.planes[k];
                F as[4], outs[4];
                if (result == ColorKeyOutput::Mix) {
                    loadPixelPlanes<Lanes>(first + 4 * Lanes * k, as);
                    for (int c = 0; c < 4; ++c)
                        outs[c] = (bs[c] - as[c]) * m + as[c];
                    if (baseAlpha) outs[places.alpha] = as[places.alpha];
                } else {
                    for (int c = 0; c < 4; ++c)
                        outs[c] = m * ComponentTraits<T>::white;
                    if (result == ColorKeyOutput::MaskInColour) {
                        loadPixelPlanes<Lanes>(first + 4 * Lanes * k, as);
                        outs[places.alpha] = as[places.alpha];
                    }
                }
                storePixelPlanes<Lanes>(out + 4 * Lanes * k, outs);
            }
        });
}

}  // namespace Tw::Image
