// The line algorithm of the minimum and maximum filter: the extreme over a window of 2r + 1 positions
// at every position of a line, at a cost per position that does not depend on r (van Herk; Gil and
// Werman).
//
// A "position" holds one vector: one pixel, several pixels side by side, or the same pixel of several
// rows. The algorithm never looks inside it, so one instance filters many lines at once, lane by lane.
//
// Positions outside the input's valid range [lo, hi) are left out of a window: a window reaching past
// the end of the line is simply smaller, so that the border never bleeds in a colour of its own.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Tw::Image {

// Positions along a line in memory: position p lies (p - origin) * stride bytes from `first`.
template <class V, class Byte>
struct LineOf {
    Byte* first;
    std::ptrdiff_t stride;
    int origin;

    [[gnu::always_inline]] V load(int p) const {
        V v;
        std::memcpy(&v, first + static_cast<std::ptrdiff_t>(p - origin) * stride, sizeof v);
        return v;
    }
    [[gnu::always_inline]] void store(int p, V v) const {
        std::memcpy(first + static_cast<std::ptrdiff_t>(p - origin) * stride, &v, sizeof v);
    }
};

// What the windows of one line reach, worked out once for every line of a pass.
struct LineSpan {
    // The valid input positions.
    int lo = 0, hi = 0;
    // Output positions [begin, end) have a valid position within their window; the others have none and
    // become transparent black. When begin >= end there is nothing to compute.
    int begin = 0, end = 0;
    // Input positions [readBegin, readEnd) are all that the windows read.
    int readBegin = 0, readEnd = 0;
    // The radius, reduced to what covers the whole valid range from every output, so that a radius far
    // larger than the image costs no more than the image and the window buffer stays small.
    int radius = 0;

    // Output positions [outBegin, outEnd), valid input positions [lo, hi), a radius of `r`.
    static LineSpan of(int outBegin, int outEnd, int lo, int hi, int64_t r) {
        LineSpan span;
        if (lo >= hi) return span;
        span.lo = lo;
        span.hi = hi;
        span.begin = static_cast<int>(std::max<int64_t>(outBegin, lo - r));
        span.end = static_cast<int>(std::min<int64_t>(outEnd, hi + r));
        if (span.begin >= span.end) return span;
        span.radius =
            static_cast<int>(std::min<int64_t>(r, std::max(span.end - 1 - lo, hi - 1 - span.begin)));
        span.readBegin = std::max(lo, span.begin - span.radius);
        span.readEnd = std::min(hi, span.end + span.radius);
        return span;
    }
    bool isEmpty() const { return begin >= end; }
    // Outputs per block of the line algorithm, and the window slots it needs.
    int windowSize() const { return 2 * radius + 1; }
};

// Writes at the outputs of the block starting at x0 (up to span.windowSize() of them, no further than
// span.end) the Op-extreme of the valid input positions within span.radius of each. Input positions must
// cover span.readBegin..span.readEnd - 1; `window` holds span.windowSize() vectors and is scratch.
//
// For the block starting at x0, with centre c = x0 + r, a backward run from c stores in window[k] the
// extreme of positions c - k .. c, and a forward run from c keeps in u the extreme of c .. c + k; output
// x0 + k, whose window is x0 + k - r .. x0 + k + r, is then the extreme of u and window[2r - k]. Both runs
// start from a seed, the centre or, past the end of the line, the last valid position: a value that lies
// in every window of the block, so that an empty part of a run needs no value of its own.
template <class Op, class V, class In, class Out>
[[gnu::always_inline]] inline void windowBlock(const In& in, const Out& out, const LineSpan& span, int x0,
                                               V* window) {
    const int r = span.radius;
    const int w = 2 * r + 1;
    const int c = x0 + r;
    const V seed = in.load(std::min(c, span.hi - 1));

    // Backward: positions c - k beyond the line's end, then the valid ones, then those before its start.
    const int firstInside = std::max(0, c - (span.hi - 1));
    const int lastInside = std::min(2 * r, c - span.lo);
    int k = 0;
    for (; k < firstInside; ++k)
        window[k] = seed;
    V v = seed;
    for (; k <= lastInside; ++k) {
        v = Op::combine(v, in.load(c - k));
        window[k] = v;
    }
    for (; k < w; ++k)
        window[k] = v;

    // Forward: the valid positions c + k, then those beyond the line's end.
    const int count = std::min(w, span.end - x0);
    const int inside = std::min(count, span.hi - c);
    V u = seed;
    for (k = 0; k < inside; ++k) {
        u = Op::combine(u, in.load(c + k));
        out.store(x0 + k, Op::combine(u, window[2 * r - k]));
    }
    for (; k < count; ++k)
        out.store(x0 + k, Op::combine(u, window[2 * r - k]));
}

// Every output of `span`, block by block.
template <class Op, class V, class In, class Out>
[[gnu::always_inline]] inline void windowExtremes(const In& in, const Out& out, const LineSpan& span,
                                                  V* window) {
    for (int x0 = span.begin; x0 < span.end; x0 += span.windowSize())
        windowBlock<Op>(in, out, span, x0, window);
}

}  // namespace Tw::Image
