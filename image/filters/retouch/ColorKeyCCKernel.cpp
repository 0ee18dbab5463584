#include "image/filters/retouch/ColorKeyCCKernel.h"

#include "image/filters/retouch/ColorKeyPixels.h"
#include "image/graph/VectorMath.h"

namespace Tw::Image {

namespace {

// The colours of points after the correction. The hue turns forward, toward larger angles.
template <int Lanes, int Blocks>
[[gnu::always_inline]] inline void corrected(const KeyVectors<Lanes> (&points)[Blocks],
                                             const LabCorrection& correction,
                                             RgbVectors<Lanes> (&colours)[Blocks]) {
    using F = FloatVector<Lanes>;
    LabVectors<Lanes> lab[Blocks];
    for (int k = 0; k < Blocks; ++k) {
        F sine, cosine;
        sineCosine<Lanes>((points[k].hue + correction.hue) * 6.2831855f, sine, cosine);
        const F chroma = points[k].chroma * correction.chroma * 128.0f;
        lab[k] = {points[k].lightness * correction.lightness * 105.0f, cosine * chroma, sine * chroma};
    }
    encodedFromLab<Lanes, false, Blocks>(lab, colours);
}

}  // namespace

void colorKeyCCBand(ImageBuffer& output, const ImageBuffer& a, const ImageBuffer& b, const PixelRect& band,
                    CpuFeatures features, Progress& progress, const SkinKey& key, bool inverted,
                    const LabCorrection& correction, bool baseAlpha) {
    const KeyBox box(key, inverted);
    runKeyedBand(
        output, a, b, band, features, progress,
        [&]<class T, int Lanes>(const T* first, const T* second, T* out, const ComponentPlaces& places) {
            using F = FloatVector<Lanes>;
            const KeyedBlocks<T, Lanes> keyed(box, places, second);
            RgbVectors<Lanes> colours[kBlocksAbreast];
            corrected<Lanes, kBlocksAbreast>(keyed.points, correction, colours);
            for (int k = 0; k < kBlocksAbreast; ++k) {
                F as[4], bs[4], outs[4];
                loadPixelPlanes<Lanes>(first + 4 * Lanes * k, as);
                for (int c = 0; c < 4; ++c)
                    bs[c] = keyed.planes[k][c];
                bs[places.red] = wholeLevelsOf<T, Lanes>(colours[k].red);
                bs[places.green] = wholeLevelsOf<T, Lanes>(colours[k].green);
                bs[places.blue] = wholeLevelsOf<T, Lanes>(colours[k].blue);
                for (int c = 0; c < 4; ++c)
                    outs[c] = (bs[c] - as[c]) * keyed.strengths[k] + as[c];
                if (baseAlpha) outs[places.alpha] = as[places.alpha];
                storePixelPlanes<Lanes>(out + 4 * Lanes * k, outs);
            }
        });
}

}  // namespace Tw::Image
