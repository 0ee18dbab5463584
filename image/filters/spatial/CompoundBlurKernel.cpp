#include "image/filters/spatial/CompoundBlurKernel.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>

#include "image/filters/spatial/CompoundBlurTable.h"
#include "image/filters/spatial/VectorStorage.h"

#include "image/graph/ImageView.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/PixelSpans.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

namespace {

// Where the boxes of Lanes neighbouring pixels meet the table. The table sums the source up to and
// including a cell, so the sum of everything before a box edge at e lies in cell e - 1, and a corner
// interpolates between that cell and the next. Per edge, the first of those two cells: across, as the
// offset in floats of its sums within a row of the column sums read; down, as the table row itself (-1 for
// the border row above the table). Then the weight of the next cell per edge, and one over each box's
// area.
template <int Lanes>
struct Boxes {
    IntVector<Lanes> left, right, top, bottom;
    FloatVector<Lanes> leftWeight, rightWeight, topWeight, bottomWeight;
    FloatVector<Lanes> inverseArea;
};

// `edge` within `low`..`high`; a NaN takes `low`.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> within(FloatVector<Lanes> edge, float low, float high) {
    using F = FloatVector<Lanes>;
    return min<Lanes>(F{} + high, max<Lanes>(F{} + low, edge));
}

template <int Lanes>
[[gnu::always_inline]] inline IntVector<Lanes> within(IntVector<Lanes> index, int32_t low, int32_t high) {
    const IntVector<Lanes> above = index > low ? index : IntVector<Lanes>{} + low;
    return above < high ? above : IntVector<Lanes>{} + high;
}

// The cells of the table, counted from 0 at its left or top edge, from which a corner may read: `first`
// is the least first cell of a corner, `last` the greatest cell after one. The table itself spans -1 to
// its width or height, its border of zeros included; the column sums a worker keeps span less.
struct CellSpan {
    int32_t first, last;
};

// An edge `edge` cells into the table, cut to it: the first cell its corner reads and the weight of the
// next. Within a table whose coordinates floats hold exactly, the cells around an edge lie within the span
// read; they are kept within it all the same, so that no edge can read past it.
template <int Lanes>
[[gnu::always_inline]] inline void placeEdge(FloatVector<Lanes> edge, CellSpan span, IntVector<Lanes>& cell,
                                             FloatVector<Lanes>& weight) {
    // Cut to the table, an edge is a number from 0 up, never a NaN: conversion, which cuts toward zero,
    // gives the cell below it.
    const IntVector<Lanes> below = __builtin_convertvector(edge, IntVector<Lanes>);
    weight = edge - __builtin_convertvector(below, FloatVector<Lanes>);
    cell = within<Lanes>(below, span.first + 1, span.last) - 1;
}

// The rectangle of the table's cells, in frame coordinates, as the box edges are cut to it.
struct TableEdges {
    float left, lastColumn, top, lastRow;
};

// The boxes of half widths `h` around the pixels at columns `x` of row `y`. Each edge is cut to the
// table; the far ones then move one past it, so that the box ends where the next cell begins.
template <int Lanes>
[[gnu::always_inline]] inline Boxes<Lanes> boxesOf(FloatVector<Lanes> h, FloatVector<Lanes> x, float y,
                                                   const TableEdges& table, CellSpan columns, CellSpan rows) {
    using F = FloatVector<Lanes>;
    const F row = F{} + y;
    const F left = within<Lanes>(x - h, table.left, table.lastColumn) - table.left;
    const F right =
        (within<Lanes>(((x + h) + 1.0f) - 1.0f, table.left, table.lastColumn) + 1.0f) - table.left;
    const F top = within<Lanes>(row - h, table.top, table.lastRow) - table.top;
    const F bottom = (within<Lanes>(((row + h) + 1.0f) - 1.0f, table.top, table.lastRow) + 1.0f) - table.top;
    Boxes<Lanes> b;
    b.inverseArea = 1.0f / ((bottom - top) * (right - left));
    placeEdge<Lanes>(left, columns, b.left, b.leftWeight);
    placeEdge<Lanes>(right, columns, b.right, b.rightWeight);
    placeEdge<Lanes>(top, rows, b.top, b.topWeight);
    placeEdge<Lanes>(bottom, rows, b.bottom, b.bottomWeight);
    b.left = (b.left - columns.first) * 4;
    b.right = (b.right - columns.first) * 4;
    return b;
}

