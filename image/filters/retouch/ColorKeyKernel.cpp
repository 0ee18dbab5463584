#include "image/filters/retouch/ColorKeyKernel.h"

#include "image/filters/retouch/ColorKeyPixels.h"

namespace Tw::Image {

void colorKeyBand(ImageBuffer& output, const ImageBuffer& a, const ImageBuffer& b, const PixelRect& band,
                  CpuFeatures features, Progress& progress, const SkinKey& key, bool inverted,
                  ColorKeyOutput result) {
    const KeyBox box(key, inverted);
    const auto run = [&]<ColorKeyOutput Result>() {
        runKeyedBand(output, a, b, band, features, progress,
                     [&]<class Layout, int Lanes>(const typename Layout::Component* first,
                                                  const typename Layout::Component* second,
                                                  typename Layout::Component* out) {
                         using F = FloatVector<Lanes>;
                         F bs[4], as[4], outs[4];
                         loadPixelPlanes<Lanes>(second, bs);
                         const F m = keyStrength<Lanes>(
                             box,
                             keySpaceOfLab<Lanes>(labFromEncoded<Lanes>(colourOfPlanes<Layout, Lanes>(bs))));
                         if constexpr (Result == ColorKeyOutput::Mix) {
                             loadPixelPlanes<Lanes>(first, as);
                             for (int c = 0; c < 4; ++c)
                                 outs[c] = (bs[c] - as[c]) * m + as[c];
                         } else {
                             for (int c = 0; c < 4; ++c)
                                 outs[c] = m * Layout::white;
                         }
                         if constexpr (Result == ColorKeyOutput::MaskInColour) {
                             loadPixelPlanes<Lanes>(first, as);
                             outs[Layout::alpha] = as[Layout::alpha];
                         }
                         storePixelPlanes<Lanes>(out, outs);
                     });
    };
    switch (result) {
        case ColorKeyOutput::Mix:
            return run.template operator()<ColorKeyOutput::Mix>();
        case ColorKeyOutput::MaskInColour:
            return run.template operator()<ColorKeyOutput::MaskInColour>();
        case ColorKeyOutput::MaskInAll:
            return run.template operator()<ColorKeyOutput::MaskInAll>();
    }
}

}  // namespace Tw::Image
