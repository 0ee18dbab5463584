// The column pass of a domain transform: the recursion down the columns of a band. Rather than follow
// one column down the image, which touches a new page of memory at every step, the sweep walks the rows
// with all the band's columns side by side: the accumulators of a row stay in a buffer of the thread's
// own, every read and write runs along a row, and neighbouring columns hide each other's latency.
//
// The forward values of a column are its line. Within the destination's rows they are kept in the
// destination itself, where each backward step reads its value before it overwrites it; below the
// destination they go to rows of the thread's own, and above it to one row that is never read back.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>

#include "image/filters/retouch/DomainTransformRecursion.h"

namespace Tw::Image {

template <class T>
struct ColumnLines {
    const std::byte* source;  // the first column at the first position
    std::ptrdiff_t sourceStride;
    const std::byte* weights;  // the same pixel, one float a pixel
    std::ptrdiff_t weightStride;
    std::byte* destination;  // the first column at position `begin`
    std::ptrdiff_t destinationStride;
    int32_t width;       // columns
    int32_t length;      // positions of the source
    int32_t begin, end;  // positions of the destination
};

// Passes over one row of `width` pixels, a vector of Lanes components at a time and the last pixels one
// by one.
template <int Lanes, class Apply>
[[gnu::always_inline]] inline void forEachRowVector(int32_t width, Apply&& apply) {
    int32_t x = 0;
    for (; x + Lanes / 4 <= width; x += Lanes / 4)
        apply.template operator()<Lanes>(x);
    for (; x < width; ++x)
        apply.template operator()<4>(x);
}

// All columns of a thread's band in one sweep. The row buffers, the accumulators, the line values below
// the destination and one row for those above it, are allocated once for the band. Progress is reported
// every 32 rows of the sweep, counted over the forward and the backward steps.
template <class T, int Lanes, class Progress>
void sweepColumns(const ColumnLines<T>& lines, Progress& progress) {
    const int32_t width = lines.width, length = lines.length, begin = lines.begin, end = lines.end;
    const std::size_t rowComponents = std::size_t(width) * 4;
    const auto accumulators = std::make_unique_for_overwrite<float[]>(rowComponents);
    const auto belowRows = std::make_unique_for_overwrite<T[]>(rowComponents * (length - end + 1));
    float* const acc = accumulators.get();
    T* const below = belowRows.get();
    T* const above = below + rowComponents * (length - end);
    const auto source = [&](int32_t p) {
        return reinterpret_cast<const T*>(lines.source + p * lines.sourceStride);
    };
    const auto weights = [&](int32_t p) {
        return reinterpret_cast<const float*>(lines.weights + p * lines.weightStride);
    };
    const auto destination = [&](int32_t p) {
        return reinterpret_cast<T*>(lines.destination + (p - begin) * lines.destinationStride);
    };
    const auto line = [&](int32_t p) {
        return p >= end ? below + rowComponents * (p - end) : p >= begin ? destination(p) : above;
    };
    const uint64_t steps = uint64_t(length) * 2 - 1 - begin;
    uint64_t step = 0;
    const auto report = [&] {
        if (step % 32 == 0) progress.progress(step, steps);
        ++step;
    };

    {
        const T* in = source(0);
        std::memcpy(line(0), in, rowComponents * sizeof(T));
        forEachRowVector<Lanes>(width, [&]<int L>(int32_t x) {
            const auto a = loadFloats<L>(in + 4 * x);
            std::memcpy(acc + 4 * x, &a, sizeof a);
        });
        report();
    }
    for (int32_t p = 1; p < length; ++p) {
        const T* in = source(p);
        const float* w = weights(p);
        T* out = line(p);
        forEachRowVector<Lanes>(width, [&]<int L>(int32_t x) {
            FloatVector<L> value;
            std::memcpy(&value, acc + 4 * x, sizeof value);
            value = recursionStep<L>(value, loadFloats<L>(in + 4 * x), spreadOverPixels<L>(w + x));
            std::memcpy(acc + 4 * x, &value, sizeof value);
            storeStored<L>(out + 4 * x, storedComponents<T, L>(value));
        });
        report();
    }
    // Back up the rows: each step reads the row's line value, then, from the destination's last row on,
    // stores the result where it was read.
    const auto backward = [&]<bool Store>(int32_t p) {
        T* values = line(p);
        const float* w = weights(p + 1);
        forEachRowVector<Lanes>(width, [&]<int L>(int32_t x) {
            FloatVector<L> value;
            std::memcpy(&value, acc + 4 * x, sizeof value);
            value = recursionStep<L>(value, loadFloats<L>(values + 4 * x), spreadOverPixels<L>(w + x));
            std::memcpy(acc + 4 * x, &value, sizeof value);
            if constexpr (Store) storeStored<L>(values + 4 * x, storedComponents<T, L>(value));
        });
        report();
    };
    for (int32_t p = length - 2; p >= end; --p)
        backward.template operator()<false>(p);
    // Where the destination ends with the line, the forward value of its last row already stands.
    if (end < length) backward.template operator()<true>(end - 1);
    for (int32_t p = end - 2; p >= begin; --p)
        backward.template operator()<true>(p);
}

}  // namespace Tw::Image
