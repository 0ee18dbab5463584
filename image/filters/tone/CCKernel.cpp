#include "image/filters/tone/CCKernel.h"

#include <array>
#include <cstring>

#include "image/graph/CieLab.h"
#include "image/graph/ImageView.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/PixelBlocks.h"
#include "image/graph/StoredVectors.h"
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

// kBlocksAbreast blocks of Lanes pixels, in planes of one component.
template <class Layout, int Lanes>
struct CorrectedPixels {
    using T = typename Layout::Component;
    using F = FloatVector<Lanes>;

    void apply(const T* in, T* out) const {
        F planes[kBlocksAbreast][4];
        RgbVectors<Lanes> colours[kBlocksAbreast];
        for (int k = 0; k < kBlocksAbreast; ++k) {
            loadPixelPlanes<Lanes>(in + 4 * Lanes * k, planes[k]);
            colours[k] = {fractionsOf<T, Lanes>(planes[k][Layout::red]),
                          fractionsOf<T, Lanes>(planes[k][Layout::green]),
                          fractionsOf<T, Lanes>(planes[k][Layout::blue])};
        }
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
        for (int k = 0; k < kBlocksAbreast; ++k) {
            planes[k][Layout::red] = wholeLevelsOf<T, Lanes>(colours[k].red);
            planes[k][Layout::green] = wholeLevelsOf<T, Lanes>(colours[k].green);
            planes[k][Layout::blue] = wholeLevelsOf<T, Lanes>(colours[k].blue);
            storePixelPlanes<Lanes>(out + 4 * Lanes * k, planes[k]);
        }
    }

    LabCorrection correction;
    ChromaMatrix matrix;
};

}  // namespace

void ccBand(ImageBuffer& output, const ImageBuffer& input, const PixelRect& band, CpuFeatures features,
            Progress& progress, const LabCorrection& correction) {
    dispatchKernel(output, features, [&](auto layout, auto isa) {
        using Layout = decltype(layout);
        using T = typename Layout::Component;
        constexpr int lanes = kPixelLanes<decltype(isa)>;
        const CorrectedPixels<Layout, lanes> pixels{correction, ChromaMatrix(correction)};
        const bool identity = correction.isIdentity();
        constexpr int blockPixels = kBlocksAbreast * lanes;
        forEachPixelBlock<blockPixels>(ImageView<T>::of(output), std::array{ImageView<T>::of(input)}, band,
                                       progress, [&](const std::array<const T*, 1>& in, T* out) {
                                           if (identity) {
                                               std::memmove(out, in[0], sizeof(T) * 4 * blockPixels);
                                           } else {
                                               pixels.apply(in[0], out);
                                           }
                                       });
    });
}

}  // namespace Tw::Image
