// The coefficients of the recursive Gaussian along one axis: a fourth-order filter after Deriche, run
// forwards (n0..n3 over the input, d1..d4 over its own output) and backwards (m1..m4, the same d1..d4).
// Besides the recursion, a short sampled Gaussian (`weights`) estimates the value beyond an image edge.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace Tw::Image {

// What the recursion computes along an axis.
enum BlurKind : int32_t { Smoothing = 0, FirstDerivative = 1, SecondDerivative = 2 };

// The direction of the lines a pass runs along.
enum class BlurAxis { Rows, Columns };

struct GaussianBlurCoefficients {
    // A sampled Gaussian (or its derivative), normalised, for the edge estimate; its length is how far
    // the blur reaches, ceil(3.5 sigma).
    std::vector<double> weights;
    double n0 = 0, n1 = 0, n2 = 0, n3 = 0;
    double m1 = 0, m2 = 0, m3 = 0, m4 = 0;
    double d1 = 0, d2 = 0, d3 = 0, d4 = 0;
    // Makes the whole impulse response sum to 1 (in absolute value for the derivatives).
    double scale = 1;
    int32_t kind = Smoothing;
};

namespace Detail {

// Deriche's fitted constants for the Gaussian and its first two derivatives.
struct DericheConstants {
    double a0, a1, b0, b1, w0, w1, c0, c1;
};

inline constexpr DericheConstants kDericheConstants[] = {
    {1.68, 3.735, 1.783, 1.723, 0.6318, 1.997, -0.6803, -0.2598},
    {-0.6472, -4.531, 1.527, 1.516, 0.6719, 2.072, 0.6494, 0.9557},
    {-1.331, 3.661, 1.24, 1.314, 0.748, 2.166, 0.3225, -1.738},
};

// A unit impulse through the forward recursion: its first outputs, down to the first one too small to
// matter, summed in absolute value. The backward half mirrors the forward one and shares its first
// sample, hence twice the sum less n0.
inline double impulseResponseTotal(const GaussianBlurCoefficients& c) {
    double x1 = 0, x2 = 0, x3 = 0, y1 = 0, y2 = 0, y3 = 0, y4 = 0;
    double sum = 0;
    for (int n = 0; n < 1024; ++n) {
        const double x0 = n == 0 ? 1.0 : 0.0;
        const double y =
            c.n0 * x0 + c.n1 * x1 + c.n2 * x2 + c.n3 * x3 - c.d1 * y1 - c.d2 * y2 - c.d3 * y3 - c.d4 * y4;
        if (std::fabs(y) < 0.00001) break;
        sum += std::fabs(y);
        x3 = x2, x2 = x1, x1 = x0;
        y4 = y3, y3 = y2, y2 = y1, y1 = y;
    }
    return 2 * sum - c.n0;
}

inline std::vector<double> edgeWeights(double s, int32_t kind) {
    std::vector<double> weights(static_cast<std::size_t>(std::ceil(3.5 * s)));
    double sum = 0;
    for (std::size_t i = 0; i < weights.size(); ++i) {
        const double t = static_cast<double>(i) / s;
        const double g = std::exp(-0.5 * t * t);
        weights[i] = kind == Smoothing         ? g
                     : kind == FirstDerivative ? g * (-t / s)
                                               : g * (t * t - 1) / (s * s);
        sum += kind == Smoothing ? weights[i] : std::fabs(weights[i]);
    }
    if (sum > 0) {
        for (double& w : weights)
            w /= sum;
    }
    return weights;
}

}  // namespace Detail

// The coefficients for a standard deviation of `sigma` pixels. Sigmas below 0.001 count as 0.001, where
// the recursion is a copy; kinds beyond the three known ones take the nearest.
inline GaussianBlurCoefficients makeGaussianBlurCoefficients(double sigma, int32_t kind) {
    const double s = std::max(0.001, sigma);
    GaussianBlurCoefficients c;
    c.kind = std::clamp<int32_t>(kind, Smoothing, SecondDerivative);
    const auto [a0, a1, b0, b1, w0, w1, c0, c1] = Detail::kDericheConstants[c.kind];
    const double C0 = std::cos(w0 / s), S0 = std::sin(w0 / s);
    const double C1 = std::cos(w1 / s), S1 = std::sin(w1 / s);
    const double E0 = std::exp(-b0 / s), E1 = std::exp(-b1 / s);

    c.n0 = a0 + c0;
    c.n1 = (a1 * S0 - (a0 + 2 * c0) * C0) * E0 + (c1 * S1 - (c0 + 2 * a0) * C1) * E1;
    c.n2 = 2 * E0 * E1 * ((a0 + c0) * C1 * C0 - a1 * C1 * S0 - c1 * C0 * S1) + c0 * E0 * E0 + a0 * E1 * E1;
    c.n3 = (c1 * S1 - c0 * C1) * E1 * E0 * E0 + (a1 * S0 - a0 * C0) * E0 * E1 * E1;
    c.d1 = -2 * E1 * C1 - 2 * E0 * C0;
    c.d2 = 4 * C1 * C0 * E0 * E1 + E1 * E1 + E0 * E0;
    c.d3 = -2 * C0 * E0 * E1 * E1 - 2 * C1 * E1 * E0 * E0;
    c.d4 = E0 * E0 * E1 * E1;
    c.m1 = c.n1 - c.d1 * c.n0;
    c.m2 = c.n2 - c.d2 * c.n0;
    c.m3 = c.n3 - c.d3 * c.n0;
    c.m4 = -c.d4 * c.n0;
    if (c.kind == FirstDerivative) {
        // The first derivative is odd: the backward half is the forward one with its sign turned.
        c.m1 = -c.m1, c.m2 = -c.m2, c.m3 = -c.m3, c.m4 = -c.m4;
    }

    const double total = Detail::impulseResponseTotal(c);
    c.scale = total == 0 ? 1 : 1 / total;
    c.weights = Detail::edgeWeights(s, c.kind);
    return c;
}

}  // namespace Tw::Image