// The corners of a box on one row of column sums, the left in lanes 0 to 3 and the right in 4 to 7, as
// `from`, and the cells after each as `to`.
[[gnu::always_inline]] inline void cellPairs(const float* row, int32_t left, int32_t right,
                                             FloatVector<8>& from, FloatVector<8>& to) {
    const FloatVector<8> lefts = loadStored<8>(row + left);
    const FloatVector<8> rights = loadStored<8>(row + right);
    from = __builtin_shufflevector(lefts, rights, 0, 1, 2, 3, 8, 9, 10, 11);
    to = __builtin_shufflevector(lefts, rights, 4, 5, 6, 7, 12, 13, 14, 15);
}

// Four times `a`, then four times `b`.
[[gnu::always_inline]] inline FloatVector<8> weightPair(float a, float b) {
    return FloatVector<8>{a, a, a, a, b, b, b, b};
}

// The boxes of the pixels of a row, Lanes at a time, from column sums reached through `rows`: entry r, from
// -1, is where the sums of table row r start, at the first cell of the span of columns being read. One form
// serves every pixel, near the table's edges or not: what keeps a box's cells within the table is a few
// vector comparisons per Lanes pixels (placeEdge), which a box wholly inside passes unchanged, so a second
// form for such boxes would save next to nothing.
template <class Layout, int Lanes>
class BoxMeans {
public:
    using T = typename Layout::Component;
    using F = FloatVector<Lanes>;

    BoxMeans(const ImageBuffer& output, const ImageBuffer& map, const PixelRect& table,
             const float* const* rows, float radiusX, bool invert)
        : out_(ImageView<T>::of(output)),
          map_(ImageView<T>::of(map)),
          rows_(rows),
          edges_{static_cast<float>(table.left), static_cast<float>(table.right - 1),
                 static_cast<float>(table.top), static_cast<float>(table.bottom - 1)},
          radiusX_(radiusX),
          invert_(invert) {}

    // Pixels `begin` to `end` of row `y`; `mapped` when the map has them all, else it reads as zero there.
    // The boxes read the sums of `columns` and `rows` of the table.
    void run(int32_t y, int32_t begin, int32_t end, bool mapped, CellSpan columns, CellSpan rows) const {
        using Pair = FloatVector<8>;
        const auto boxesAt = [&](int32_t x) {
            const F h = halfWidths(mapped ? luminances(x, y, std::min<int32_t>(Lanes, end - x)) : F{});
            return boxesOf<Lanes>(h, columnsFrom(x), static_cast<float>(y), edges_, columns, rows);
        };
        T* out = out_.at(begin, y);
        // The boxes of the next Lanes pixels are worked out before this run's are read: that long chain of
        // dependent steps then overlaps the reading instead of waiting for it.
        Boxes<Lanes> next;
        if (begin < end) next = boxesAt(begin);
        for (int32_t x = begin; x < end; x += Lanes) {
            const int count = std::min<int32_t>(Lanes, end - x);
            const Boxes<Lanes> b = next;
            if (x + Lanes < end) next = boxesAt(x + Lanes);
            for (int k = 0; k < count; ++k, out += 4) {
                // The left and the right corner of a box side by side, along the rows first, then down.
                const Pair acrossWeights = weightPair(b.leftWeight[k], b.rightWeight[k]);
                const auto along = [&](const float* cells) {
                    Pair from, to;
                    cellPairs(cells, b.left[k], b.right[k], from, to);
                    return from + (to - from) * acrossWeights;
                };
                const auto corners = [&](int32_t row, float downWeight) {
                    const Pair upper = along(rows_[row]);
                    const Pair lower = along(rows_[row + 1]);
                    return upper + (lower - upper) * downWeight;
                };
                const Pair top = corners(b.top[k], b.topWeight[k]);
                const Pair bottom = corners(b.bottom[k], b.bottomWeight[k]);
                const FloatVector<4> sum =
                    FloatVector<4>(__builtin_shufflevector(bottom, bottom, 4, 5, 6, 7)) -
                    FloatVector<4>(__builtin_shufflevector(bottom, bottom, 0, 1, 2, 3)) -
                    FloatVector<4>(__builtin_shufflevector(top, top, 4, 5, 6, 7)) +
                    FloatVector<4>(__builtin_shufflevector(top, top, 0, 1, 2, 3));
                storeStored<4>(out, clampedStored<T, 4>(sum * b.inverseArea[k]));
            }
        }
    }

    const ImageView<T>& map() const { return map_; }

private:
    static F columnsFrom(int32_t x) { return __builtin_convertvector(laneNumbers<Lanes>() + x, F); }

