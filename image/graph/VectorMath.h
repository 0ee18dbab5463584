// Base-2 logarithm, power of two and power on float vectors, in place of powf in kernels: the same
// operations in every processor variant, so all give the same bits, within a few units in the last place
// of powf. And the square root, correctly rounded everywhere.
#pragma once

#include <bit>
#include <cfloat>
#include <cmath>

#include "image/graph/PixelVector.h"

namespace Tw::Image {

// log2(x) for normal x > 0.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> logarithm2(FloatVector<Lanes> x) {
    using F = FloatVector<Lanes>;
    using I = IntVector<Lanes>;
    const I bits = std::bit_cast<I>(x);
    // x = m * 2^e with m in [1, 2), then m moved to [sqrt(1/2), sqrt(2)) so that t below stays small.
    I exponent = ((bits >> 23) & 0xff) - 127;
    F m = std::bit_cast<F>((bits & 0x007fffff) | 0x3f800000);
    const I large = m > 1.41421356f;  // comparison lanes are -1 where true
    m = large ? m * 0.5f : m;
    exponent -= large;
    // log2(m) = 2 / ln 2 * atanh(t), t = (m - 1) / (m + 1), |t| < 0.172: four terms of the odd series.
    const F t = (m - 1.0f) / (m + 1.0f);
    const F t2 = t * t;
    F series = F{} + 1.0f / 7.0f;
    series = series * t2 + 1.0f / 5.0f;
    series = series * t2 + 1.0f / 3.0f;
    series = series * t2 + 1.0f;
    return __builtin_convertvector(exponent, F) + t * series * 2.88539008177792681f;
}

// 2^y, with y limited to where the result is a normal float.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> power2(FloatVector<Lanes> y) {
    using F = FloatVector<Lanes>;
    using I = IntVector<Lanes>;
    y = min<Lanes>(max<Lanes>(y, F{} - 126.0f), F{} + 127.0f);
    const F n = roundToNearestEven<Lanes>(y);
    const F f = y - n;  // in [-1/2, 1/2]
    // 2^f = e^(f ln 2): the Taylor series to the sixth power, within 1.3e-7 on this interval.
    F p = F{} + 1.5403530393381606e-4f;
    p = p * f + 1.3333558146428443e-3f;
    p = p * f + 9.6181291076284772e-3f;
    p = p * f + 5.5504108664821580e-2f;
    p = p * f + 2.4022650695910071e-1f;
    p = p * f + 6.9314718055994531e-1f;
    p = p * f + 1.0f;
    return p * std::bit_cast<F>((__builtin_convertvector(n, I) + 127) << 23);
}

// x to the power y, with x raised to the smallest normal float first: 0 and negative values give a tiny
// positive result rather than 0 or NaN.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> power(FloatVector<Lanes> x, float y) {
    return power2<Lanes>(logarithm2<Lanes>(max<Lanes>(x, FloatVector<Lanes>{} + FLT_MIN)) * y);
}

// The square root of each lane, as sqrtf gives it: one instruction for the whole vector where the
// kernel is built without errno (tw_filters is), since the processor's root is correctly rounded too.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> squareRoot(FloatVector<Lanes> v) {
    for (int lane = 0; lane < Lanes; ++lane)
        v[lane] = std::sqrt(v[lane]);
    return v;
}

}  // namespace Tw::Image
