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

// Blocks of Lanes pixels in planes of one component.
template <class Layout, int Lanes>
struct CorrectedPixels {
    using T = typename Layout::Component;
    using F = FloatVector<Lanes>;

    void apply(const T* in, T* out) const {
        F planes[4];
        loadPixelPlanes<Lanes>(in, planes);
        const LabVectors<Lanes> lab = labFromEncoded<Lanes>({fractionsOf<T, Lanes>(planes[Layout::red]),
                                                             fractionsOf<T, Lanes>(planes[Layout::green]),
                                                             fractionsOf<T, Lanes>(planes[Layout::blue])});
        const F lightness = lab.lightness / 105.0f;
        const F a = lab.a * 0.0078125f;
        const F b = lab.b * 0.0078125f;
        const F a2 = matrix.ab[0] * a + matrix.ab[1] * b;
        const F b2 = matrix.ab[2] * a + matrix.ab[3] * b;
        const RgbVectors<Lanes> colour = encodedFromLab<Lanes, true>(
            {lightness * correction.lightness * 105.0f, a2 * 128.0f, b2 * 128.0f});
        planes[Layout::red] = wholeLevelsOf<T, Lanes>(colour.red);
        planes[Layout::green] = wholeLevelsOf<T, Lanes>(colour.green);
        planes[Layout::blue] = wholeLevelsOf<T, Lanes>(colour.blue);
        storePixelPlanes<Lanes>(out, planes);
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
        forEachPixelBlock<lanes>(ImageView<T>::of(output), std::array{ImageView<T>::of(input)}, band,
                                 progress, [&](const std::array<const T*, 1>& in, T* out) {
                                     if (identity) {
                                         std::memmove(out, in[0], sizeof(T) * 4 * lanes);
                                     } else {
                                         pixels.apply(in[0], out);
                                     }
                                 });
    });
}

}  // namespace Tw::Image
