// Elementary functions on float vectors, in place of the C library's in kernels: base-2 logarithm, power
// of two, power, exponential, cube root, square root, arc tangent of a quotient, sine and cosine. They are
// the same operations in every processor variant, so all give the same bits, within a few units in the
// last place of the C library's functions.
#pragma once

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstddef>

#include "image/graph/PixelVector.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

namespace Detail {

// Estrin's scheme on coefficients that are vectors already: neighbouring terms pair up as c x + d, and
// the pairs form a polynomial of half the degree in x^2. Its chain of dependent operations grows with the
// logarithm of the degree rather than with the degree, as Horner's rule's does.
template <int Lanes, std::size_t N>
[[gnu::always_inline]] inline FloatVector<Lanes> estrin(FloatVector<Lanes> x,
                                                        const FloatVector<Lanes> (&c)[N]) {
    if constexpr (N == 1) {
        return c[0];
    } else {
        constexpr std::size_t kPairs = (N + 1) / 2;
        FloatVector<Lanes> pairs[kPairs];
        // Pairs are taken from the constant term up, so an odd leading coefficient stands alone.
#pragma GCC unroll 8
        for (std::size_t j = 0; j < N / 2; ++j)
            pairs[kPairs - 1 - j] = c[N - 2 - 2 * j] * x + c[N - 1 - 2 * j];
        if constexpr (N % 2 == 1) pairs[0] = c[0];
        return estrin<Lanes, kPairs>(x * x, pairs);
    }
}

}  // namespace Detail

// c[0] x^(N-1) + c[1] x^(N-2) + ... + c[N-1]. The terms above the constant are summed by Estrin's scheme
// and the constant is added last, as Horner's rule adds it: where the constant term dominates, as in the
// series below, the result then takes a single rounding at its own scale.
template <int Lanes, std::size_t N>
[[gnu::always_inline]] inline FloatVector<Lanes> polynomial(FloatVector<Lanes> x, const float (&c)[N]) {
    static_assert(N >= 2);
    FloatVector<Lanes> coefficients[N - 1];
#pragma GCC unroll 16
    for (std::size_t i = 0; i + 1 < N; ++i)
        coefficients[i] = FloatVector<Lanes>{} + c[i];
    return Detail::estrin<Lanes, N - 1>(x, coefficients) * x + c[N - 1];
}

namespace Detail {

// log2(x) for normal x > 0 in two parts: a whole number, and the rest, within 1/2 of 0, as a multiple
// of 2 / ln 2 (so that a caller can fold a factor of its own into that constant).
template <int Lanes>
[[gnu::always_inline]] inline void logarithm2Parts(FloatVector<Lanes> x, FloatVector<Lanes>& whole,
                                                   FloatVector<Lanes>& rest) {
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
    const F series = polynomial<Lanes>(t2, {1.0f / 7.0f, 1.0f / 5.0f, 1.0f / 3.0f, 1.0f});
    whole = __builtin_convertvector(exponent, F);
    rest = t * series;
}

// 2^f * 2^n for f in [-1/2, 1/2] and a whole n from -126 to 127.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> scaledPower2(FloatVector<Lanes> f, FloatVector<Lanes> n) {
    using F = FloatVector<Lanes>;
    using I = IntVector<Lanes>;
    // 2^f = e^(f ln 2): the Taylor series to the sixth power, within 1.3e-7 on this interval.
    const F p =
        polynomial<Lanes>(f, {1.5403530393381606e-4f, 1.3333558146428443e-3f, 9.6181291076284772e-3f,
                              5.5504108664821580e-2f, 2.4022650695910071e-1f, 6.9314718055994531e-1f, 1.0f});
    return p * std::bit_cast<F>((__builtin_convertvector(n, I) + 127) << 23);
}

}  // namespace Detail

// log2(x) for normal x > 0.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> logarithm2(FloatVector<Lanes> x) {
    FloatVector<Lanes> whole, rest;
    Detail::logarithm2Parts<Lanes>(x, whole, rest);
    return whole + rest * 2.88539008177792681f;
}

