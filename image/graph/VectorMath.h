// Logarithm, exponential and power on float vectors, in the single-precision polynomial forms of the
// Cephes library. They replace powf in kernels so that every processor variant gives the same bits.
#pragma once

#include <bit>
#include <cfloat>

#include "image/graph/PixelVector.h"

namespace Tw::Image {

// Natural logarithm for x > 0 (normal floats).
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> logarithm(FloatVector<Lanes> x) {
    using F = FloatVector<Lanes>;
    using I = IntVector<Lanes>;
    const I bits = std::bit_cast<I>(x);
    // x = m * 2^e with m in [0.5, 1); then m is moved to [sqrt(1/2), sqrt(2)) for the polynomial.
    I exponent = ((bits >> 23) & 0xff) - 126;
    const F mantissa = std::bit_cast<F>((bits & 0x807fffff) | 0x3f000000);
    const I small = mantissa < 0.707106781186547524f;
    exponent += small;  // comparison lanes are -1 where true
    const F m = (small ? mantissa + mantissa : mantissa) - 1.0f;
    const F e = __builtin_convertvector(exponent, F);
    const F z = m * m;
    F y = F{} + 7.0376836292E-2f;
    y = y * m - 1.1514610310E-1f;
    y = y * m + 1.1676998740E-1f;
    y = y * m - 1.2420140846E-1f;
    y = y * m + 1.4249322787E-1f;
    y = y * m - 1.6668057665E-1f;
    y = y * m + 2.0000714765E-1f;
    y = y * m - 2.4999993993E-1f;
    y = y * m + 3.3333331174E-1f;
    y = y * m * z;
    y = y + -2.12194440e-4f * e;
    y = y - 0.5f * z;
    return m + y + 0.693359375f * e;
}

// e to the x, with x limited to where the result is a normal float.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> exponential(FloatVector<Lanes> x) {
    using F = FloatVector<Lanes>;
    using I = IntVector<Lanes>;
    x = min<Lanes>(max<Lanes>(x, F{} - 87.3f), F{} + 88.0f);
    // x = n * ln 2 + r, with n = floor(x / ln 2 + 1/2).
    const F scaled = x * 1.44269504088896341f + 0.5f;
    F n = roundToNearestEven<Lanes>(scaled);
    n = n > scaled ? n - 1.0f : n;
    x = x - n * 0.693359375f;
    x = x - n * -2.12194440e-4f;
    const F z = x * x;
    F y = F{} + 1.9875691500E-4f;
    y = y * x + 1.3981999507E-3f;
    y = y * x + 8.3334519073E-3f;
    y = y * x + 4.1665795894E-2f;
    y = y * x + 1.6666665459E-1f;
    y = y * x + 5.0000001201E-1f;
    y = y * z + x + 1.0f;
    const I biased = __builtin_convertvector(n, I) + 127;
    return y * std::bit_cast<F>(biased << 23);
}

// x to the power y, with x raised to the smallest normal float first: 0 and negative values give a tiny
// positive result rather than 0 or NaN.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> power(FloatVector<Lanes> x, float y) {
    return exponential<Lanes>(logarithm<Lanes>(max<Lanes>(x, FloatVector<Lanes>{} + FLT_MIN)) * y);
}

}  // namespace Tw::Image
