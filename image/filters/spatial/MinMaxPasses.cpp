#include "image/filters/spatial/MinMaxPasses.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "image/filters/spatial/MinMaxLine.h"
#include "image/filters/spatial/MinMaxOps.h"
#include "image/filters/spatial/RowInterleave.h"
#include "image/filters/spatial/VectorStorage.h"
#include "image/graph/ImageView.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/PixelVector.h"

namespace Tw::Image {

namespace {

// Reports once for every line whose index within the worker's rectangle is a multiple of 32, when it is
// done; this is also where an abort takes effect.
struct LineProgress {
    Progress& progress;
    int total;

    void passed(int from, int to) const {
        for (int k = (from + 31) / 32 * 32; k < to; k += 32)
            progress.progress(static_cast<uint64_t>(k), static_cast<uint64_t>(total));
    }
};

// Pixels of component type T in one vector of the variant Isa: the rows the row pass interleaves, the
// columns the column pass takes as one line. The plain code takes one pixel at a time.
template <class T, class Isa>
constexpr int kPixelsPerVector = std::max<int>(1, Isa::floatLanes * 4 / static_cast<int>(4 * sizeof(T)));

// What of `image` holds meaningful pixels.
PixelRect validPixels(const ImageBuffer& image) {
    return image.hasStorage() ? image.rect.intersect(image.validRect) : PixelRect::empty();
}

template <class V>
LineOf<V, const std::byte> lineFrom(const void* first, std::ptrdiff_t stride, int origin) {
    return {static_cast<const std::byte*>(first), stride, origin};
}
template <class V>
LineOf<V, std::byte> lineTo(void* first, std::ptrdiff_t stride, int origin) {
    return {static_cast<std::byte*>(first), stride, origin};
}

// The horizontal pass over `band`, a band of whole rows of `output`, with radius `radius`.
template <class Op, class T, class Isa>
void minMaxRows(const ImageBuffer& input, ImageBuffer& output, const PixelRect& band, Progress& progress,
                int32_t radius) {
    if (band.isEmpty()) return;
    constexpr int kRows = kPixelsPerVector<T, Isa>;

    const PixelRect valid = validPixels(input);
    const LineSpan span = LineSpan::of(band.left, band.right, valid.left, valid.right, radius);
    const int firstRow = std::max(band.top, valid.top), endRow = std::min(band.bottom, valid.bottom);
    output.clearOutside(band, {span.begin, firstRow, span.end, endRow});
    const LineProgress lines{progress, band.height()};
    if (span.isEmpty() || firstRow >= endRow) {
        lines.passed(0, band.height());
        return;
    }
    lines.passed(0, firstRow - band.top);

    const auto in = ImageView<T>::of(input);
    const auto out = ImageView<T>::of(output);
    if constexpr (kRows == 1) {
        using V = Vector<T, 4>;
        const VectorStorage window = VectorStorage::of<V>(span.windowSize());
        for (int y = firstRow; y < endRow; ++y) {
            windowExtremes<Op>(lineFrom<V>(in.at(span.readBegin, y), sizeof(V), span.readBegin),
                               lineTo<V>(out.at(span.begin, y), sizeof(V), span.begin), span, window.as<V>());
            lines.passed(y - band.top, y + 1 - band.top);
        }
    } else {
        using Interleave = RowInterleave<T, kRows>;
        using V = typename Interleave::V;
        const int readCount = span.readEnd - span.readBegin, outCount = span.end - span.begin;
        const VectorStorage packed = VectorStorage::of<V>(readCount);
        const VectorStorage filtered = VectorStorage::of<V>(outCount);
        const VectorStorage window = VectorStorage::of<V>(span.windowSize());
        for (int y = firstRow; y < endRow; y += kRows) {
            // A last group of fewer rows repeats its last row in the lanes left over.
            const int count = std::min(kRows, endRow - y);
            const T* sources[kRows];
            T* targets[kRows] = {};
            for (int i = 0; i < kRows; ++i)
                sources[i] = in.at(span.readBegin, y + std::min(i, count - 1));
            for (int i = 0; i < count; ++i)
                targets[i] = out.at(span.begin, y + i);
            Interleave::pack(sources, readCount, packed.as<V>());
            windowExtremes<Op>(lineFrom<V>(packed.as<V>(), sizeof(V), span.readBegin),
                               lineTo<V>(filtered.as<V>(), sizeof(V), span.begin), span, window.as<V>());
            Interleave::unpack(filtered.as<V>(), outCount, targets, count);
            lines.passed(y - band.top, y + count - band.top);
        }
    }
    lines.passed(endRow - band.top, band.height());
}

// The vertical pass over `band`, a band of whole columns of `output`, with radius `radius`. Progress is
// reported per block of rows, the unit in which the pass moves down the band.
template <class Op, class T, class Isa>
void minMaxColumns(const ImageBuffer& input, ImageBuffer& output, const PixelRect& band, Progress& progress,
                   int32_t radius) {
    if (band.isEmpty()) return;
    constexpr int kColumns = kPixelsPerVector<T, Isa>;
    using Group = Vector<T, 4 * kColumns>;
    using Single = Vector<T, 4>;

    const PixelRect valid = validPixels(input);
    const LineSpan span = LineSpan::of(band.top, band.bottom, valid.top, valid.bottom, radius);
    const int firstColumn = std::max(band.left, valid.left), endColumn = std::min(band.right, valid.right);
    output.clearOutside(band, {firstColumn, span.begin, endColumn, span.end});
    const auto height = static_cast<uint64_t>(band.height());
    progress.progress(0, height);
    if (span.isEmpty() || firstColumn >= endColumn) return;

    const auto in = ImageView<T>::of(input);
    const auto out = ImageView<T>::of(output);
    const VectorStorage groupWindow = VectorStorage::of<Group>(span.windowSize());
    const VectorStorage singleWindow = VectorStorage::of<Single>(span.windowSize());
    const auto block = [&]<class V>(int x, int y0, V* window) {
        windowBlock<Op>(lineFrom<V>(in.at(x, span.readBegin), in.stride, span.readBegin),
                        lineTo<V>(out.at(x, span.begin), out.stride, span.begin), span, y0, window);
    };
    for (int y0 = span.begin; y0 < span.end; y0 += span.windowSize()) {
        int x = firstColumn;
        for (; x + kColumns <= endColumn; x += kColumns)
            block(x, y0, groupWindow.as<Group>());
        for (; x < endColumn; ++x)
            block(x, y0, singleWindow.as<Single>());
        progress.progress(static_cast<uint64_t>(std::min(y0 + span.windowSize(), span.end) - band.top),
                          height);
    }
}

}  // namespace

template <class Op>
void minMaxPass(const ImageBuffer& input, ImageBuffer& output, const PixelRect& band, CpuFeatures features,
                Progress& progress, int32_t radius, bool downColumns) {
    dispatchDepthKernel(output, features, [&](auto layout, auto isa) {
        using T = typename decltype(layout)::Component;
        using Isa = decltype(isa);
        if (downColumns) {
            minMaxColumns<Op, T, Isa>(input, output, band, progress, radius);
        } else {
            minMaxRows<Op, T, Isa>(input, output, band, progress, radius);
        }
    });
}

template void minMaxPass<MinOp>(const ImageBuffer&, ImageBuffer&, const PixelRect&, CpuFeatures, Progress&,
                                int32_t, bool);
template void minMaxPass<MaxOp>(const ImageBuffer&, ImageBuffer&, const PixelRect&, CpuFeatures, Progress&,
                                int32_t, bool);

}  // namespace Tw::Image
