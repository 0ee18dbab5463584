// Display-encoded sRGB to CIE L*a*b* and back, on float vectors of one colour component each, as the
// colour filters compute it: white D65 (95.047, 100, 108.883), linear values times 100 in XYZ, and the
// cube root and the linear toe of L*a*b* switching at 0.008856. Each step is written in the order of its
// operations, so that every filter that converts gets the same bits from the same colour.
#pragma once

#include "image/graph/PixelVector.h"
#include "image/graph/VectorMath.h"

namespace Tw::Image {

// A correction in L*a*b*: a turn of the hue (a fraction of a turn), and multipliers of chroma and
// lightness.
struct LabCorrection {
    float hue = 0;
    float chroma = 1;
    float lightness = 1;

    bool isIdentity() const { return hue == 0.0f && chroma == 1.0f && lightness == 1.0f; }
    friend bool operator==(const LabCorrection&, const LabCorrection&) = default;
};

template <int Lanes>
struct RgbVectors {
    FloatVector<Lanes> red, green, blue;
};

// L* in 0..100 and a*, b* as the formulas give them, not scaled.
template <int Lanes>
struct LabVectors {
    FloatVector<Lanes> lightness, a, b;
};

namespace Detail {

// One display-encoded component as linear light, times 100. The test against 0.04045 gives the same
// answers made in double precision: 0.04045f lies just below 0.04045, the next float above it.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> linearTimes100(FloatVector<Lanes> v) {
    // Each lane makes the one division its branch needs.
    const auto onCurve = v > 0.04045f;
    const FloatVector<Lanes> q = (onCurve ? v + 0.055f : v) / (onCurve ? 1.055f : 12.92f);
    return (onCurve ? power<Lanes>(q, 2.4f) : q) * 100.0f;
}

template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> labCurve(FloatVector<Lanes> t) {
    return t > 0.008856f ? cubeRoot<Lanes>(t) : 7.787f * t + 0.13793103f;
}

// The inverse of labCurve, with its switch tested on f^3.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> inverseLabCurve(FloatVector<Lanes> f) {
    const FloatVector<Lanes> cube = f * f * f;
    return cube > 0.008856f ? cube : (f - 0.13793103f) / 7.787f;
}

// The display encoding of a linear component. v^(5/12) is taken as cbrt(v) * cbrt(v)^(1/4), a cube root
// and two square roots, which cost less than a power: within 3.5 units in the last place of the power
// itself.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> encoded(FloatVector<Lanes> v) {
    const FloatVector<Lanes> root = cubeRoot<Lanes>(v);
    const FloatVector<Lanes> curve = root * squareRoot<Lanes>(squareRoot<Lanes>(root));
    return v > 0.0031308f ? 1.055f * curve - 0.055f : 12.92f * v;
}

}  // namespace Detail

// The ratios X/Xn, Y/Yn, Z/Zn after the L*a*b* curve, as L*, a*, b*.
template <int Lanes>
[[gnu::always_inline]] inline LabVectors<Lanes> labFromCurves(FloatVector<Lanes> fx, FloatVector<Lanes> fy,
                                                              FloatVector<Lanes> fz) {
    return {116.0f * fy - 16.0f, 500.0f * (fx - fy), 200.0f * (fy - fz)};
}

// Components in 0..1 of white, not limited; `Blocks` colours side by side, each step over all of them
// before the next, so that the processor overlaps their chains of dependent operations.
template <int Lanes, int Blocks>
[[gnu::always_inline]] inline void labFromEncoded(const RgbVectors<Lanes> (&colours)[Blocks],
                                                  LabVectors<Lanes> (&lab)[Blocks]) {
    FloatVector<Lanes> linear[Blocks][3];
    for (int k = 0; k < Blocks; ++k) {
        linear[k][0] = Detail::linearTimes100<Lanes>(colours[k].red);
        linear[k][1] = Detail::linearTimes100<Lanes>(colours[k].green);
        linear[k][2] = Detail::linearTimes100<Lanes>(colours[k].blue);
    }
    for (int k = 0; k < Blocks; ++k) {
        const auto [r, g, b] = linear[k];
        const auto x = (0.4124f * r + 0.3576f * g) + 0.1805f * b;
        const auto y = (0.2126f * r + 0.7152f * g) + 0.0722f * b;
        const auto z = (0.0193f * r + 0.1192f * g) + 0.9505f * b;
        lab[k] =
            labFromCurves<Lanes>(Detail::labCurve<Lanes>(x / 95.047f), Detail::labCurve<Lanes>(y / 100.0f),
                                 Detail::labCurve<Lanes>(z / 108.883f));
    }
}

template <int Lanes>
[[gnu::always_inline]] inline LabVectors<Lanes> labFromEncoded(const RgbVectors<Lanes>& colour) {
    LabVectors<Lanes> lab[1];
    labFromEncoded<Lanes, 1>({colour}, lab);
    return lab[0];
}

// Back to display-encoded components, not limited, `Blocks` colours side by side. `YThroughHundred`
// takes Y through its scale of 100 and back, as X and Z are, which can move it by a unit in the last
// place; without it Y is used as the curve gives it.
template <int Lanes, bool YThroughHundred, int Blocks>
[[gnu::always_inline]] inline void encodedFromLab(const LabVectors<Lanes> (&lab)[Blocks],
                                                  RgbVectors<Lanes> (&colours)[Blocks]) {
    FloatVector<Lanes> linear[Blocks][3];
    for (int k = 0; k < Blocks; ++k) {
        const auto fy = (lab[k].lightness + 16.0f) / 116.0f;
        const auto fx = lab[k].a / 500.0f + fy;
        const auto fz = fy - lab[k].b / 200.0f;
        const auto x = Detail::inverseLabCurve<Lanes>(fx) * 95.047f / 100.0f;
        auto y = Detail::inverseLabCurve<Lanes>(fy);
        if constexpr (YThroughHundred) y = y * 100.0f / 100.0f;
        const auto z = Detail::inverseLabCurve<Lanes>(fz) * 108.883f / 100.0f;
        linear[k][0] = 3.2406f * x - 1.5372f * y - 0.4986f * z;
        linear[k][1] = -0.9689f * x + 1.8758f * y + 0.0415f * z;
        linear[k][2] = 0.0557f * x - 0.204f * y + 1.057f * z;
    }
    for (int k = 0; k < Blocks; ++k) {
        colours[k] = {Detail::encoded<Lanes>(linear[k][0]), Detail::encoded<Lanes>(linear[k][1]),
                      Detail::encoded<Lanes>(linear[k][2])};
    }
}

}  // namespace Tw::Image
