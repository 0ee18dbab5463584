#include "image/filters/tone/HSVCCKernel.h"

#include "image/graph/ColourBlocks.h"

namespace Tw::Image {

namespace {

// Which of the value, the component between (falling or rising) and the least component gives red, green and
// blue in each sixth of the hue circle. Sector 0 stands first: it also takes every sector outside 1..5.
enum Part { Value, Between, Least };
constexpr Part kSectorParts[6][3] = {{Value, Between, Least}, {Between, Value, Least},
                                     {Least, Value, Between}, {Least, Between, Value},
                                     {Between, Least, Value}, {Value, Least, Between}};

// The hue of each pixel in turns, 0 for a grey, and turned by `turn`: one correction toward 0..1 only.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> turnedHue(const RgbVectors<Lanes>& rgb,
                                                           FloatVector<Lanes> largest,
                                                           FloatVector<Lanes> range, float turn) {
    using F = FloatVector<Lanes>;
    const auto atRed = largest == rgb.red;
    const auto atGreen = largest == rgb.green;
    // Each pixel in its own sector, by one division: the rules pick its numerator and its offset.
    const F numerator = atRed ? rgb.green - rgb.blue : atGreen ? rgb.blue - rgb.red : rgb.red - rgb.green;
    const F offset = atRed ? F{} : atGreen ? F{} + 2.0f : F{} + 4.0f;
    F h = range != 0.0f ? numerator / range + offset : F{};
    h = h / 6.0f;
    h = h < 0.0f ? h + 1.0f : h;
    h = h + turn;
    return h >= 1.0f ? h - 1.0f : h < 0.0f ? h + 1.0f : h;
}

struct HsvTurn {
    template <int Lanes>
    [[gnu::always_inline]] void operator()(RgbVectors<Lanes> (&colours)[kBlocksAbreast]) const {
        using F = FloatVector<Lanes>;
        for (RgbVectors<Lanes>& rgb : colours) {
            const F largest = max<Lanes>(max<Lanes>(rgb.red, rgb.green), rgb.blue);
            const F range = largest - min<Lanes>(min<Lanes>(rgb.red, rgb.green), rgb.blue);
            const F h = turnedHue<Lanes>(rgb, largest, range, correction.hue);
            const F s = (largest > 0.0f ? range / largest : F{}) * correction.saturation;
            const F v = largest * correction.value;

            const F x = h * 6.0f;
            const F sector = roundDown<Lanes>(x);
            const F fraction = x - sector;
            const auto even = roundDown<Lanes>(sector * 0.5f) * 2.0f == sector;
            const F e = even ? 1.0f - fraction : fraction;
            const F parts[3] = {v, (1.0f - e * s) * v, (1.0f - s) * v};

            F out[3];
            for (int c = 0; c < 3; ++c)
                out[c] = parts[kSectorParts[0][c]];
            for (int k = 1; k < 6; ++k) {
                const auto here = sector == static_cast<float>(k);
                for (int c = 0; c < 3; ++c)
                    out[c] = here ? parts[kSectorParts[k][c]] : out[c];
            }
            rgb = {out[0], out[1], out[2]};
        }
    }

    HsvCorrection correction;
};

}  // namespace

void hsvccBand(ImageBuffer& output, const ImageBuffer& input, const PixelRect& band, CpuFeatures features,
               Progress& progress, const HsvCorrection& correction) {
    correctColourBand(output, input, band, features, progress, correction.isIdentity(), HsvTurn{correction});
}

}  // namespace Tw::Image
