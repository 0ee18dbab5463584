#include "image/filters/spatial/CompoundBlurKernel.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "image/graph/ImageView.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/PixelSpans.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

namespace {

// The table as the corners read it: cell (column, row) counted from its top left. The table sums the
// source up to and including a cell, so the sum of everything before a box edge at e lies in cell e - 1.
struct TableCells {
    const std::byte* first;
    std::ptrdiff_t stride;
    int32_t width;
    int32_t height;

    // A cell as four floats. `Checked` reads a cell outside the table as zero; the unchecked read is for
    // boxes known to lie within the table with every cell their corners read.
    template <bool Checked>
    [[gnu::always_inline]] FloatVector<4> at(int32_t column, int32_t row) const {
        if constexpr (Checked) {
            if (column < 0 || column >= width || row < 0 || row >= height) return FloatVector<4>{};
        }
        return loadStored<4>(reinterpret_cast<const float*>(first + row * stride) + 4 * column);
    }

    // The sum before a corner whose edges fall `columnWeight` of the way past the cell `column` and
    // `rowWeight` past `row`: the four cells around it, interpolated along the row first, then down.
    template <bool Checked>
    [[gnu::always_inline]] FloatVector<4> corner(int32_t column, float columnWeight, int32_t row,
                                                 float rowWeight) const {
        using F = FloatVector<4>;
        const F a0 = at<Checked>(column, row), a1 = at<Checked>(column + 1, row);
        const F b0 = at<Checked>(column, row + 1), b1 = at<Checked>(column + 1, row + 1);
        const F upper = a0 + (a1 - a0) * columnWeight;
        const F lower = b0 + (b1 - b0) * columnWeight;
        return upper + (lower - upper) * rowWeight;
    }
};

// Where the boxes of Lanes neighbouring pixels meet the table: per edge, the cell its corners start from
// and the weight of the next one, and one over each box's area.
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

// An edge in table units split into the cell before it (the whole part less one) and the fraction past.
template <int Lanes>
[[gnu::always_inline]] inline void placeEdge(FloatVector<Lanes> edge, IntVector<Lanes>& cell,
                                             FloatVector<Lanes>& weight) {
    const FloatVector<Lanes> whole = roundDown<Lanes>(edge);
    weight = edge - whole;
    cell = __builtin_convertvector(whole, IntVector<Lanes>) - 1;
}

// The rectangle of the table's cells, in frame coordinates, as the box edges are limited to it.
struct TableEdges {
    float left, lastColumn, top, lastRow;
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
    Boxes<Lanes> boxes;
    boxes.inverseArea = 1.0f / ((bottom - top) * (right - left));
    placeEdge<Lanes>(left, boxes.left, boxes.leftWeight);
    placeEdge<Lanes>(right, boxes.right, boxes.rightWeight);
    placeEdge<Lanes>(top, boxes.top, boxes.topWeight);
    placeEdge<Lanes>(bottom, boxes.bottom, boxes.bottomWeight);
    return boxes;
}

// The pixels whose boxes lie within the table, with every cell their corners read, whatever the map
// says: those at least the largest half width from its edges, plus the cell read before the near edges
// and after the far ones, and one more against rounding. None when the radius or the table's place is
// beyond where floats keep whole pixels apart.
PixelRect uncheckedPixels(const PixelRect& table, float radiusX) {
    const float reach = std::fabs(radiusX);
    constexpr int32_t kExact = 1 << 22;
    const auto exact = [](int32_t v) { return v > -kExact && v < kExact; };
    if (!(reach < 0x1p20f) || !exact(table.left) || !exact(table.top) || !exact(table.right) ||
        !exact(table.bottom)) {
        return PixelRect::empty();
    }
    const auto margin = static_cast<int32_t>(std::ceil(reach)) + 2;
    return {table.left + margin, table.top + margin, table.right - margin, table.bottom - margin};
}

template <class Layout, int Lanes>
class BoxMeans {
public:
    using T = typename Layout::Component;
    using F = FloatVector<Lanes>;

