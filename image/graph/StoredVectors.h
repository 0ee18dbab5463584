// Vector helpers for kernels that move components between memory and float lanes, on top of
// PixelVector.h. Like everything there they are exact lane-wise IEEE arithmetic and exact integer moves,
// so a vector of 8 lanes, one of 4 and a single pixel give the same bits, which is what lets a kernel mix
// widths at the ends of a line.
//
// Integer components travel between memory and the float lanes in the low part of a 16-byte vector
// (`Stored`), widened and narrowed one step at a time: vectors of 4 or 8 narrow components are no native
// type, and the compiler would move them a byte at a time.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

#include "image/core/ComponentType.h"
#include "image/graph/PixelVector.h"

namespace Tw::Image {

// Lanes components as an image holds them: floats as they are, integers in the low part of 16 bytes.
template <class T, int Lanes>
using Stored = std::conditional_t<std::is_same_v<T, float>, FloatVector<Lanes>, Vector<T, 16 / sizeof(T)>>;

namespace Detail {

// Up to 16 bytes into a vector of 16, the rest zero, by a load the width of the part.
template <class V, std::size_t Bytes>
[[gnu::always_inline]] inline V loadLow(const void* p) {
    if constexpr (Bytes == 16) {
        V v;
        std::memcpy(&v, p, 16);
        return v;
    } else if constexpr (Bytes == 8) {
        double d;
        std::memcpy(&d, p, 8);
        return std::bit_cast<V>(Vector<double, 2>{d, 0});
    } else {
        static_assert(Bytes == 4);
        float f;
        std::memcpy(&f, p, 4);
        return std::bit_cast<V>(FloatVector<4>{f, 0, 0, 0});
    }
}

}  // namespace Detail

// Lanes components from `components`.
template <int Lanes, class T>
[[gnu::always_inline]] inline Stored<T, Lanes> loadStored(const T* components) {
    if constexpr (std::is_same_v<T, float>) {
        FloatVector<Lanes> v;
        std::memcpy(&v, components, sizeof v);
        return v;
    } else {
        return Detail::loadLow<Stored<T, Lanes>, Lanes * sizeof(T)>(components);
    }
}

// Lanes / 4 pixels, pixel k from `pixels[k]`.
template <int Lanes, class T>
[[gnu::always_inline]] inline Stored<T, Lanes> gatherStored(const T* const (&pixels)[Lanes / 4]) {
    if constexpr (Lanes == 4) {
        return loadStored<4>(pixels[0]);
    } else if constexpr (std::is_same_v<T, float>) {
        return __builtin_shufflevector(loadStored<4>(pixels[0]), loadStored<4>(pixels[1]), 0, 1, 2, 3, 4, 5,
                                       6, 7);
    } else {
        // Two pixels of 4 or 8 bytes as two lanes of that width.
        using Half = std::conditional_t<sizeof(T) == 1, float, double>;
        using Pair = Vector<Half, 16 / sizeof(Half)>;
        Half first, second;
        std::memcpy(&first, pixels[0], sizeof(Half));
        std::memcpy(&second, pixels[1], sizeof(Half));
        Pair pair{};
        pair[0] = first;
        pair[1] = second;
        return std::bit_cast<Stored<T, Lanes>>(pair);
    }
}

template <int Lanes, class T>
[[gnu::always_inline]] inline void storeStored(T* components, Stored<T, Lanes> v) {
    std::memcpy(components, &v, Lanes * sizeof(T));
}

// Four floats to 16-byte aligned `to`, past the caches where the processor has such a store (x86): for
// results that are read again only after more has been written than the caches hold, and whose stores
// would otherwise first read each cache line they fill. Another thread may read them only after
// streamedStoresDone().
[[gnu::always_inline]] inline void storeStreamed(float* to, FloatVector<4> v) {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_movntps(to, v);
#else
    std::memcpy(to, &v, sizeof v);
#endif
}

// Orders the streamed stores before every later store, such as the one that tells another thread they
// are done.
inline void streamedStoresDone() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_sfence();
#endif
}

