// Interleaves several rows of pixels into one line of vectors, and back: vector p holds pixel p of row 0,
// then pixel p of row 1, and so on. A line algorithm that walks such a line works on all the rows at
// once, with contiguous loads, where walking the rows one by one would use a fraction of each vector.
//
// The vector is made of 16-byte lanes, each holding the pixel of a few consecutive rows. Whole lanes are
// moved from memory, and within each lane a small transposition puts the pixels in place.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <type_traits>
#include <utility>

#include "image/graph/PixelVector.h"

namespace Tw::Image {

template <class T, int Rows>
struct RowInterleave {
    static constexpr int kPixelBytes = 4 * sizeof(T);
    // Pixels of one row in a lane, and lanes in a vector.
    static constexpr int kLanePixels = 16 / kPixelBytes;
    static constexpr int kLanes = Rows / kLanePixels;
    static_assert(kLanePixels >= 1 && kLanes >= 1 && kLanes * kLanePixels == Rows);

    static constexpr int kComponents = 4 * Rows;
    using V = Vector<T, kComponents>;
    using Table = std::array<int, kComponents>;

    // Pixels [0, count) of rows[0..Rows) into line[0..count).
    static void pack(const T* const* rows, int count, V* line) {
        int p = 0;
        for (; p + kLanePixels <= count; p += kLanePixels) {
            V block[kLanePixels];
            unrolled<kLanePixels>([&](auto j) { block[j] = loadLanes(rows, j, p); });
            transposeLanes(block);
            unrolled<kLanePixels>([&](auto i) { line[p + i] = block[i]; });
        }
        for (; p < count; ++p)
            for (int row = 0; row < Rows; ++row)
                std::memcpy(pixelOf(line[p], row), rows[row] + 4 * p, kPixelBytes);
    }

    // line[0..count) back into pixels [0, count) of rows[0..rowCount).
    static void unpack(const V* line, int count, T* const* rows, int rowCount) {
        int p = 0;
        for (; p + kLanePixels <= count; p += kLanePixels) {
            V block[kLanePixels];
            unrolled<kLanePixels>([&](auto i) { block[i] = line[p + i]; });
            transposeLanes(block);
            unrolled<kLanePixels>([&](auto j) { storeLanes(block[j], rows, rowCount, j, p); });
        }
        for (; p < count; ++p)
            for (int row = 0; row < rowCount; ++row)
                std::memcpy(rows[row] + 4 * p, pixelOf(line[p], row), kPixelBytes);
    }

private:
    static constexpr int kLaneComponents = 16 / sizeof(T);
    using Lane = Vector<T, kLaneComponents>;
    static_assert(kLanes <= 2, "lanes are joined and split in pairs");

    static std::byte* pixelOf(V& v, int row) { return reinterpret_cast<std::byte*>(&v) + kPixelBytes * row; }
    static const std::byte* pixelOf(const V& v, int row) {
        return reinterpret_cast<const std::byte*>(&v) + kPixelBytes * row;
    }

    // Pixels p.. of row j in the first lane and of row j + kLanePixels in the second. The halves are
    // joined in registers: a wide load of two narrow stores would wait for both to leave the store buffer.
    [[gnu::always_inline]] static V loadLanes(const T* const* rows, int j, int p) {
        Lane first;
        std::memcpy(&first, rows[j] + 4 * p, 16);
        if constexpr (kLanes == 1) {
            return first;
        } else {
            Lane second;
            std::memcpy(&second, rows[j + kLanePixels] + 4 * p, 16);
            return [&]<std::size_t... I>(std::index_sequence<I...>) {
                return __builtin_shufflevector(first, second, I...);
            }
            (std::make_index_sequence<kComponents>{});
        }
    }

    // The lanes of v back to pixels p.. of rows j and j + kLanePixels, where those are below rowCount.
    [[gnu::always_inline]] static void storeLanes(V v, T* const* rows, int rowCount, int j, int p) {
        [&]<std::size_t... I>(std::index_sequence<I...>) {
            const Lane first = __builtin_shufflevector(v, v, I...);
            if (j < rowCount) std::memcpy(rows[j] + 4 * p, &first, 16);
            if constexpr (kLanes == 2) {
                const Lane second = __builtin_shufflevector(v, v, (kLaneComponents + I)...);
                if (j + kLanePixels < rowCount) std::memcpy(rows[j + kLanePixels] + 4 * p, &second, 16);
            }
        }
        (std::make_index_sequence<kLaneComponents>{});
    }

    // Within every lane, the first (High: last) half of the pixels of a and b, alternately.
    static constexpr Table zipTable(bool high) {
        Table table{};
        for (int e = 0; e < kComponents; ++e) {
            const int lane = e / (4 * kLanePixels), slot = e / 4 % kLanePixels, component = e % 4;
            const int pixel = slot / 2 + (high ? kLanePixels / 2 : 0);
            table[e] = (slot % 2 ? kComponents : 0) + (lane * kLanePixels + pixel) * 4 + component;
        }
        return table;
    }
    template <bool High>
    static constexpr Table kZip = zipTable(High);

    template <bool High>
    [[gnu::always_inline]] static V zip(V a, V b) {
        return [&]<std::size_t... I>(std::index_sequence<I...>) {
            return __builtin_shufflevector(a, b, kZip<High>[I]...);
        }
        (std::make_index_sequence<kComponents>{});
    }

    // Transposes, within every lane, the square of kLanePixels vectors by kLanePixels pixels: zipping
    // vector i with vector i + n/2 into vectors 2i and 2i + 1, log2(n) times over, is a transposition.
    [[gnu::always_inline]] static void transposeLanes(V (&block)[kLanePixels]) {
        constexpr int kHalf = kLanePixels / 2;
        unrolled<std::bit_width(static_cast<unsigned>(kLanePixels)) - 1>([&](auto) {
            V zipped[kLanePixels];
            unrolled<kHalf>([&](auto i) {
                zipped[2 * i] = zip<false>(block[i], block[i + kHalf]);
                zipped[2 * i + 1] = zip<true>(block[i], block[i + kHalf]);
            });
            unrolled<kLanePixels>([&](auto i) { block[i] = zipped[i]; });
        });
    }

    // Calls f(0) .. f(N - 1) with compile-time indices, so that arrays indexed by them stay in registers.
    template <int N, class F>
    [[gnu::always_inline]] static void unrolled(F&& f) {
        [&]<int... I>(std::integer_sequence<int, I...>) {
            (f(std::integral_constant<int, I>{}), ...);
        }
        (std::make_integer_sequence<int, N>{});
    }
};

}  // namespace Tw::Image
