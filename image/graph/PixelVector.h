// Vectors of pixel components for kernels, written once for every processor variant.
//
// Every function here is always inlined: it becomes part of the variant function that calls it, and a
// vector never crosses a call whose convention depends on the instruction set.
//
// A vector of `Lanes` floats holds Lanes / 4 whole pixels, components in memory order. The types are the
// compiler's generic vectors, so the same source becomes SSE2, SSE4.1 or AVX2 code depending on the
// variant function it is inlined into (see KernelDispatch.h). Every operation here is exact IEEE
// arithmetic with no contraction, so all variants give the same bits.
#pragma once

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>  // declares the processor builtins behind min and max
#endif

#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace Tw::Image {

template <class T, int Lanes>
using Vector [[gnu::vector_size(Lanes * sizeof(T))]] = T;

template <int Lanes>
using FloatVector = Vector<float, Lanes>;
template <int Lanes>
using IntVector = Vector<int32_t, Lanes>;

// Loads `Lanes` components as floats.
template <int Lanes, class T>
[[gnu::always_inline]] inline FloatVector<Lanes> loadComponents(const T* components) {
    Vector<T, Lanes> raw;
    std::memcpy(&raw, components, sizeof raw);
    if constexpr (std::is_same_v<T, float>) {
        return raw;
    } else {
        // Through 32-bit integers: converting narrow integers straight to float is done lane by lane.
        return __builtin_convertvector(__builtin_convertvector(raw, IntVector<Lanes>), FloatVector<Lanes>);
    }
}

// Rounds to the nearest integer, ties to even, for |x| below 2^22: adding and taking away 1.5 * 2^23
// leaves no fraction bits, whatever instructions the variant has.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> roundToNearestEven(FloatVector<Lanes> x) {
    constexpr float kShift = 0x1.8p23f;
    return (x + kShift) - kShift;
}

// The largest whole number not above x, as floor gives it, NaN and infinities included. Beyond 2^22 every
// float is whole already; below it the nearest whole number is taken one down where it lies above x.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> roundDown(FloatVector<Lanes> x) {
    using F = FloatVector<Lanes>;
    const F nearest = roundToNearestEven<Lanes>(x);
    const F below = nearest > x ? nearest - 1.0f : nearest;
    const auto magnitude = std::bit_cast<F>(std::bit_cast<IntVector<Lanes>>(x) & 0x7fffffff);
    return magnitude < 0x1p22f ? below : x;
}

// Stores float components, already limited to the integer range where T is an integer, rounding them
// to nearest-even.
template <int Lanes, class T>
[[gnu::always_inline]] inline void storeComponents(T* components, FloatVector<Lanes> values) {
    if constexpr (std::is_same_v<T, float>) {
        std::memcpy(components, &values, sizeof values);
    } else {
        const auto integers = __builtin_convertvector(roundToNearestEven<Lanes>(values), IntVector<Lanes>);
        const auto narrow = __builtin_convertvector(integers, Vector<T, Lanes>);
        std::memcpy(components, &narrow, sizeof narrow);
    }
}

// A float vector whose lanes repeat the four values of one pixel.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> repeatPixel(const float (&pixel)[4]) {
    FloatVector<Lanes> v;
    for (int lane = 0; lane < Lanes; ++lane)
        v[lane] = pixel[lane % 4];
    return v;
}

// 0, 1, 2, ... in the lanes: added to a pixel's column, the columns of a run of Lanes pixels.
template <int Lanes>
[[gnu::always_inline]] inline IntVector<Lanes> laneNumbers() {
    IntVector<Lanes> lanes;
    for (int lane = 0; lane < Lanes; ++lane)
        lanes[lane] = lane;
    return lanes;
}

// Whether any lane of a comparison's result is true (all bits set).
template <int Lanes>
[[gnu::always_inline]] inline bool anyLane(IntVector<Lanes> mask) {
    using Words = Vector<int64_t, Lanes / 2>;
    const Words words = std::bit_cast<Words>(mask);
    int64_t any = words[0];
    for (int i = 1; i < Lanes / 2; ++i)
        any |= words[i];
    return any != 0;
}

template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> max(FloatVector<Lanes> a, FloatVector<Lanes> b) {
    // The x86 maximum gives its second operand wherever the first is not the greater, which is this
    // choice exactly, NaNs included. Written as a selection, g++ makes it a comparison and a blend there;
    // clang makes it the one instruction itself, and refuses the builtins in a function not built for
    // their instruction set, which these are until inlined.
#if (defined(__x86_64__) || defined(__i386__)) && !defined(__clang__)
    if constexpr (Lanes == 8) return __builtin_ia32_maxps256(b, a);
    if constexpr (Lanes == 4) return __builtin_ia32_maxps(b, a);
#endif
    return a < b ? b : a;
}

template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> min(FloatVector<Lanes> a, FloatVector<Lanes> b) {
#if (defined(__x86_64__) || defined(__i386__)) && !defined(__clang__)
    if constexpr (Lanes == 8) return __builtin_ia32_minps256(b, a);
    if constexpr (Lanes == 4) return __builtin_ia32_minps(b, a);
#endif
    return a > b ? b : a;
}

}  // namespace Tw::Image