// Pixel k to `pixels[k]`.
template <int Lanes, class T>
[[gnu::always_inline]] inline void scatterStored(T* const (&pixels)[Lanes / 4], Stored<T, Lanes> v) {
    for (int k = 0; k < Lanes / 4; ++k)
        std::memcpy(pixels[k], reinterpret_cast<const T*>(&v) + 4 * k, 4 * sizeof(T));
}

template <int Lanes, class T>
[[gnu::always_inline]] inline FloatVector<Lanes> floatsOf(Stored<T, Lanes> v) {
    using F = FloatVector<Lanes>;
    using I = IntVector<Lanes>;
    if constexpr (std::is_same_v<T, float>) {
        return v;
    } else {
        using Words = Vector<uint16_t, 8>;
        Words words;
        if constexpr (sizeof(T) == 1) {
            words = std::bit_cast<Words>(__builtin_shufflevector(v, decltype(v){}, 0, 16, 1, 16, 2, 16, 3, 16,
                                                                 4, 16, 5, 16, 6, 16, 7, 16));
        } else {
            words = v;
        }
        if constexpr (Lanes == 4) {
            return __builtin_convertvector(
                std::bit_cast<I>(__builtin_shufflevector(words, Words{}, 0, 8, 1, 8, 2, 8, 3, 8)), F);
        } else {
            static_assert(Lanes == 8);
            return __builtin_convertvector(
                std::bit_cast<I>(
                    __builtin_shufflevector(words, Words{}, 0, 8, 1, 8, 2, 8, 3, 8, 4, 8, 5, 8, 6, 8, 7, 8)),
                F);
        }
    }
}

template <int Lanes, class T>
[[gnu::always_inline]] inline FloatVector<Lanes> loadFloats(const T* components) {
    return floatsOf<Lanes, T>(loadStored<Lanes>(components));
}

// Integers already within the range of T, narrowed by picking their low bytes.
template <class T, int Lanes, class Integers>
[[gnu::always_inline]] inline Stored<T, Lanes> narrowed(Integers integers) {
    using Narrow = Vector<T, 4 * Lanes / sizeof(T)>;  // the integers' bytes as components of T
    const auto parts = std::bit_cast<Narrow>(integers);
    constexpr int k = 4 / sizeof(T);  // parts of T in an integer
    if constexpr (Lanes == 4 && k == 4) {
        return __builtin_shufflevector(parts, parts, 0, 4, 8, 12, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    } else if constexpr (Lanes == 4) {
        return __builtin_shufflevector(parts, parts, 0, 2, 4, 6, 0, 0, 0, 0);
    } else if constexpr (k == 4) {
        // Each half of the vector narrowed in place, then the two halves' results joined.
        const auto halves = std::bit_cast<IntVector<8>>(
            __builtin_shufflevector(parts, parts, 0, 4, 8, 12, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 16, 20, 24,
                                    28, 16, 16, 16, 16, 16, 16, 16, 16, 16, 16, 16, 16));
        return std::bit_cast<Stored<T, Lanes>>(__builtin_shufflevector(halves, halves, 0, 4, 0, 0));
    } else {
        const auto halves = std::bit_cast<Vector<int64_t, 4>>(
            __builtin_shufflevector(parts, parts, 0, 2, 4, 6, 0, 0, 0, 0, 8, 10, 12, 14, 8, 8, 8, 8));
        return std::bit_cast<Stored<T, Lanes>>(__builtin_shufflevector(halves, halves, 0, 2));
    }
}

// Values already within the range of T, with the fraction cut off toward zero; float passes unchanged.
template <class T, int Lanes>
[[gnu::always_inline]] inline Stored<T, Lanes> truncatedStored(FloatVector<Lanes> values) {
    if constexpr (std::is_same_v<T, float>) {
        return values;
    } else {
        return narrowed<T, Lanes>(__builtin_convertvector(values, IntVector<Lanes>));
    }
}

// max(v, 0), a NaN giving 0, limited to white: the range of an integer component of type T.
template <class T, int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> limitedToWhite(FloatVector<Lanes> values) {
    using F = FloatVector<Lanes>;
    return min<Lanes>(max<Lanes>(F{}, values), F{} + ComponentTraits<T>::white);
}

// Integers: limited to 0..white, a NaN giving 0, and cut toward zero. Float passes unchanged.
template <class T, int Lanes>
[[gnu::always_inline]] inline Stored<T, Lanes> clampedStored(FloatVector<Lanes> values) {
    if constexpr (std::is_same_v<T, float>) {
        return values;
    } else {
        return truncatedStored<T, Lanes>(limitedToWhite<T, Lanes>(values));
    }
}

template <int Lanes, class T>
[[gnu::always_inline]] inline void storeTruncated(T* components, FloatVector<Lanes> values) {
    storeStored<Lanes>(components, truncatedStored<T, Lanes>(values));
}

// The sign bit cleared, as fabs does.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> absolute(FloatVector<Lanes> v) {
    return std::bit_cast<FloatVector<Lanes>>(std::bit_cast<IntVector<Lanes>>(v) & 0x7fffffff);
}

