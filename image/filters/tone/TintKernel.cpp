#include "image/filters/tone/TintKernel.h"

#include "image/graph/ColourBlocks.h"

namespace Tw::Image {

namespace {

struct TintByLuminance {
    template <int Lanes>
    [[gnu::always_inline]] void operator()(RgbVectors<Lanes> (&colours)[kBlocksAbreast]) const {
        using F = FloatVector<Lanes>;
        const TintRamp& r = ramp;
        for (RgbVectors<Lanes>& rgb : colours) {
            const F luminance = 0.3f * rgb.red + 0.59f * rgb.green + 0.11f * rgb.blue;
            // The tests in their order: the first that holds picks the piece, so that a point out of order
            // shadows the next one.
            const auto belowFirst = r.amount1 >= luminance;
            const auto aboveLast = luminance >= r.amount4;
            const auto inFirst = r.amount2 > luminance;
            const auto inSecond = r.amount3 > luminance;
            const F low = inFirst ? F{} + r.amount1 : inSecond ? F{} + r.amount2 : F{} + r.amount3;
            const F high = inFirst ? F{} + r.amount2 : inSecond ? F{} + r.amount3 : F{} + r.amount4;
            // Where a test of the ends holds the weight goes unused, and it may be no number there.
            const F weight = (luminance - low) / (high - low);
            F out[3];
            for (int c = 0; c < 3; ++c) {
                const F from = inFirst ? F{} + r.color1[c] : inSecond ? F{} + r.color2[c] : F{} + r.color3[c];
                const F to = inFirst ? F{} + r.color2[c] : inSecond ? F{} + r.color3[c] : F{} + r.color4[c];
                const F between = from + (to - from) * weight;
                out[c] = belowFirst ? F{} + r.color1[c] : aboveLast ? F{} + r.color4[c] : between;
            }
            rgb = {out[0], out[1], out[2]};
        }
    }

    TintRamp ramp;
};

}  // namespace

void tintBand(ImageBuffer& output, const ImageBuffer& input, const PixelRect& band, CpuFeatures features,
              Progress& progress, const TintRamp& ramp) {
    correctColourBand(output, input, band, features, progress, false, TintByLuminance{ramp});
}

}  // namespace Tw::Image
