// Lane-wise helpers of the blend modes' colour functions, for float vectors of any width. `lower`,
// `upper` and `magnitude` are min, max and fabs as the modes are written; burn and dodge are shared by
// several modes.
#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace Tw::Image::BlendMath {

template <class F>
[[gnu::always_inline]] inline F lower(F a, F b) {
    return a > b ? b : a;
}

template <class F>
[[gnu::always_inline]] inline F upper(F a, F b) {
    return a < b ? b : a;
}

// The sign bit cleared.
template <class F>
[[gnu::always_inline]] inline F magnitude(F v) {
    using Bits = decltype(v < v);
    return std::bit_cast<F>(std::bit_cast<Bits>(v) & 0x7fffffff);
}

template <class F>
[[gnu::always_inline]] inline F squareRoot(F v) {
    for (std::size_t lane = 0; lane < sizeof(F) / sizeof(float); ++lane)
        v[lane] = std::sqrt(v[lane]);
    return v;
}

// The burn of b by t: a top at or below 0 stands for the result as it is.
template <class F>
[[gnu::always_inline]] inline F burn(F b, F t) {
    const F q = (1.0f - b) / t;
    return t <= 0.0f ? t : q > 1.0f ? F{} : 1.0f - q;
}

// The dodge of b by t: a top at or above 1 stands for the result as it is.
template <class F>
[[gnu::always_inline]] inline F dodge(F b, F t) {
    return t >= 1.0f ? t : lower(F{} + 1.0f, b / (1.0f - t));
}

// A burn by twice the top below a half, a dodge by twice its excess over a half above.
template <class F>
[[gnu::always_inline]] inline F vividLight(F b, F t) {
    return 0.5f > t ? burn(b, 2.0f * t) : dodge(b, 2.0f * (t - 0.5f));
}

}  // namespace Tw::Image::BlendMath