// x / 255 for whole numbers x from 0 to 255, correctly rounded as the division gives it, at a fraction of
// its cost. x / 255 in binary is x's eight bits repeated after the point for ever. x * 65793 / 2^24 is
// the first three copies, exactly; adding 2^-24 of it brings in the next three, beyond what a float
// keeps, and a repeating pattern never lies at or near a rounding tie, so the sum rounds as the quotient.
template <class V>
[[gnu::always_inline]] inline V wholeStepOf255(V x) {
    const V copies = x * 0x1.0101p-8f;
    return copies + copies * 0x1p-24f;
}

// The weights of Lanes / 4 neighbouring pixels, each repeated over the four components of its pixel.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> spreadOverPixels(const float* weights) {
    if constexpr (Lanes == 4) {
        const auto one = Detail::loadLow<FloatVector<4>, 4>(weights);
        return __builtin_shufflevector(one, one, 0, 0, 0, 0);
    } else {
        static_assert(Lanes == 8);
        const auto pair = Detail::loadLow<FloatVector<4>, 8>(weights);
        return __builtin_shufflevector(pair, pair, 0, 0, 0, 0, 1, 1, 1, 1);
    }
}

// Transposes a square of N vectors of N floats: lane c of vector r goes to lane r of vector c. Each round
// zips the first half of the vectors with the second; seen as the bits of (vector, lane), a round rotates
// them by one place, so log2 N rounds take every element to its transposed place.
template <int N>
[[gnu::always_inline]] inline void transposeSquare(FloatVector<N> (&v)[N]) {
    static_assert(N == 4 || N == 8);
    constexpr int rounds = N == 4 ? 2 : 3;
    for (int round = 0; round < rounds; ++round) {
        FloatVector<N> zipped[N];
        for (int i = 0; i < N / 2; ++i) {
            if constexpr (N == 4) {
                zipped[2 * i] = __builtin_shufflevector(v[i], v[i + 2], 0, 4, 1, 5);
                zipped[2 * i + 1] = __builtin_shufflevector(v[i], v[i + 2], 2, 6, 3, 7);
            } else {
                zipped[2 * i] = __builtin_shufflevector(v[i], v[i + 4], 0, 8, 1, 9, 2, 10, 3, 11);
                zipped[2 * i + 1] = __builtin_shufflevector(v[i], v[i + 4], 4, 12, 5, 13, 6, 14, 7, 15);
            }
        }
        for (int i = 0; i < N; ++i)
            v[i] = zipped[i];
    }
}

