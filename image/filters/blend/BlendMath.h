// Lane-wise helpers of the blend modes' colour functions, for float vectors of any width: minimum and
// maximum, and the burn and dodge that several modes share.
#pragma once

#include "image/graph/PixelVector.h"

namespace Tw::Image::BlendMath {

template <class F>
inline constexpr int kLanes = static_cast<int>(sizeof(F) / sizeof(float));

// Tw::Image::min and max, whose choice where a NaN or a signed zero meets another value is part of the
// result.
template <class F>
[[gnu::always_inline]] inline F minimum(F a, F b) {
    return min<kLanes<F>>(a, b);
}
template <class F>
[[gnu::always_inline]] inline F maximum(F a, F b) {
    return max<kLanes<F>>(a, b);
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
    return t >= 1.0f ? t : minimum(F{} + 1.0f, b / (1.0f - t));
}

// A burn by twice the top below a half, a dodge by twice its excess over a half above.
template <class F>
[[gnu::always_inline]] inline F vividLight(F b, F t) {
    return 0.5f > t ? burn(b, 2.0f * t) : dodge(b, 2.0f * (t - 0.5f));
}

}  // namespace Tw::Image::BlendMath
