// The recursive Gaussian along lines of pixels: a group of G lines at a time, forwards and then backwards,
// in double precision, the four components of a pixel side by side in one vector.
//
// Each line's recursion is a chain of dependent steps, far too slow run one line at a time: a step waits
// for the one before. Lines of a group are independent, so their steps interleave and the processor
// overlaps them. The lines of a group are rows for the horizontal pass and adjacent columns for the
// vertical one, where a group reads a short run of each row, walking down the image with the row stride.
// Every line gets the same operations in the same order whatever the group size and the processor
// variant, so neither changes a bit of the result.
//
// The line buffer holds, for each sample and line, the input converted to double, and the forward
// result, which the backward one overwrites as it goes by; four start values of each pass lie beyond its
// end. The backward pass reads the buffer alone: the source is read once, a pass may write over it, and
// the vertical pass doesn't go down the image twice for its input.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "image/filters/spatial/GaussianBlurCoefficients.h"
#include "image/graph/PixelVector.h"

namespace Tw::Image {

// The four components of one pixel in double precision.
using PixelValues = Vector<double, 4>;

// Lines through an image: line k of a group, sample n along it.
template <class T, BlurAxis Axis>
struct LineAccess {
    static constexpr std::ptrdiff_t kPixelBytes = 4 * sizeof(T);

    std::byte* first;  // sample 0 of line 0
    std::ptrdiff_t rowStride;