// Component c of each of Lanes pixels to `components[c]`, pixel k in lane k. The pixels come in four
// vectors of floats, in memory order.
template <int Lanes>
[[gnu::always_inline]] inline void pixelComponents(const FloatVector<Lanes> (&v)[4],
                                                   FloatVector<Lanes> (&components)[4]) {
    using F = FloatVector<Lanes>;
    // Component c of the pixels of two neighbouring vectors, gathered into the low lanes; then the two
    // halves joined.
    const auto component = [&]<int C>() {
        if constexpr (Lanes == 4) {
            const F low = __builtin_shufflevector(v[0], v[1], C, 4 + C, 0, 0);
            const F high = __builtin_shufflevector(v[2], v[3], C, 4 + C, 0, 0);
            return F(__builtin_shufflevector(low, high, 0, 1, 4, 5));
        } else {
            static_assert(Lanes == 8);
            const F low = __builtin_shufflevector(v[0], v[1], C, 4 + C, 8 + C, 12 + C, 0, 0, 0, 0);
            const F high = __builtin_shufflevector(v[2], v[3], C, 4 + C, 8 + C, 12 + C, 0, 0, 0, 0);
            return F(__builtin_shufflevector(low, high, 0, 1, 2, 3, 8, 9, 10, 11));
        }
    };
    components[0] = component.template operator()<0>();
    components[1] = component.template operator()<1>();
    components[2] = component.template operator()<2>();
    components[3] = component.template operator()<3>();
}

// Integer components of type T as 32-bit lanes hold them, four of 8 bits or two of 16, taken apart:
// component k of every lane to `components[k]`, by shifts and masks, which leave the processor's shuffle
// unit to other work.
template <class T, int Lanes>
[[gnu::always_inline]] inline void laneComponents(IntVector<Lanes> lanes,
                                                  FloatVector<Lanes> (&components)[4 / sizeof(T)]) {
    constexpr int kBits = 8 * sizeof(T);
    for (std::size_t k = 0; k < 4 / sizeof(T); ++k)
        components[k] =
            __builtin_convertvector((lanes >> (kBits * k)) & ((1 << kBits) - 1), FloatVector<Lanes>);
}

// The inverse of laneComponents, for values already whole and within the range of T.
template <class T, int Lanes>
[[gnu::always_inline]] inline IntVector<Lanes> componentLanes(
    const FloatVector<Lanes> (&components)[4 / sizeof(T)]) {
    IntVector<Lanes> lanes = __builtin_convertvector(components[0], IntVector<Lanes>);
    for (std::size_t k = 1; k < 4 / sizeof(T); ++k)
        lanes |= __builtin_convertvector(components[k], IntVector<Lanes>) << (8 * sizeof(T) * k);
    return lanes;
}

// The same as pixelComponents for 8-bit pixels, one a 32-bit lane.
template <int Lanes>
[[gnu::always_inline]] inline void pixelBytes(IntVector<Lanes> pixels, FloatVector<Lanes> (&components)[4]) {
    laneComponents<uint8_t, Lanes>(pixels, components);
}

// The sum of a pixel's four components, added in memory order c0, c1, c2, c3 from 0; one pixel a lane.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> componentSum(const FloatVector<Lanes> (&components)[4]) {
    FloatVector<Lanes> sum = FloatVector<Lanes>{} + components[0];
    sum += components[1];
    sum += components[2];
    return sum + components[3];
}

// Transposes each group of four lanes of four vectors as a square: lane c of group g of vector r goes to
// lane r of group g of vector c. Its own inverse, and made of shuffles within halves of 16 bytes, which
// cost less than shuffles across a whole vector of 32.
template <int Lanes>
[[gnu::always_inline]] inline void transposeQuads(FloatVector<Lanes> (&v)[4]) {
    using F = FloatVector<Lanes>;
    // Zips lanes 0, 1 (`Half` 0) or 2, 3 (`Half` 1) of each group of a with those of b.
    const auto zip = []<int Half>(F a, F b) {
        return [&]<std::size_t... Lane>(std::index_sequence<Lane...>) {
            return F(__builtin_shufflevector(a, b,
                                             (Lane / 4 * 4 + 2 * Half + Lane % 4 / 2 + Lane % 2 * Lanes)...));
        }
        (std::make_index_sequence<Lanes>{});
    };
    for (int round = 0; round < 2; ++round) {
        const F zipped[4] = {zip.template operator()<0>(v[0], v[2]), zip.template operator()<1>(v[0], v[2]),
                             zip.template operator()<0>(v[1], v[3]), zip.template operator()<1>(v[1], v[3])};
        for (int i = 0; i < 4; ++i)
            v[i] = zipped[i];
    }
}