// 2^y, with y limited to where the result is a normal float.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> power2(FloatVector<Lanes> y) {
    using F = FloatVector<Lanes>;
    y = min<Lanes>(max<Lanes>(y, F{} - 126.0f), F{} + 127.0f);
    const F n = roundToNearestEven<Lanes>(y);
    return Detail::scaledPower2<Lanes>(y - n, n);
}

// x to the power y, with x raised to the smallest normal float first: 0 and negative values give a tiny
// positive result rather than 0 or NaN. Results beyond the floats' range stop short of 0 and infinity.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> power(FloatVector<Lanes> x, float y) {
    using F = FloatVector<Lanes>;
    F whole, rest;
    Detail::logarithm2Parts<Lanes>(max<Lanes>(x, F{} + FLT_MIN), whole, rest);
    // y * log2(x) as a whole number n and a fraction f: rounded as one float, the product would lose bits
    // of the fraction to the whole part. n comes from the product as a float; f is worked out with y in
    // two halves of 12 bits, each of which times the exponent (at most 8 bits) is exact, and so is their
    // difference from n.
    const float yHigh = std::bit_cast<float>(std::bit_cast<uint32_t>(y) & 0xfffff000u);
    const float yLow = y - yHigh;
    const F restTimesY = rest * (2.88539008177792681f * y);
    const F n = roundToNearestEven<Lanes>(whole * y + restTimesY);
    const F f = ((whole * yHigh - n) + whole * yLow) + restTimesY;
    return Detail::scaledPower2<Lanes>(f, min<Lanes>(max<Lanes>(n, F{} - 126.0f), F{} + 127.0f));
}

// e^x. Below about -103 the result is 0; results under the smallest normal float come out as the
// subnormals they are, and above about 88.7 as infinity.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> exponential(FloatVector<Lanes> x) {
    using F = FloatVector<Lanes>;
    using I = IntVector<Lanes>;
    x = min<Lanes>(max<Lanes>(x, F{} - 104.0f), F{} + 89.0f);
    const F n = roundToNearestEven<Lanes>(x * 1.44269504088896341f);
    // r = x - n ln 2, within ln 2 / 2 of 0. The first part of ln 2 has so few bits that n times it is
    // exact, and so is its difference from x, which lies close to it.
    F r = x - n * 0.693359375f;
    r = r - n * -2.12194440e-4f;
    // e^r: the polynomial of the Cephes library's expf.
    const F p = polynomial<Lanes>(r, {1.9875691500e-4f, 1.3981999507e-3f, 8.3334519073e-3f, 4.1665795894e-2f,
                                      1.6666665459e-1f, 5.0000001201e-1f}) *
                    (r * r) +
                r + 1.0f;
    // Times 2^n as two powers of two, each a normal float, so that a result below the normal range is
    // rounded once, by the last multiplication.
    const I k = __builtin_convertvector(n, I);
    const I half = k >> 1;
    return p * std::bit_cast<F>((half + 127) << 23) * std::bit_cast<F>((k - half + 127) << 23);
}

// The cube root of x for x a positive normal float or infinity.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> cubeRoot(FloatVector<Lanes> x) {
    using F = FloatVector<Lanes>;
    using I = IntVector<Lanes>;
    const I bits = std::bit_cast<I>(x);
    // x = m * 2^e with m in [1, 2), and e = 3q + r with r in 0..2. The division by 3 is a multiplication:
    // 21846 / 65536 exceeds 1/3 by too little to change the whole part of the small numbers here.
    const I e = ((bits >> 23) & 0xff) - 127;
    const I q = (((e + 381) * 21846) >> 16) - 127;
    const I r = e - q * 3;
    const F m = std::bit_cast<F>((bits & 0x007fffff) | 0x3f800000);
    // The cube root of m to within 1e-4: a Chebyshev fit of degree 3 on [1, 2].
    F y = polynomial<Lanes>(m, {0.0221486992f, -0.158662460f, 0.580826391f, 0.555790960f});
    y = r == 1 ? y * 1.25992105f : r == 2 ? y * 1.58740105f : y;
    y = y * std::bit_cast<F>((q + 127) << 23);
    // One Newton step squares the relative error, to below the float's own.
    return y + (x / (y * y) - y) * (1.0f / 3.0f);
}