    // The map's luminance at `count` pixels from (x, y), as fractions of white.
    F luminances(int32_t x, int32_t y, int count) const {
        const T* pixels = map_.at(x, y);
        T padded[4 * Lanes];
        if (count < Lanes) {
            std::memset(padded, 0, sizeof padded);
            std::memcpy(padded, pixels, sizeof(T) * 4 * static_cast<std::size_t>(count));
            pixels = padded;
        }
        F vectors[4], components[4];
        for (int k = 0; k < 4; ++k)
            vectors[k] = loadFloats<Lanes>(pixels + k * Lanes);
        pixelComponents<Lanes>(vectors, components);
        const F red = fractionsOf<T, Lanes>(components[Layout::red]);
        const F green = fractionsOf<T, Lanes>(components[Layout::green]);
        const F blue = fractionsOf<T, Lanes>(components[Layout::blue]);
        return 0.3f * red + 0.59f * green + 0.11f * blue;
    }

    // A negative luminance, or none at all, counts as 0.
    F halfWidths(F luminance) const {
        const F m = luminance > 0.0f ? luminance : F{};
        const F share = invert_ ? (m > 1.0f ? F{} : 1.0f - m) : (m < 1.0f ? m : F{} + 1.0f);
        return share * radiusX_;
    }

    ImageView<T> out_;
    ImageView<T> map_;
    const float* const* rows_;
    TableEdges edges_;
    float radiusX_;
    bool invert_;
};

// Columns per strip of the output. The boxes of a row of pixels read the table's rows up to the
// largest radius above and below it; across a whole frame those rows outgrow the core's own cache, and
// each row would come from further away for every pixel. A strip's share of them stays in that cache from
// one row of the strip to the next: at radius 30, 66 rows of 320 cells, 340 KB. Each strip also sums
// the columns its boxes reach beyond it, so narrower strips sum more twice: 128 columns took 10% longer.
constexpr int32_t kStripColumns = 256;

// How far a box reaches from its pixel, in whole pixels, and the rows and cells of column sums that a
// worker keeps for the boxes of one strip: the boxes' rows and columns, one more cell for each corner's
// interpolation and one to spare on each side.
struct Window {
    int64_t reach, rows, cells;

    explicit Window(float radiusX)
        : reach(radiusX > 0 ? static_cast<int64_t>(std::ceil(std::fmin(radiusX, 0x1p30f))) : 0),
          rows(2 * reach + 6),
          cells(kStripColumns + 2 * reach + 4) {}
};

// The most a worker's window may take: a few times what a core keeps close at the largest radius the
// effect offers.
constexpr int64_t kWindowBytes = int64_t{8} << 20;

// The column sums that the boxes read, as one worker reaches them. Either the table summed whole, or the
// sums of one strip's columns kept in a ring of rows: each row's sums added to those of the row above it
// as the strip's rows move down, so that the table is never summed down its columns in memory. The ring's
// sums come out as the table's own: the same additions in the same order.
template <int Lanes>
class ColumnSums {
public:
    ColumnSums(const ImageBuffer& table, float radiusX)
        : table_(table),
          width_(table.rect.width()),
          height_(table.rect.height()),
          inWindows_(compoundBlurSumsInWindows(table.rect, radiusX)),
          window_(radiusX),
          ringCells_(std::min<int64_t>(window_.cells, int64_t{width_} + 2)),
          ring_(VectorStorage::of<FloatVector<4>>(inWindows_ ? uint64_t(window_.rows * ringCells_) : 0)),
          rows_(VectorStorage::of<float*>(uint64_t(height_) + 2)) {
        for (int32_t r = -1; r <= height_; ++r)
            rows_.as<float*>()[r + 1] =
                inWindows_ ? ring_.as<float>() + 4 * ((r + 1) % window_.rows) * ringCells_
                           : reinterpret_cast<float*>(table.pixels() + r * table.rowStride()) - 4;
    }

    // Entry r, from -1 (the border row above the table) to the table's height (the one below it), is where
    // the sums of table row r start, at the first cell of the columns read.
    const float* const* rows() const { return rows_.as<float*>() + 1; }

    // The cells that the boxes of `strip` read: in a ring, those the boxes reach with one to spare on each
    // side, and never fewer than two; the ring starts again from the table's top.
    CellSpan startStrip(const PixelRect& strip) {
        if (!inWindows_) return {-1, width_};
        const auto reach = static_cast<int32_t>(window_.reach);
        const int32_t first = strip.left - table_.rect.left - reach - 2;
        const int32_t last = strip.right - table_.rect.left + reach + 1;
        columns_ = {std::clamp(first, -1, width_ - 1), std::clamp(last, 0, width_)};
        summed_ = -2;
        return columns_;
    }

