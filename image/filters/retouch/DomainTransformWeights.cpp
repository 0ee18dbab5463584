#include "image/filters/retouch/DomainTransformWeights.h"

#include <cstddef>
#include <cstring>

#include "image/filters/retouch/DomainTransformBlurCommon.h"
#include "image/graph/ImageView.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/StoredVectors.h"
#include "image/graph/VectorMath.h"

namespace Tw::Image {

namespace {

template <int Lanes>
[[gnu::always_inline]] inline void weightsRun(const float* derivative, float* weights, int32_t count,
                                              float a) {
    using F = FloatVector<Lanes>;
    const F factor = F{} + a;
    for (; count >= Lanes; count -= Lanes, derivative += Lanes, weights += Lanes) {
        F d;
        std::memcpy(&d, derivative, sizeof d);
        const F w = power2<Lanes>(factor * d);
        std::memcpy(weights, &w, sizeof w);
    }
    if (count > 0) {
        // The last few through a vector of their own; lanes are independent, so the bits are the same.
        F d = F{} + 1.0f;
        std::memcpy(&d, derivative, static_cast<std::size_t>(count) * sizeof(float));
        const F w = power2<Lanes>(factor * d);
        std::memcpy(weights, &w, static_cast<std::size_t>(count) * sizeof(float));
    }
}

}  // namespace

void computeWeightsBand(const ImageBuffer& derivative, ImageBuffer& weights, const PixelRect& band,
                        CpuFeatures features, Progress& abortCheck, float a) {
    dispatchVariant(features, [&](auto isa) {
        constexpr int lanes = kPixelLanes<decltype(isa)>;
        forEachRow(band, abortCheck, [&](int32_t y) {
            weightsRun<lanes>(planeAt(derivative, band.left, y), planeAt(weights, band.left, y), band.width(),
                              a);
        });
    });
}

}  // namespace Tw::Image