// The correctly rounded square root of every lane. Kernels are built without errno, where g++ makes this
// one instruction.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> squareRoot(FloatVector<Lanes> x) {
    for (std::size_t lane = 0; lane < Lanes; ++lane)
        x[lane] = std::sqrt(x[lane]);
    return x;
}

// atan2(y, x): the angle of the point (x, y) in -pi..pi, with the C library's answers for zeros of either
// sign; (0, 0) gives 0.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> arcTangent2(FloatVector<Lanes> y, FloatVector<Lanes> x) {
    using F = FloatVector<Lanes>;
    using I = IntVector<Lanes>;
    constexpr int32_t kSign = INT32_MIN;
    const F ax = absolute<Lanes>(x);
    const F ay = absolute<Lanes>(y);
    // The angle of the smaller over the larger coordinate lies in 0..pi/4; above tan(pi/8) it is taken
    // as pi/4 + atan((z - 1) / (z + 1)), so that the polynomial only sees |z| up to tan(pi/8).
    const I steep = ay > ax;
    const F smaller = steep ? ax : ay;
    const F larger = steep ? ay : ax;
    const I upper = smaller > larger * 0.414213562f;
    F z = (upper ? smaller - larger : smaller) / (upper ? smaller + larger : larger);
    z = larger == 0.0f ? F{} : z;
    // atan(z): the polynomial of the Cephes library's atanf.
    const F z2 = z * z;
    const F p =
        polynomial<Lanes>(z2, {8.05374449538e-2f, -1.38776856032e-1f, 1.99777106478e-1f, -3.33329491539e-1f});
    F angle = p * z2 * z + z;
    angle = upper ? angle + 0.785398163f : angle;
    angle = steep ? 1.57079633f - angle : angle;
    angle = (std::bit_cast<I>(x) & kSign) != 0 ? 3.14159265f - angle : angle;
    return std::bit_cast<F>(std::bit_cast<I>(angle) | (std::bit_cast<I>(y) & kSign));
}

// sin x and cos x, for |x| up to some thousands.
template <int Lanes>
[[gnu::always_inline]] inline void sineCosine(FloatVector<Lanes> x, FloatVector<Lanes>& sine,
                                              FloatVector<Lanes>& cosine) {
    using F = FloatVector<Lanes>;
    using I = IntVector<Lanes>;
    // r = x - n pi/2, within pi/4 of 0, with pi/2 in three parts as the Cephes library splits it: n times
    // each of the first two is exact.
    const F n = roundToNearestEven<Lanes>(x * 0.636619772f);
    F r = x - n * 1.5703125f;
    r = r - n * 4.837512969970703125e-4f;
    r = r - n * 7.54978995489188216e-8f;
    const F r2 = r * r;
    // The polynomials of the Cephes library's sinf and cosf.
    const F s = polynomial<Lanes>(r2, {-1.9515295891e-4f, 8.3321608736e-3f, -1.6666654611e-1f}) * r2 * r + r;
    const F c =
        polynomial<Lanes>(r2, {2.443315711809948e-5f, -1.388731625493765e-3f, 4.166664568298827e-2f}) * r2 *
            r2 -
        r2 * 0.5f + 1.0f;
    // The quarter turn n mod 4 swaps the two and sets their signs.
    const I quarter = __builtin_convertvector(n, I) & 3;
    const I swapped = (quarter & 1) != 0;
    const F sinePart = swapped ? c : s;
    const F cosinePart = swapped ? s : c;
    sine = (quarter & 2) != 0 ? -sinePart : sinePart;
    cosine = ((quarter + 1) & 2) != 0 ? -cosinePart : cosinePart;
}

}  // namespace Tw::Image
