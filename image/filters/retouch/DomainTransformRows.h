// The row pass of a domain transform: the recursion along rows. A line's steps depend on one another, so
// rows run side by side to hide the latency of the chain: a vector holds one pixel of each of Lanes / 4
// neighbouring rows, and a bundle runs Groups such vectors at once. The forward values of a bundle's rows,
// and first its weights, are kept in scratch areas of the thread, interleaved by position so that each
// vector's share is stored and read back whole.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>

#include "image/filters/retouch/DomainTransformRecursion.h"

namespace Tw::Image {

template <class T>
struct RowLines {
    const std::byte* source;  // the first position of the first row
    std::ptrdiff_t sourceStride;
    const std::byte* weights;  // the same position, one float a pixel
    std::ptrdiff_t weightStride;
    std::byte* destination;  // position `begin` of the first row
    std::ptrdiff_t destinationStride;
    int32_t length;      // positions of the source
    int32_t begin, end;  // positions of the destination
};

// Rows of weights, `Rows` at once, interleaved by position: `interleaved[p * Rows + r]` is weight p of row
// r. Where a vector holds Rows floats, blocks of Rows positions are transposed in registers, which reads
// each row along its length rather than one float from every row in turn.
template <int Rows>
[[gnu::always_inline]] inline void interleaveWeights(const std::byte* weights, std::ptrdiff_t stride,
                                                     int32_t length, float* interleaved) {
    const auto row = [&](int r) { return reinterpret_cast<const float*>(weights + r * stride); };
    int32_t p = 0;
    if constexpr (Rows == 4 || Rows == 8) {
        using V = FloatVector<Rows>;
        for (; p + Rows <= length; p += Rows) {
            V block[Rows];
            for (int r = 0; r < Rows; ++r)
                std::memcpy(&block[r], row(r) + p, sizeof(V));
            transposeSquare<Rows>(block);
            std::memcpy(interleaved + std::ptrdiff_t{p} * Rows, block, sizeof block);
        }
    }
    for (int r = 0; r < Rows; ++r)
        for (int32_t q = p; q < length; ++q)
            interleaved[std::ptrdiff_t{q} * Rows + r] = row(r)[q];
}

template <class T, int Lanes, int Groups>
struct RowBundle {
    using F = FloatVector<Lanes>;
    using Kept = Stored<T, Lanes>;
    static constexpr int kPixels = Lanes / 4;
    static constexpr int kRows = Groups * kPixels;
    static constexpr std::ptrdiff_t kPixelBytes = 4 * sizeof(T);

    // Rows `row` to `row + kRows - 1` of `lines`, through `scratch` of kRows * length pixels and
    // `interleaved` of kRows * length weights.
    [[gnu::always_inline]] static void run(RowLines<T> lines, std::ptrdiff_t row, T* scratch,
                                           float* interleaved) {
        // The geometry lives in locals: stores of 8-bit components may alias anything in memory, and the
        // compiler would otherwise read it again after each.
        const std::byte* const source = lines.source + row * lines.sourceStride;
        const std::byte* const weights = lines.weights + row * lines.weightStride;
        std::byte* const destination = lines.destination + row * lines.destinationStride;
        const std::ptrdiff_t sourceStride = lines.sourceStride, weightStride = lines.weightStride;
        const std::ptrdiff_t destinationStride = lines.destinationStride;
        const int32_t length = lines.length, begin = lines.begin, end = lines.end;

        const auto load = [&](int g, int32_t p) {
            const T* pixels[kPixels];
            for (int k = 0; k < kPixels; ++k)
                pixels[k] =
                    reinterpret_cast<const T*>(source + (g * kPixels + k) * sourceStride + p * kPixelBytes);
            return gatherStored<Lanes>(pixels);
        };
        interleaveWeights<kRows>(weights, weightStride, length, interleaved);
        const auto weight = [&](int g, int32_t p) {
            return spreadOverPixels<Lanes>(interleaved + std::ptrdiff_t{p} * kRows + g * kPixels);
        };
        const auto store = [&](int g, int32_t p, Kept kept) {
            T* pixels[kPixels];
            for (int k = 0; k < kPixels; ++k)
                pixels[k] = reinterpret_cast<T*>(destination + (g * kPixels + k) * destinationStride +
                                                 (p - begin) * kPixelBytes);
            scatterStored<Lanes>(pixels, kept);
        };
        const auto cell = [&](int g, int32_t p) {
            return scratch + (std::ptrdiff_t{p} * kRows + g * kPixels) * 4;
        };

        F acc[Groups];
        for (int g = 0; g < Groups; ++g) {
            const Kept first = load(g, 0);
            storeStored<Lanes>(cell(g, 0), first);
            acc[g] = floatsOf<Lanes, T>(first);
        }
        for (int32_t p = 1; p < length; ++p) {
            for (int g = 0; g < Groups; ++g) {
                acc[g] = recursionStep<Lanes>(acc[g], floatsOf<Lanes, T>(load(g, p)), weight(g, p));
                storeStored<Lanes>(cell(g, p), storedComponents<T, Lanes>(acc[g]));
            }
        }
        const auto stepBack = [&](int g, int32_t p) {
            const F kept = floatsOf<Lanes, T>(loadStored<Lanes>(cell(g, p)));
            acc[g] = recursionStep<Lanes>(acc[g], kept, weight(g, p + 1));
        };
        // Beyond the destination the backward steps only carry the accumulator.
        for (int32_t p = length - 2; p >= end - 1; --p) {
            for (int g = 0; g < Groups; ++g)
                stepBack(g, p);
        }
        for (int g = 0; g < Groups; ++g)
            store(g, end - 1, storedComponents<T, Lanes>(acc[g]));
        for (int32_t p = end - 2; p >= begin; --p) {
            for (int g = 0; g < Groups; ++g) {
                stepBack(g, p);
                store(g, p, storedComponents<T, Lanes>(acc[g]));
            }
        }
    }
};

// How many vectors of rows run side by side: enough to cover the latency of one step of the chain.
inline constexpr int kRowGroups = 4;

// All `rowCount` rows of a thread's band, reporting progress after each row whose index within the band is
// a multiple of 32. The scratch rows are allocated once for the band.
template <class T, int Lanes, class Progress>
void recurseRows(const RowLines<T>& lines, int32_t rowCount, Progress& progress) {
    using Wide = RowBundle<T, Lanes, kRowGroups>;
    using Single = RowBundle<T, Lanes, 1>;
    using Narrow = RowBundle<T, 4, 1>;
    const auto scratch = std::make_unique_for_overwrite<T[]>(std::size_t{Wide::kRows} * 4 * lines.length);
    const auto interleaved = std::make_unique_for_overwrite<float[]>(std::size_t{Wide::kRows} * lines.length);
    const auto report = [&](int32_t first, int32_t count) {
        const int32_t multiple = (first + 31) / 32 * 32;
        if (multiple < first + count) progress.progress(static_cast<uint64_t>(multiple), rowCount);
    };
    int32_t row = 0;
    for (; row + Wide::kRows <= rowCount; row += Wide::kRows) {
        Wide::run(lines, row, scratch.get(), interleaved.get());
        report(row, Wide::kRows);
    }
    for (; row + Single::kRows <= rowCount; row += Single::kRows) {
        Single::run(lines, row, scratch.get(), interleaved.get());
        report(row, Single::kRows);
    }
    for (; row < rowCount; ++row) {
        Narrow::run(lines, row, scratch.get(), interleaved.get());
        report(row, 1);
    }
}

}  // namespace Tw::Image