    std::byte* at(int line, int sample) const {
        const std::ptrdiff_t k = line, n = sample;
        return Axis == BlurAxis::Rows ? first + k * rowStride + n * kPixelBytes
                                      : first + k * kPixelBytes + n * rowStride;
    }
    LineAccess from(int line) const { return {at(line, 0), rowStride}; }
};

// The extent of every line of a pass: `count` source samples, of which `outputs` from `offset` on are
// written out.
struct LineShape {
    int count;
    int offset;
    int outputs;
};

// Line buffer entries for groups of up to `lines` lines of `count` samples: the input and the result of
// every sample, with four samples of start values at either end.
// Counted in 64 bits: a line of a very tall or wide frame times a group of lines passes the range of an int.
inline uint64_t lineBufferEntries(int count, int lines) {
    return 2 * (uint64_t(count) + 8) * uint64_t(lines);
}

// Converts the four components at `address` exactly. Written lane by lane and through explicit zero
// extension, which the compiler turns into one or two instructions where the generic conversion of the
// whole vector would come apart into single components.
template <class T>
[[gnu::always_inline]] inline PixelValues loadPixel(const std::byte* address) {
    Vector<T, 4> raw;
    std::memcpy(&raw, address, sizeof raw);
    if constexpr (std::is_same_v<T, float>) {
        return PixelValues{raw[0], raw[1], raw[2], raw[3]};
    } else {
        const Vector<T, 4> zero{};
        IntVector<4> wide;
        if constexpr (sizeof(T) == 1) {
            const auto bytes =
                __builtin_shufflevector(raw, zero, 0, 4, 4, 4, 1, 4, 4, 4, 2, 4, 4, 4, 3, 4, 4, 4);
            std::memcpy(&wide, &bytes, sizeof wide);
        } else {
            const auto halves = __builtin_shufflevector(raw, zero, 0, 4, 1, 4, 2, 4, 3, 4);
            std::memcpy(&wide, &halves, sizeof wide);
        }
        return PixelValues{double(wide[0]), double(wide[1]), double(wide[2]), double(wide[3])};
    }
}

// The low byte or half of each of four integers, which lie within the range of T.
template <class T>
[[gnu::always_inline]] inline Vector<T, 4> narrowIntegers(IntVector<4> integers) {
    constexpr int kParts = sizeof(int32_t) / sizeof(T);
    Vector<T, 4 * kParts> parts;
    std::memcpy(&parts, &integers, sizeof parts);
    return __builtin_shufflevector(parts, parts, 0, kParts, 2 * kParts, 3 * kParts);
}

// Floats are narrowed as they are, beyond 0..1 and negative included. Integers take v + 0.5 truncated,
// limited to 0..`white` (a NaN, which the conversion turns into the lowest integer, becomes 0); the limits
// apply to the integers, where they cost an instruction each. No value of an integer image comes near
// the end of the integer range.
template <class T>
[[gnu::always_inline]] inline void storePixel(std::byte* address, PixelValues v, IntVector<4> white) {
    if constexpr (std::is_same_v<T, float>) {
        const FloatVector<4> narrow = __builtin_convertvector(v, FloatVector<4>);
        std::memcpy(address, &narrow, sizeof narrow);
    } else {
        IntVector<4> integers = __builtin_convertvector(v + 0.5, IntVector<4>);
        integers = integers > 0 ? integers : IntVector<4>{};
        integers = integers < white ? integers : white;
        const Vector<T, 4> narrow = narrowIntegers<T>(integers);
        std::memcpy(address, &narrow, sizeof narrow);
    }
}

// The Gaussian-weighted mean of the samples sample(0), sample(1), ... from an edge inwards: what the image
// is taken to continue with beyond that edge. `used` weights apply, whose sum is `weightSum`.
template <class Sample>
[[gnu::always_inline]] inline PixelValues edgeMean(Sample&& sample, const double* weights, int used,
                                                   double weightSum) {
    PixelValues sum{};
    for (int i = 0; i < used; ++i)
        sum = sum + weights[i] * sample(i);
    return weightSum != 0 ? sum / weightSum : sum;
}

// How many rows ahead the vertical pass asks for the rows it will read and write: far enough for a row
// to arrive from memory while the rows before it are computed.
inline constexpr int kPrefetchRows = 16;

// Asks for the run of G pixels from `first` on, for reading (0) or for writing (1).
template <class T, int G, int ForWriting>
[[gnu::always_inline]] inline void prefetchRun(const std::byte* first) {
    constexpr int kBytes = G * 4 * static_cast<int>(sizeof(T));
    for (int offset = 0; offset < kBytes; offset += 64)
        __builtin_prefetch(first + offset, ForWriting);
    // The run need not start on a cache line.
    __builtin_prefetch(first + kBytes - 1, ForWriting);
}

// Blurs G lines along their length, in `buffer` of lineBufferEntries(shape.count, G) entries or more.
// `white` is that of integer formats. Everything is taken by value: the stores of pixels could
// otherwise alias any of it, and the compiler would read it again after every one.
template <class T, BlurAxis Axis, int G>
[[gnu::always_inline]] inline void blurLineGroup(const LineAccess<T, Axis> source,
                                                 const LineAccess<T, Axis> target, const LineShape shape,
                                                 const GaussianBlurCoefficients& c, const int32_t white,
                                                 PixelValues* const buffer) {
    const double n0 = c.n0, n1 = c.n1, n2 = c.n2, n3 = c.n3;
    const double m1 = c.m1, m2 = c.m2, m3 = c.m3, m4 = c.m4;
    const double d1 = c.d1, d2 = c.d2, d3 = c.d3, d4 = c.d4;
    const double scale = c.scale;
    const IntVector<4> limit = IntVector<4>{} + white;
    const int count = shape.count, offset = shape.offset, end = shape.offset + shape.outputs;
    const int used = std::min(static_cast<int>(c.weights.size()), count);
    double weightSum = 0;
    for (int i = 0; i < used; ++i)
        weightSum += c.weights[i];
    // The recursion's state before a line's first sample, per unit of the edge value.
    const double startGain = 1 / scale + n0;
    // Sample n (from -4 to count + 3) of line k: its input, and the result of the forward pass, which the
    // backward pass replaces with its own as it goes by.
    PixelValues* const inputs = buffer;
    PixelValues* const results = buffer + (count + 8) * G;
    const auto x = [inputs](int n, int k) -> PixelValues& { return inputs[(n + 4) * G + k]; };
    const auto y = [results](int n, int k) -> PixelValues& { return results[(n + 4) * G + k]; };

    // Smoothing continues each line beyond its ends with its local mean; a derivative with nothing.
    const auto edgeValue = [&](auto&& sample) {
        return c.kind == Smoothing ? edgeMean(sample, c.weights.data(), used, weightSum) : PixelValues{};
    };

    for (int k = 0; k < G; ++k) {
        const PixelValues edge = edgeValue([&](int i) { return loadPixel<T>(source.at(k, i)); });
        const PixelValues start = startGain * edge * 0.5;
        for (int i = 1; i <= 4; ++i)
            x(-i, k) = edge, y(-i, k) = start;
    }
    for (int n = 0; n < count; ++n) {
        if constexpr (Axis == BlurAxis::Columns) {
            if (n + kPrefetchRows < count) prefetchRun<T, G, 0>(source.at(0, n + kPrefetchRows));
        }
#pragma GCC unroll 16
        for (int k = 0; k < G; ++k) {
            const PixelValues in = loadPixel<T>(source.at(k, n));
            x(n, k) = in;
            y(n, k) = n0 * in + n1 * x(n - 1, k) + n2 * x(n - 2, k) + n3 * x(n - 3, k) - d1 * y(n - 1, k) -
                      d2 * y(n - 2, k) - d3 * y(n - 3, k) - d4 * y(n - 4, k);
        }
    }

    // The backward pass starts like the forward one, with + n0: the right and bottom edges keep the
    // slight brightness step that comes of it.
    for (int k = 0; k < G; ++k) {
        const PixelValues edge = edgeValue([&](int i) { return x(count - 1 - i, k); });
        const PixelValues start = startGain * edge * 0.5;
        for (int i = 0; i < 4; ++i)
            x(count + i, k) = edge, y(count + i, k) = start;
    }
    // Samples from n down to `last`, written out where `Store` says.
    const auto backward = [&]<bool Store>(int n, int last) {
        for (; n >= last; --n) {
            if constexpr (Store && Axis == BlurAxis::Columns) {
                if (n - offset >= kPrefetchRows)
                    prefetchRun<T, G, 1>(target.at(0, n - offset - kPrefetchRows));
            }
#pragma GCC unroll 16
            for (int k = 0; k < G; ++k) {
                const PixelValues forward = y(n, k);
                const PixelValues z = m1 * x(n + 1, k) + m2 * x(n + 2, k) + m3 * x(n + 3, k) +
                                      m4 * x(n + 4, k) - d1 * y(n + 1, k) - d2 * y(n + 2, k) -
                                      d3 * y(n + 3, k) - d4 * y(n + 4, k);
                y(n, k) = z;
                if constexpr (Store) storePixel<T>(target.at(k, n - offset), scale * (forward + z), limit);
            }
        }
    };
    backward.template operator()<false>(count - 1, end);
    backward.template operator()<true>(end - 1, offset);
}

// Calls body.template operator()<G>(first) for consecutive groups of `count` lines from `first` on:
// groups of G, if G is at most `largest`, while that many remain, then of G / 2, and so on down to
// single lines. Every group starts at a multiple of its size, counted from `first`.
template <int G, class Body>
[[gnu::always_inline]] inline void forEachLineGroup(int first, int count, int largest, Body& body) {
    if (G <= largest) {
        for (; count >= G; first += G, count -= G)
            body.template operator()<G>(first);
    }
    if constexpr (G > 1) forEachLineGroup<G / 2>(first, count, largest, body);
}

}  // namespace Tw::Image
