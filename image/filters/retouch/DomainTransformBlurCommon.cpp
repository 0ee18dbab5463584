#include "image/filters/retouch/DomainTransformBlurCommon.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <type_traits>

#include "image/graph/ImageView.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/PixelSpans.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

namespace {

// A component difference or sum of depth T in units of white; V is a float or a float vector.
template <class T, class V>
[[gnu::always_inline]] inline V inWhiteUnits(V v) {
    if constexpr (std::is_same_v<T, uint8_t>) return v / 255.0f;
    if constexpr (std::is_same_v<T, uint16_t>) return v * 0x1p-15f;
    return v;
}

// D for `count` pixels: pixel i at a + 4i, its neighbour at b + 4i.
template <class T, int Lanes>
[[gnu::always_inline]] inline void derivativeRun(const T* a, const T* b, int32_t count, float scale,
                                                 float* out) {
    using F = FloatVector<Lanes>;
    for (; count >= Lanes; count -= Lanes, a += 4 * Lanes, b += 4 * Lanes, out += Lanes) {
        F steps[4];
        if constexpr (sizeof(T) == 1) {
            // The steps as bytes, the larger component less the smaller, exactly as in float.
            using Bytes = Vector<uint8_t, 4 * Lanes>;
            Bytes x, y;
            std::memcpy(&x, a, sizeof x);
            std::memcpy(&y, b, sizeof y);
            pixelBytes<Lanes>(std::bit_cast<IntVector<Lanes>>(Bytes((x > y ? x : y) - (x > y ? y : x))),
                              steps);
            for (int c = 0; c < 4; ++c)
                steps[c] = wholeStepOf255(steps[c]);
        } else {
            F differences[4];
            for (int k = 0; k < 4; ++k) {
                const F difference = loadFloats<Lanes>(b + k * Lanes) - loadFloats<Lanes>(a + k * Lanes);
                differences[k] = inWhiteUnits<T>(absolute<Lanes>(difference));
            }
            pixelComponents<Lanes>(differences, steps);
        }
        const F d = scale * componentSum<Lanes>(steps) + 1.0f;
        std::memcpy(out, &d, sizeof d);
    }
    for (; count > 0; --count, a += 4, b += 4, ++out) {
        const auto difference = absolute<4>(loadFloats<4>(b) - loadFloats<4>(a));
        const auto step = sizeof(T) == 1 ? wholeStepOf255(difference) : inWhiteUnits<T>(difference);
        *out = scale * ((((0.0f + step[0]) + step[1]) + step[2]) + step[3]) + 1.0f;
    }
}

template <class T, int Lanes>
[[gnu::always_inline]] inline void addEdgesRun(const T* e, const float* d, int32_t count, float scale,
                                               float* out) {
    using F = FloatVector<Lanes>;
    for (; count >= Lanes; count -= Lanes, e += 4 * Lanes, d += Lanes, out += Lanes) {
        F components[4];
        if constexpr (sizeof(T) == 1) {
            IntVector<Lanes> pixels;
            std::memcpy(&pixels, e, sizeof pixels);
            pixelBytes<Lanes>(pixels, components);
        } else {
            const F memoryOrder[4] = {loadFloats<Lanes>(e), loadFloats<Lanes>(e + Lanes),
                                      loadFloats<Lanes>(e + 2 * Lanes), loadFloats<Lanes>(e + 3 * Lanes)};
            pixelComponents<Lanes>(memoryOrder, components);
        }
        F plane;
        std::memcpy(&plane, d, sizeof plane);
        const F sum = inWhiteUnits<T>(componentSum<Lanes>(components) * scale) + plane;
        std::memcpy(out, &sum, sizeof sum);
    }
    for (; count > 0; --count, e += 4, ++d, ++out) {
        const auto c = loadFloats<4>(e);
        const float sum = (((0.0f + c[0]) + c[1]) + c[2]) + c[3];
        *out = inWhiteUnits<T>(sum * scale) + *d;
    }
}

// The plane along rows (AlongRows) or down columns over `band`, from `guide`.
template <bool AlongRows>
void computeDerivative(ImageBuffer& plane, const ImageBuffer& guide, const PixelRect& band,
                       CpuFeatures features, Progress& progress, float scale) {
    dispatchDepthKernel(guide, features, [&](auto layout, auto isa) {
        using T = typename decltype(layout)::Component;
        constexpr int lanes = kPixelLanes<decltype(isa)>;
        const auto in = ImageView<T>::of(guide);
        if (!in.hasPixels()) {
            // Nothing to take a step across: flat.
            forEachRow(band, progress,
                       [&](int32_t y) { std::fill_n(planeAt(plane, band.left, y), band.width(), 1.0f); });
            return;
        }
        const auto clampX = [&](int32_t x) { return std::clamp(x, in.rect.left, in.rect.right - 1); };
        const auto clampY = [&](int32_t y) { return std::clamp(y, in.rect.top, in.rect.bottom - 1); };
        // Along rows a pixel has a neighbour of its own up to the second last column; down columns
        // every column of the guide does.
        const int32_t lastWithNeighbour = AlongRows ? in.rect.right - 1 : in.rect.right;
        const int32_t begin = std::clamp(in.rect.left, band.left, band.right);
        const int32_t end = std::clamp(lastWithNeighbour, begin, band.right);
        forEachRow(band, progress, [&](int32_t y) {
            const int32_t row = clampY(y);
            const int32_t neighbourRow = AlongRows ? row : clampY(y + 1);
            const int32_t dx = AlongRows ? 1 : 0;
            const auto clamped = [&](int32_t x) {
                derivativeRun<T, 4>(in.at(clampX(x), row), in.at(clampX(x + dx), neighbourRow), 1, scale,
                                    planeAt(plane, x, y));
            };
            for (int32_t x = band.left; x < begin; ++x)
                clamped(x);
            if (begin < end)
                derivativeRun<T, lanes>(in.at(begin, row), in.at(begin + dx, neighbourRow), end - begin,
                                        scale, planeAt(plane, begin, y));
            for (int32_t x = end; x < band.right; ++x)
                clamped(x);
        });
    });
}

}  // namespace

