#include "image/filters/spatial/CompoundBlurKernel.h"

#include <algorithm>
#include <cstring>

#include "image/graph/ImageView.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/PixelSpans.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

namespace {

// Where the boxes of Lanes neighbouring pixels meet the table. The table sums the source up to and
// including a cell, so the sum of everything before a box edge at e lies in cell e - 1, and a corner
// interpolates between that cell and the next. Per edge: the first of those two cells (`left`, ...),
// within the table's border of zeros with the next one, and the weight of the next one; and one over each
// box's area.
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
    const F above = edge > low ? edge : F{} + low;
    return above < high ? above : F{} + high;
}

template <int Lanes>
[[gnu::always_inline]] inline IntVector<Lanes> within(IntVector<Lanes> index, int32_t low, int32_t high) {
    const IntVector<Lanes> above = index > low ? index : IntVector<Lanes>{} + low;
    return above < high ? above : IntVector<Lanes>{} + high;
}

// An edge `edge` cells into a table of `size` cells: the first cell its corner reads and the weight of
// the next. Edges cut to the table lie within it, and within a table whose coordinates floats hold exactly
// they need no move; the cells are kept within the border all the same, so that no edge can read past it.
template <int Lanes>
[[gnu::always_inline]] inline void placeEdge(FloatVector<Lanes> edge, int32_t size, IntVector<Lanes>& cell,
                                             FloatVector<Lanes>& weight) {
    const FloatVector<Lanes> whole = roundDown<Lanes>(edge);
    weight = edge - whole;
    // Beyond the range of an integer, conversion gives the least one, which moves to the border too.
    cell = within<Lanes>(__builtin_convertvector(whole, IntVector<Lanes>), 0, size) - 1;
}

// The rectangle of the table's cells, in frame coordinates, as the box edges are cut to it, and its size.
struct TableEdges {
    float left, lastColumn, top, lastRow;
    int32_t width, height;
};

// The boxes of half widths `h` around the pixels at columns `x` of row `y`. Each edge is cut to the
// table; the far ones then move one past it, so that the box ends where the next cell begins.
template <int Lanes>
[[gnu::always_inline]] inline Boxes<Lanes> boxesOf(FloatVector<Lanes> h, FloatVector<Lanes> x, float y,
                                                   const TableEdges& table) {
    using F = FloatVector<Lanes>;
    const F row = F{} + y;
    const F left = within<Lanes>(x - h, table.left, table.lastColumn) - table.left;
    const F right =
        (within<Lanes>(((x + h) + 1.0f) - 1.0f, table.left, table.lastColumn) + 1.0f) - table.left;
    const F top = within<Lanes>(row - h, table.top, table.lastRow) - table.top;
    const F bottom = (within<Lanes>(((row + h) + 1.0f) - 1.0f, table.top, table.lastRow) + 1.0f) - table.top;
    Boxes<Lanes> b;
    b.inverseArea = 1.0f / ((bottom - top) * (right - left));
    placeEdge<Lanes>(left, table.width, b.left, b.leftWeight);
    placeEdge<Lanes>(right, table.width, b.right, b.rightWeight);
    placeEdge<Lanes>(top, table.height, b.top, b.topWeight);
    placeEdge<Lanes>(bottom, table.height, b.bottom, b.bottomWeight);
    return b;
}

// The corners of a box on one row of the table, the left in lanes 0 to 3 and the right in 4 to 7, as
// `from`, and the cells after each as `to`: each corner and the cell after it are read as one.
[[gnu::always_inline]] inline void cellPairs(const float* row, int32_t left, int32_t right,
                                             FloatVector<8>& from, FloatVector<8>& to) {
    const FloatVector<8> lefts = loadStored<8>(row + 4 * left);
    const FloatVector<8> rights = loadStored<8>(row + 4 * right);
    from = __builtin_shufflevector(lefts, rights, 0, 1, 2, 3, 8, 9, 10, 11);
    to = __builtin_shufflevector(lefts, rights, 4, 5, 6, 7, 12, 13, 14, 15);
}

// Four times `a`, then four times `b`.
[[gnu::always_inline]] inline FloatVector<8> weightPair(float a, float b) {
    return FloatVector<8>{a, a, a, a, b, b, b, b};
}

