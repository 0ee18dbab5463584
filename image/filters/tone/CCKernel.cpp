#include "image/filters/tone/CCKernel.h"

#include <array>

#include "image/graph/CieLab.h"
#include "image/graph/ColourBlocks.h"
#include "image/graph/VectorMath.h"

namespace Tw::Image {

namespace {

// The matrix that scales and turns (A, B), the chroma plane of L*a*b* scaled by 1/128. Its rotation is
// the transpose of the usual one: the hue turns backward, toward smaller angles.
struct ChromaMatrix {
    explicit ChromaMatrix(const LabCorrection& correction) {
        FloatVector<4> sine, cosine;
        const float angle = 2.0f * 3.1415927f * correction.hue;
        sineCosine<4>(FloatVector<4>{angle, angle, angle, angle}, sine, cosine);
        const float c = cosine[0] * correction.chroma;
        const float n = sine[0] * correction.chroma;
        ab = {c, n, -n, c};
    }
    std::array<float, 4> ab;
};

// The correction of blocks of colours, through L*a*b* and back.
struct LabTurn {
    template <int Lanes>
    [[gnu::always_inline]] void operator()(RgbVectors<Lanes> (&colours)[kBlocksAbreast]) const {
        using F = FloatVector<Lanes>;
        LabVectors<Lanes> lab[kBlocksAbreast];
        labFromEncoded<Lanes, kBlocksAbreast>(colours, lab);
        for (int k = 0; k < kBlocksAbreast; ++k) {
            const F a = lab[k].a * 0.0078125f;
            const F b = lab[k].b * 0.0078125f;
            const F a2 = matrix.ab[0] * a + matrix.ab[1] * b;
            const F b2 = matrix.ab[2] * a + matrix.ab[3] * b;
            lab[k] = {lab[k].lightness / 105.0f * correction.lightness * 105.0f, a2 * 128.0f, b2 * 128.0f};
        }
        encodedFromLab<Lanes, true, kBlocksAbreast>(lab, colours);
    }

    LabCorrection correction;
    ChromaMatrix matrix;
};

}  // namespace

void ccBand(ImageBuffer& output, const ImageBuffer& input, const PixelRect& band, CpuFeatures features,
            Progress& progress, const LabCorrection& correction) {
    correctColourBand(output, input, band, features, progress, correction.isIdentity(),
                      LabTurn{correction, ChromaMatrix(correction)});
}

}  // namespace Tw::Image
