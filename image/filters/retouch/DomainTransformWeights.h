// Stage 1 of a domain transform pass: the feedback weight of every pixel, W = 2^(a * D), with D from a
// derivative plane. Computed once per pixel and pass, so that the recursion that follows is left with one
// multiply and two additions per component. The power of two is VectorMath's, whose bits are the same in
// every processor variant and at every vector width.
#pragma once

#include <cstring>

#include "image/core/ImageBuffer.h"
#include "image/filters/retouch/DomainTransformBlurCommon.h"
#include "image/filters/retouch/RetouchVectors.h"
#include "image/graph/ImageView.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/VectorMath.h"

namespace Tw::Image {

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

// Fills `band` of the weight plane from the same pixels of the derivative plane. There is no progress to
// report for a pass yet; the band only checks for an abort, at the same rows as a kernel would report.
template <class Host>
void computeWeightsBand(Host& host, CpuFeatures features, uint32_t threadIndex, const ImageBuffer& derivative,
                        ImageBuffer& weights, const PixelRect& band, float a) {
    struct AbortCheck {
        Host& host;
        uint32_t threadIndex;
        void progress(uint64_t /*done*/, uint64_t /*total*/) { host.checkAbort(threadIndex); }
    } abortCheck{host, threadIndex};
    dispatchKernel(weights, features, [&](auto /*layout*/, auto isa) {
        constexpr int lanes = kPixelLanes<decltype(isa)>;
        forEachRow(band, abortCheck, [&](int32_t y) {
            weightsRun<lanes>(planeAt(derivative, band.left, y), planeAt(weights, band.left, y), band.width(),
                              a);
        });
    });
}

}  // namespace Tw::Image