// The boxes of the pixels of a row, Lanes at a time. One form serves every pixel, near the table's edges
// or not: what keeps a box's cells within the table is a few vector comparisons per Lanes pixels
// (placeEdge), which a box wholly inside passes unchanged, so a second form for such boxes would save
// next to nothing.
template <class Layout, int Lanes>
class BoxMeans {
public:
    using T = typename Layout::Component;
    using F = FloatVector<Lanes>;

    BoxMeans(const ImageBuffer& output, const ImageBuffer& table, const ImageBuffer& map, float radiusX,
             bool invert)
        : out_(ImageView<T>::of(output)),
          map_(ImageView<T>::of(map)),
          table_(table.pixels()),
          tableStride_(table.rowStride()),
          edges_{static_cast<float>(table.rect.left),
                 static_cast<float>(table.rect.right - 1),
                 static_cast<float>(table.rect.top),
                 static_cast<float>(table.rect.bottom - 1),
                 table.rect.width(),
                 table.rect.height()},
          radiusX_(radiusX),
          invert_(invert) {}

    // Pixels `begin` to `end` of row `y`; `mapped` when the map has them all, else it reads as zero there.
    void run(int32_t y, int32_t begin, int32_t end, bool mapped) const {
        using Pair = FloatVector<8>;
        T* out = out_.at(begin, y);
        for (int32_t x = begin; x < end; x += Lanes) {
            const int count = std::min<int32_t>(Lanes, end - x);
            const F h = halfWidths(mapped ? luminances(x, y, count) : F{});
            const Boxes<Lanes> b = boxesOf<Lanes>(h, columnsFrom(x), static_cast<float>(y), edges_);
            for (int k = 0; k < count; ++k, out += 4) {
                // The left and the right corner of a box side by side, along the rows first, then down.
                const Pair acrossWeights = weightPair(b.leftWeight[k], b.rightWeight[k]);
                const auto along = [&](const float* cells) {
                    Pair from, to;
                    cellPairs(cells, b.left[k], b.right[k], from, to);
                    return from + (to - from) * acrossWeights;
                };
                const auto corners = [&](int32_t row, float downWeight) {
                    const Pair upper = along(tableRow(row));
                    const Pair lower = along(tableRow(row + 1));
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
    const float* tableRow(int32_t row) const {
        return reinterpret_cast<const float*>(table_ + static_cast<std::ptrdiff_t>(row) * tableStride_);
    }

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
    const std::byte* table_;
    std::ptrdiff_t tableStride_;
    TableEdges edges_;
    float radiusX_;
    bool invert_;
};

// Columns per strip of the output. The boxes of a row of pixels read the table's rows up to the
// largest radius above and below it; across a whole frame those rows outgrow the core's own cache, and
// each row would come from further away for every pixel. A strip's share of them stays in that cache from
// one row of the strip to the next.
constexpr int32_t kStripColumns = 128;

// Calls processRow(strip, y) for the rows of each strip of `band`, strip after strip, reporting after
// rows 0, 32, 64, ... of each, which is also where an abort takes effect.
template <class ProcessRow>
void forEachStripRow(const PixelRect& band, Progress& progress, ProcessRow&& processRow) {
    if (band.isEmpty()) return;
    const int64_t height = band.height();
    const int64_t strips = (int64_t{band.width()} + kStripColumns - 1) / kStripColumns;
    for (int64_t s = 0; s < strips; ++s) {
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

}  // namespace

void compoundBlurBand(ImageBuffer& output, const ImageBuffer& table, const ImageBuffer& map,
                      const PixelRect& band, CpuFeatures features, Progress& progress, float radiusX,
                      bool invert) {
    dispatchKernel(output, features, [&](auto layout, auto isa) {
        const BoxMeans<decltype(layout), kPixelLanes<decltype(isa)>> means(output, table, map, radiusX,
                                                                           invert);
        const PixelRect mapped = means.map().hasPixels() ? means.map().rect : PixelRect::empty();
        forEachStripRow(band, progress, [&](const PixelRect& strip, int32_t y) {
            forEachInputSpan(
                strip, y, mapped, [&](int32_t begin, int32_t end) { means.run(y, begin, end, true); },
                [&](int32_t begin, int32_t end) { means.run(y, begin, end, false); });
        });
    });
}

}  // namespace Tw::Image