    BoxMeans(const ImageBuffer& output, const ImageBuffer& table, const ImageBuffer& map, float radiusX,
             bool invert)
        : out_(ImageView<T>::of(output)),
          map_(ImageView<T>::of(map)),
          cells_{table.pixels(), table.rowStride(), table.rect.width(), table.rect.height()},
          edges_{static_cast<float>(table.rect.left), static_cast<float>(table.rect.right - 1),
                 static_cast<float>(table.rect.top), static_cast<float>(table.rect.bottom - 1)},
          radiusX_(radiusX),
          invert_(invert) {}

    // Pixels `begin` to `end` of row `y`; `mapped` when the map has them all, else it reads as zero there.
    template <bool Checked>
    void run(int32_t y, int32_t begin, int32_t end, bool mapped) const {
        T* out = out_.at(begin, y);
        for (int32_t x = begin; x < end; x += Lanes) {
            const int count = std::min<int32_t>(Lanes, end - x);
            const F h = halfWidths(mapped ? luminances(x, y, count) : F{});
            const Boxes<Lanes> b = boxesOf<Lanes>(h, columnsFrom(x), static_cast<float>(y), edges_);
            for (int k = 0; k < count; ++k, out += 4) {
                const auto corner = [&](int32_t column, float columnWeight, int32_t row, float rowWeight) {
                    return cells_.corner<Checked>(column, columnWeight, row, rowWeight);
                };
                const FloatVector<4> sum =
                    corner(b.right[k], b.rightWeight[k], b.bottom[k], b.bottomWeight[k]) -
                    corner(b.left[k], b.leftWeight[k], b.bottom[k], b.bottomWeight[k]) -
                    corner(b.right[k], b.rightWeight[k], b.top[k], b.topWeight[k]) +
                    corner(b.left[k], b.leftWeight[k], b.top[k], b.topWeight[k]);
                storeStored<4>(out, clampedStored<T, 4>(sum * b.inverseArea[k]));
            }
        }
    }

    const ImageView<T>& map() const { return map_; }

private:
    static F columnsFrom(int32_t x) {
        IntVector<Lanes> columns;
        for (int k = 0; k < Lanes; ++k)
            columns[k] = x + k;
        return __builtin_convertvector(columns, F);
    }

    // The map's luminance at `count` pixels from (x, y), as fractions of white.
    F luminances(int32_t x, int32_t y, int count) const {
        const T* pixels = map_.at(x, y);
        T padded[4 * Lanes] = {};
        if (count < Lanes) {
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
    TableCells cells_;
    TableEdges edges_;
    float radiusX_;
    bool invert_;
};

}  // namespace

void compoundBlurBand(ImageBuffer& output, const ImageBuffer& table, const ImageBuffer& map,
                      const PixelRect& band, CpuFeatures features, Progress& progress, float radiusX,
                      bool invert) {
    const PixelRect unchecked = uncheckedPixels(table.rect, radiusX);
    dispatchKernel(output, features, [&](auto layout, auto isa) {
        const BoxMeans<decltype(layout), kPixelLanes<decltype(isa)>> means(output, table, map, radiusX,
                                                                           invert);
        const PixelRect mapped = means.map().hasPixels() ? means.map().rect : PixelRect::empty();
        forEachRow(band, progress, [&](int32_t y) {
            const bool fastRow = y >= unchecked.top && y < unchecked.bottom;
            // Pixels near the table's edges take the checked reads, the rest the unchecked ones.
            const auto span = [&](int32_t begin, int32_t end, bool hasMap) {
                if (!fastRow) return means.template run<true>(y, begin, end, hasMap);
                const int32_t fastBegin = std::clamp(unchecked.left, begin, end);
                const int32_t fastEnd = std::clamp(unchecked.right, fastBegin, end);
                means.template run<true>(y, begin, fastBegin, hasMap);
                means.template run<false>(y, fastBegin, fastEnd, hasMap);
                means.template run<true>(y, fastEnd, end, hasMap);
            };
            forEachInputSpan(
                band, y, mapped, [&](int32_t begin, int32_t end) { span(begin, end, true); },
                [&](int32_t begin, int32_t end) { span(begin, end, false); });
        });
    });
}

}  // namespace Tw::Image