// Lanes pixels from `pixels` as four vectors of floats, `planes[c]` holding component c (in memory order)
// of every pixel. Which lane holds which pixel is the same for every component and is undone by
// storePixelPlanes; it may differ between depths.
template <int Lanes, class T>
[[gnu::always_inline]] inline void loadPixelPlanes(const T* pixels, FloatVector<Lanes> (&planes)[4]) {
    if constexpr (sizeof(T) == 1) {
        IntVector<Lanes> words;
        std::memcpy(&words, pixels, sizeof words);
        pixelBytes<Lanes>(words, planes);
    } else {
        for (int k = 0; k < 4; ++k)
            planes[k] = loadFloats<Lanes>(pixels + k * Lanes);
        transposeQuads<Lanes>(planes);
    }
}

// The pixel of a block that each lane of loadPixelPlanes' planes stands for, counted from the block's
// first: what a kernel that computes pixels from their places needs to know of that order.
template <int Lanes, class T>
[[gnu::always_inline]] inline IntVector<Lanes> pixelOfPlaneLanes() {
    if constexpr (sizeof(T) == 1) {
        return laneNumbers<Lanes>();
    } else {
        // Every component labelled with its pixel, then taken apart as loadPixelPlanes takes pixels.
        FloatVector<Lanes> labels[4];
        for (int k = 0; k < 4; ++k)
            for (int lane = 0; lane < Lanes; ++lane)
                labels[k][lane] = static_cast<float>((k * Lanes + lane) / 4);
        transposeQuads<Lanes>(labels);
        return __builtin_convertvector(labels[0], IntVector<Lanes>);
    }
}

// The inverse of loadPixelPlanes. Integer components must lie within the range of T; their fractions are
// cut off toward zero.
template <int Lanes, class T>
[[gnu::always_inline]] inline void storePixelPlanes(T* pixels, const FloatVector<Lanes> (&planes)[4]) {
    using I = IntVector<Lanes>;
    if constexpr (sizeof(T) == 1) {
        I words = __builtin_convertvector(planes[0], I);
        for (int c = 1; c < 4; ++c)
            words |= __builtin_convertvector(planes[c], I) << (8 * c);
        std::memcpy(pixels, &words, sizeof words);
    } else {
        FloatVector<Lanes> v[4] = {planes[0], planes[1], planes[2], planes[3]};
        transposeQuads<Lanes>(v);
        for (int k = 0; k < 4; ++k)
            storeTruncated<Lanes>(pixels + k * Lanes, v[k]);
    }
}

// Stored values of T as fractions of white: 8-bit ones divided by 255, 16-bit ones times 2^-15, floats as
// they are.
template <class T, int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> fractionsOf(FloatVector<Lanes> values) {
    if constexpr (sizeof(T) == 1) return wholeStepOf255(values);
    if constexpr (sizeof(T) == 2) return values * 3.0517578e-5f;
    return values;
}

// Fractions of white as whole values of T, kept in floats: scaled by white, limited to 0..white (a NaN
// giving 0) and cut toward zero. Floats pass unchanged.
template <class T, int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> wholeLevelsOf(FloatVector<Lanes> fractions) {
    using F = FloatVector<Lanes>;
    if constexpr (std::is_same_v<T, float>) {
        return fractions;
    } else {
        constexpr float white = ComponentTraits<T>::white;
        const F limited = min<Lanes>(max<Lanes>(F{}, fractions * white), F{} + white);
        return __builtin_convertvector(__builtin_convertvector(limited, IntVector<Lanes>), F);
    }
}

}  // namespace Tw::Image
