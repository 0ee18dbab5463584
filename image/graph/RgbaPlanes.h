// Pixels of any layout as float vectors by component, for kernels that compute on one arrangement and
// leave depth and component order to their loads and stores: such a kernel is compiled once per
// processor variant, and only these conversions once per layout.
//
// A vector of Lanes floats holds one component of Lanes pixels; four of them, red, green, blue and
// alpha, hold the pixels whole. Values are the stored ones, integers as exact floats. Which pixel lies in
// which lane is a matter between a load and the store that undoes it: each conversion keeps to groups of
// four lanes, which the processor shuffles in one step, so a vector of 8 holds its pixels in the order
// 0, 2, 4, 6, 1, 3, 5, 7 at float and 0, 1, 4, 5, 2, 3, 6, 7 at 16 bits. Lane-wise arithmetic cannot
// tell.
//
// Planes hold a block of such vectors, component by component, so that a kernel compiled apart from
// the loads and stores can take a block of pixels through a plain pointer.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

#include "image/graph/KernelDispatch.h"
#include "image/graph/PixelVector.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

namespace Detail {

// Lane k of the result is lane index(k) of the pair (a, b), b's lanes counted after a's.
template <auto index, class V>
[[gnu::always_inline]] inline V shuffleLanes(V a, V b) {
    constexpr int lanes = sizeof(V) / 4;
    return [&]<int... Lane>(std::integer_sequence<int, Lane...>) {
        return __builtin_shufflevector(a, b, index(Lane, lanes)...);
    }
    (std::make_integer_sequence<int, lanes>{});
}

// In each group of four lanes: the first two lanes of a and b interleaved, or the last two, or a's even
// lanes and then b's, or the odd ones.
constexpr int interleavedLow(int k, int lanes) {
    return k / 4 * 4 + k % 4 / 2 + (k % 2) * lanes;
}
constexpr int interleavedHigh(int k, int lanes) {
    return interleavedLow(k, lanes) + 2;
}
constexpr int evenLanes(int k, int lanes) {
    return k / 4 * 4 + k % 2 * 2 + k % 4 / 2 * lanes;
}
constexpr int oddLanes(int k, int lanes) {
    return evenLanes(k, lanes) + 1;
}

// Transposes each group of four lanes of four vectors: lane c of vector r goes to lane r of vector c
// within the group. Two rounds of interleaving, as transposeSquare does; the transposition is its own
// inverse.
template <class V>
[[gnu::always_inline]] inline void transposeFours(V (&v)[4]) {
    for (int round = 0; round < 2; ++round) {
        const V zipped[4] = {
            shuffleLanes<interleavedLow>(v[0], v[2]), shuffleLanes<interleavedHigh>(v[0], v[2]),
            shuffleLanes<interleavedLow>(v[1], v[3]), shuffleLanes<interleavedHigh>(v[1], v[3])};
        for (int i = 0; i < 4; ++i)
            v[i] = zipped[i];
    }
}

}  // namespace Detail

// Lanes pixels from `pixels`, red, green, blue and alpha to rgba[0] to rgba[3].
template <class Layout, int Lanes>
[[gnu::always_inline]] inline void loadRgba(const typename Layout::Component* pixels,
                                            FloatVector<Lanes> (&rgba)[4]) {
    using T = typename Layout::Component;
    using F = FloatVector<Lanes>;
    using I = IntVector<Lanes>;
    F byPosition[4];  // the components in the order the layout stores them
    if constexpr (std::is_same_v<T, float>) {
        for (int k = 0; k < 4; ++k)
            std::memcpy(&byPosition[k], pixels + k * Lanes, sizeof(F));
        Detail::transposeFours(byPosition);
    } else if constexpr (sizeof(T) == 1) {
        I packed;
        std::memcpy(&packed, pixels, sizeof packed);
        pixelBytes<Lanes>(packed, byPosition);
    } else {
        // Each lane two components; the halves of the pixels go apart as floats, whose shuffle takes
        // lanes from two vectors in one step.
        F firstHalf, secondHalf;
        std::memcpy(&firstHalf, pixels, sizeof firstHalf);
        std::memcpy(&secondHalf, pixels + 2 * Lanes, sizeof secondHalf);
        using U = Vector<uint32_t, Lanes>;
        const U firstTwo = std::bit_cast<U>(Detail::shuffleLanes<Detail::evenLanes>(firstHalf, secondHalf));
        const U lastTwo = std::bit_cast<U>(Detail::shuffleLanes<Detail::oddLanes>(firstHalf, secondHalf));
        byPosition[0] = __builtin_convertvector(std::bit_cast<I>(firstTwo & 0xffff), F);
        byPosition[1] = __builtin_convertvector(std::bit_cast<I>(firstTwo >> 16), F);
        byPosition[2] = __builtin_convertvector(std::bit_cast<I>(lastTwo & 0xffff), F);
        byPosition[3] = __builtin_convertvector(std::bit_cast<I>(lastTwo >> 16), F);
    }
    rgba[0] = byPosition[Layout::red];
    rgba[1] = byPosition[Layout::green];
    rgba[2] = byPosition[Layout::blue];
    rgba[3] = byPosition[Layout::alpha];
}