    // The rows that the boxes of row `y` may read. A ring first sums those rows, and one to spare below.
    CellSpan rowsFor(int32_t y) {
        if (!inWindows_) return {-1, height_};
        const int32_t last =
            std::clamp(y - table_.rect.top + static_cast<int32_t>(window_.reach) + 2, 0, height_);
        const int32_t count = 4 * (columns_.last - columns_.first + 1);
        const auto bytes = sizeof(float) * static_cast<std::size_t>(count);
        for (; summed_ < last; ++summed_) {
            const int32_t r = summed_ + 1;
            float* to = rows_.as<float*>()[r + 1];
            if (r < 0 || r == height_)
                std::memset(to, 0, bytes);
            else if (r == 0)
                std::memcpy(to, rowSumsAt(r), bytes);
            else
                addRowAbove<Lanes>(to, rows()[r - 1], rowSumsAt(r), count);
        }
        return {std::max(-1, summed_ - static_cast<int32_t>(window_.rows) + 1), summed_};
    }

private:
    // Where the row sums of table row r start, at the strip's first cell.
    const float* rowSumsAt(int32_t r) const {
        return reinterpret_cast<const float*>(table_.pixels() + std::ptrdiff_t{r} * table_.rowStride()) +
               4 * std::ptrdiff_t{columns_.first};
    }

    const ImageBuffer& table_;
    int32_t width_, height_;
    bool inWindows_;
    Window window_;
    int64_t ringCells_;
    VectorStorage ring_;
    VectorStorage rows_;
    CellSpan columns_{};
    int32_t summed_ = -2;
};

// Calls processRow(strip, y) for the rows of the strips of `band` that this worker takes, strip after
// strip, reporting after rows 0, 32, 64, ... of each, which is also where an abort takes effect.
template <class ProcessRow>
void forEachStripRow(const PixelRect& band, std::atomic<int32_t>& nextStrip, Progress& progress,
                     ProcessRow&& processRow) {
    if (band.isEmpty()) return;
    const int64_t height = band.height();
    const int64_t strips = (int64_t{band.width()} + kStripColumns - 1) / kStripColumns;
    for (int64_t s = nextStrip++; s < strips; s = nextStrip++) {
        const int32_t left = band.left + static_cast<int32_t>(s * kStripColumns);
        const auto right = static_cast<int32_t>(std::min<int64_t>(band.right, int64_t{left} + kStripColumns));
        const PixelRect strip{left, band.top, right, band.bottom};
        for (int32_t k = 0; k < height; ++k) {
            processRow(strip, band.top + k);
            if (k % 32 == 0)
                progress.progress(static_cast<uint64_t>(s * height + k),
                                  static_cast<uint64_t>(strips * height));
        }
    }
}

// The pixels of the strips of `band` that this worker takes, strip after strip.
template <class Layout, int Lanes>
void boxMeansOf(ImageBuffer& output, const ImageBuffer& table, const ImageBuffer& map, const PixelRect& band,
                std::atomic<int32_t>& nextStrip, Progress& progress, float radiusX, bool invert) {
    ColumnSums<Lanes> sums(table, radiusX);
    const BoxMeans<Layout, Lanes> means(output, map, table.rect, sums.rows(), radiusX, invert);
    const PixelRect mapped = means.map().hasPixels() ? means.map().rect : PixelRect::empty();
    CellSpan columns{};
    forEachStripRow(band, nextStrip, progress, [&](const PixelRect& strip, int32_t y) {
        if (y == strip.top) columns = sums.startStrip(strip);
        const CellSpan rows = sums.rowsFor(y);
        forEachInputSpan(
            strip, y, mapped,
            [&](int32_t begin, int32_t end) { means.run(y, begin, end, true, columns, rows); },
            [&](int32_t begin, int32_t end) { means.run(y, begin, end, false, columns, rows); });
    });
}

}  // namespace

bool compoundBlurSumsInWindows(const PixelRect& table, float radiusX) {
    const Window window(radiusX);
    return window.rows < int64_t{table.height()} + 2 && window.rows * window.cells * 16 <= kWindowBytes;
}

void compoundBlurBand(ImageBuffer& output, const ImageBuffer& table, const ImageBuffer& map,
                      const PixelRect& band, std::atomic<int32_t>& nextStrip, CpuFeatures features,
                      Progress& progress, float radiusX, bool invert) {
    dispatchKernel(output, features, [&](auto layout, auto isa) {
        boxMeansOf<decltype(layout), kPixelLanes<decltype(isa)>>(output, table, map, band, nextStrip,
                                                                 progress, radiusX, invert);
    });
}

}  // namespace Tw::Image
