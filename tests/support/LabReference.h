// Display-encoded sRGB to CIE L*a*b* and back, from the formulas in double precision, for the tests of
// the colour filters. White D65; the sRGB curve; the matrices to four digits.
#pragma once

#include <cmath>

#include "tests/support/PixelRows.h"

namespace Tw::Test {

struct Lab {
    double lightness, a, b;
};

// Red, green and blue of `rgb` in 0..1 of white.
inline Lab labOf(const Pixel& rgb) {
    double linear[3];
    for (int c = 0; c < 3; ++c) {
        const double v = rgb[c];
        linear[c] = (v > 0.04045 ? std::pow((v + 0.055) / 1.055, 2.4) : v / 12.92) * 100;
    }
    const auto [r, g, b] = linear;
    const auto f = [](double t) { return t > 0.008856 ? std::cbrt(t) : 7.787 * t + 0.13793103; };
    const double fx = f((0.4124 * r + 0.3576 * g + 0.1805 * b) / 95.047);
    const double fy = f((0.2126 * r + 0.7152 * g + 0.0722 * b) / 100);
    const double fz = f((0.0193 * r + 0.1192 * g + 0.9505 * b) / 108.883);
    return {116 * fy - 16, 500 * (fx - fy), 200 * (fy - fz)};
}

// The colour of `lab`, not limited, with the alpha of `like`.
inline Pixel encodedOf(const Lab& lab, const Pixel& like) {
    const double fy = (lab.lightness + 16) / 116;
    const double f[3] = {lab.a / 500 + fy, fy, fy - lab.b / 200};
    double t[3];
    for (int i = 0; i < 3; ++i) {
        const double cube = f[i] * f[i] * f[i];
        t[i] = cube > 0.008856 ? cube : (f[i] - 0.13793103) / 7.787;
    }
    const double x = t[0] * 0.95047, y = t[1], z = t[2] * 1.08883;
    const double linear[3] = {3.2406 * x - 1.5372 * y - 0.4986 * z, -0.9689 * x + 1.8758 * y + 0.0415 * z,
                              0.0557 * x - 0.204 * y + 1.057 * z};
    Pixel out = like;
    for (int c = 0; c < 3; ++c)
        out[c] = linear[c] > 0.0031308 ? 1.055 * std::pow(linear[c], 0.41666666) - 0.055 : 12.92 * linear[c];
    return out;
}

}  // namespace Tw::Test
