#include "image/filters/retouch/ColorKeyCCKernel.h"

#include "image/filters/retouch/ColorKeyPixels.h"
#include "image/graph/VectorMath.h"

namespace Tw::Image {

namespace {

// The colour of a point after the correction. The hue turns forward, toward larger angles.
template <int Lanes>
[[gnu::always_inline]] inline RgbVectors<Lanes> corrected(const KeyVectors<Lanes>& point,
                                                          const LabCorrection& correction) {
    using F = FloatVector<Lanes>;
    F sine, cosine;
    sineCosine<Lanes>((point.hue + correction.hue) * 6.2831855f, sine, cosine);
    const F chroma = point.chroma * correction.chroma * 128.0f;
    return encodedFromLab<Lanes, false>(
        {point.lightness * correction.lightness * 105.0f, cosine * chroma, sine * chroma});
}

}  // namespace

void colorKeyCCBand(ImageBuffer& output, const ImageBuffer& a, const ImageBuffer& b, const PixelRect& band,
                    CpuFeatures features, Progress& progress, const SkinKey& key, bool inverted,
                    const LabCorrection& correction) {
    const KeyBox box(key, inverted);
    runKeyedBand(output, a, b, band, features, progress,
                 [&]<class Layout, int Lanes>(const typename Layout::Component* first,
                                              const typename Layout::Component* second,
                                              typename Layout::Component* out) {
                     using T = typename Layout::Component;
                     using F = FloatVector<Lanes>;
                     F as[4], bs[4], outs[4];
                     loadPixelPlanes<Lanes>(first, as);
                     loadPixelPlanes<Lanes>(second, bs);
                     const KeyVectors<Lanes> point =
                         keySpaceOfLab<Lanes>(labFromEncoded<Lanes>(colourOfPlanes<Layout, Lanes>(bs)));
                     const F m = keyStrength<Lanes>(box, point);
                     const RgbVectors<Lanes> colour = corrected<Lanes>(point, correction);
                     bs[Layout::red] = wholeLevelsOf<T, Lanes>(colour.red);
                     bs[Layout::green] = wholeLevelsOf<T, Lanes>(colour.green);
                     bs[Layout::blue] = wholeLevelsOf<T, Lanes>(colour.blue);
                     for (int c = 0; c < 4; ++c)
                         outs[c] = (bs[c] - as[c]) * m + as[c];
                     storePixelPlanes<Lanes>(out, outs);
                 });
}

}  // namespace Tw::Image