// Lanes pixels to `pixels` from rgba[0] to rgba[3]: floats as they are; integers with the fraction cut
// off toward zero and their low 8 or 16 bits kept, as truncatedStored does.
template <class Layout, int Lanes>
[[gnu::always_inline]] inline void storeRgba(typename Layout::Component* pixels,
                                             const FloatVector<Lanes> (&rgba)[4]) {
    using T = typename Layout::Component;
    using F = FloatVector<Lanes>;
    using I = IntVector<Lanes>;
    F byPosition[4];
    byPosition[Layout::red] = rgba[0];
    byPosition[Layout::green] = rgba[1];
    byPosition[Layout::blue] = rgba[2];
    byPosition[Layout::alpha] = rgba[3];
    if constexpr (std::is_same_v<T, float>) {
        Detail::transposeFours(byPosition);
        for (int k = 0; k < 4; ++k)
            std::memcpy(pixels + k * Lanes, &byPosition[k], sizeof(F));
        return;
    }
    I integers[4];
    for (int c = 0; c < 4; ++c)
        integers[c] = __builtin_convertvector(byPosition[c], I);
    if constexpr (sizeof(T) == 1) {
        const I packed =
            (integers[0] & 0xff) | (integers[1] & 0xff) << 8 | (integers[2] & 0xff) << 16 | integers[3] << 24;
        std::memcpy(pixels, &packed, sizeof packed);
    } else {
        const I firstTwo = (integers[0] & 0xffff) | integers[1] << 16;
        const I lastTwo = (integers[2] & 0xffff) | integers[3] << 16;
        const I firstHalf = Detail::shuffleLanes<Detail::interleavedLow>(firstTwo, lastTwo);
        const I secondHalf = Detail::shuffleLanes<Detail::interleavedHigh>(firstTwo, lastTwo);
        std::memcpy(pixels, &firstHalf, sizeof firstHalf);
        std::memcpy(pixels + 2 * Lanes, &secondHalf, sizeof secondHalf);
    }
}

// A block of up to Pixels pixels, one array of floats per component: red, green, blue, alpha.
template <int Pixels>
struct RgbaPlanes {
    alignas(32) float component[4][Pixels];
};

// `count` pixels from `pixels` into the planes. Up to a whole vector, the lanes that no pixel fills hold
// zeros; they need not be the last ones.
template <class Layout, int Lanes, int Pixels>
[[gnu::always_inline]] inline void loadRgbaPlanes(const typename Layout::Component* pixels, int count,
                                                  RgbaPlanes<Pixels>& planes) {
    using T = typename Layout::Component;
    using F = FloatVector<Lanes>;
    static_assert(Pixels % Lanes == 0);
    const auto toPlanes = [&](const T* from, int i) {
        F rgba[4];
        loadRgba<Layout, Lanes>(from, rgba);
        for (int c = 0; c < 4; ++c)
            std::memcpy(&planes.component[c][i], &rgba[c], sizeof(F));
    };
    int i = 0;
    for (; i + Lanes <= count; i += Lanes)
        toPlanes(pixels + 4 * i, i);
    if (i < count) {
        T part[4 * Lanes] = {};
        std::memcpy(part, pixels + 4 * i, static_cast<std::size_t>(count - i) * 4 * sizeof(T));
        toPlanes(part, i);
    }
}

// `count` pixels from the planes to `pixels` as storeRgba stores them, each vector through `finish`
// first.
template <class Layout, int Lanes, int Pixels, class Finish>
[[gnu::always_inline]] inline void storeRgbaPlanes(const RgbaPlanes<Pixels>& planes, int count,
                                                   typename Layout::Component* pixels, Finish&& finish) {
    using T = typename Layout::Component;
    using F = FloatVector<Lanes>;
    const auto fromPlanes = [&](int i, T* to) {
        F rgba[4];
        for (int c = 0; c < 4; ++c) {
            std::memcpy(&rgba[c], &planes.component[c][i], sizeof(F));
            rgba[c] = finish(rgba[c]);
        }
        storeRgba<Layout, Lanes>(to, rgba);
    };
    int i = 0;
    for (; i + Lanes <= count; i += Lanes)
        fromPlanes(i, pixels + 4 * i);
    if (i < count) {
        T part[4 * Lanes];
        fromPlanes(i, part);
        std::memcpy(pixels + 4 * i, part, static_cast<std::size_t>(count - i) * 4 * sizeof(T));
    }
}

}  // namespace Tw::Image
