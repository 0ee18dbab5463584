// The median of a 3 x 3 window as an exchange network: nothing but lane-wise minima and maxima, so that one
// vector instruction orders as many windows at once as the vector has lanes, whatever their element type.
//
// The window is taken as three columns of three. Each column is sorted first (three exchanges); the median
// of the nine is then the median of three values: the greatest of the columns' least, the median of their
// middles and the least of their greatest: ten operations on the three sorted columns.
//
// Ties need no care: a network of minima and maxima that gives the median of any nine zeros and ones
// gives the median of any nine values. Floats use the processors' minimum and maximum (PixelVector.h),
// so every variant agrees on NaNs and signed zeros as well.
#pragma once

#include <type_traits>

#include "image/graph/PixelVector.h"

namespace Tw::Image {

template <class V>
[[gnu::always_inline]] inline V lowerOf(V a, V b) {
    if constexpr (std::is_same_v<std::remove_cvref_t<decltype(a[0])>, float>) {
        return min<sizeof(V) / sizeof(float)>(a, b);
    } else {
        return a > b ? b : a;
    }
}

template <class V>
[[gnu::always_inline]] inline V higherOf(V a, V b) {
    if constexpr (std::is_same_v<std::remove_cvref_t<decltype(a[0])>, float>) {
        return max<sizeof(V) / sizeof(float)>(a, b);
    } else {
        return a < b ? b : a;
    }
}

// Puts the lower of each pair of lanes in `a` and the higher in `b`.
template <class V>
[[gnu::always_inline]] inline void exchange(V& a, V& b) {
    const V low = lowerOf(a, b);
    b = higherOf(a, b);
    a = low;
}

// One column of windows: N lanes of elements E, each lane's three values in order. (A vector type as a
// template argument would lose its vector attribute, hence the element type and the width.)
template <class E, int N>
struct SortedColumn {
    Vector<E, N> low, middle, high;
};

// Sorts each lane of the column above, at, below.
template <class E, int N>
[[gnu::always_inline]] inline SortedColumn<E, N> sortColumn(Vector<E, N> above, Vector<E, N> at,
                                                            Vector<E, N> below) {
    exchange(at, below);
    exchange(above, at);
    exchange(at, below);
    return {above, at, below};
}

template <class V>
[[gnu::always_inline]] inline V medianOfThree(V a, V b, V c) {
    return higherOf(lowerOf(a, b), lowerOf(higherOf(a, b), c));
}

// The median of the nine values of three neighbouring sorted columns, lane by lane.
template <class E, int N, class V = Vector<E, N>>
[[gnu::always_inline]] inline V medianOfColumns(const SortedColumn<E, N>& left,
                                                const SortedColumn<E, N>& centre,
                                                const SortedColumn<E, N>& right) {
    const V greatestLow = higherOf(higherOf(left.low, centre.low), right.low);
    const V leastHigh = lowerOf(lowerOf(left.high, centre.high), right.high);
    return medianOfThree(greatestLow, medianOfThree(left.middle, centre.middle, right.middle), leastHigh);
}

}  // namespace Tw::Image