void DomainTransformBlurCommon::ComputeTileDX(ImageBuffer& plane, ImageBuffer* const* inputs,
                                              const PixelRect& band, CpuFeatures features, Progress& progress,
                                              float scale) {
    computeDerivative<true>(plane, *inputs[0], band, features, progress, scale);
}

void DomainTransformBlurCommon::ComputeTileDY(ImageBuffer& plane, ImageBuffer* const* inputs,
                                              const PixelRect& band, CpuFeatures features, Progress& progress,
                                              float scale) {
    computeDerivative<false>(plane, *inputs[0], band, features, progress, scale);
}

void DomainTransformBlurCommon::ComputeTileAddEdges(ImageBuffer& plane, ImageBuffer* const* inputs,
                                                    const PixelRect& band, CpuFeatures features,
                                                    Progress& progress, float scale) {
    const ImageBuffer& edges = *inputs[0];
    const ImageBuffer& derivative = *inputs[1];
    dispatchDepthKernel(edges, features, [&](auto layout, auto isa) {
        using T = typename decltype(layout)::Component;
        constexpr int lanes = kPixelLanes<decltype(isa)>;
        const auto in = ImageView<T>::of(edges);
        const PixelRect edgesRect = in.hasPixels() ? in.rect : PixelRect::empty();
        const PixelRect planeRect = derivative.hasStorage() ? derivative.rect : PixelRect::empty();
        forEachRow(band, progress, [&](int32_t y) {
            forEachInputSpan(
                band, y, edgesRect.intersect(planeRect),
                [&](int32_t begin, int32_t end) {
                    addEdgesRun<T, lanes>(in.at(begin, y), planeAt(derivative, begin, y), end - begin, scale,
                                          planeAt(plane, begin, y));
                },
                [&](int32_t begin, int32_t end) {
                    static constexpr T kNone[4] = {};
                    static constexpr float kFlat = 1.0f;
                    for (int32_t x = begin; x < end; ++x) {
                        const bool hasEdge = edgesRect.contains({x, y, x + 1, y + 1});
                        const bool hasPlane = planeRect.contains({x, y, x + 1, y + 1});
                        addEdgesRun<T, 4>(hasEdge ? in.at(x, y) : kNone,
                                          hasPlane ? planeAt(derivative, x, y) : &kFlat, 1, scale,
                                          planeAt(plane, x, y));
                    }
                });
        });
    });
}

}  // namespace Tw::Image
