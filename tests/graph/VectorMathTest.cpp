// The kernels' elementary functions against the C library's, over the values images hold and the ranges
// the colour conversions use.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "image/graph/VectorMath.h"

namespace Tw::Image {
namespace TW_FILE_LOCAL {

// y * log2(x) is taken in single precision, so the result can be off by about one unit in the last place
// of that product: under 2e-6 relative, a twentieth of a 16-bit step at white.
TEST(VectorMath, PowerFollowsPowfClosely) {
    const float exponents[] = {1.0f / 2.2f, 0.5f, 1.0f / 1.8f, 2.2f, 3.0f, 1.0f / 5.0f};
    double worst = 0;
    for (const float y : exponents) {
        for (int i = 1; i <= 40000; ++i) {
            // Fractions of white, and the raw values of 8-bit and 16-bit components.
            const float x =
                i <= 20000 ? static_cast<float>(i) / 20000.0f : static_cast<float>(i - 20000) * 1.6384f;
            const float ours = power<4>(FloatVector<4>{} + x, y)[0];
            const double exact = std::pow(static_cast<double>(x), static_cast<double>(y));
            if (exact > 32768) continue;  // beyond white at any depth: kernels limit such results anyway
            worst = std::max(worst, std::abs(ours - exact) / exact);
        }
    }
    EXPECT_LT(worst, 2e-6);
}

TEST(VectorMath, PowerOfZeroAndNegativesIsTinyAndPositive) {
    const FloatVector<4> x{0.0f, -1.0f, -0.0f, 1.0f};
    const FloatVector<4> r = power<4>(x, 0.5f);
    for (int lane = 0; lane < 3; ++lane) {
        EXPECT_GT(r[lane], 0.0f);
        EXPECT_LT(r[lane], 1e-18f);
    }
    EXPECT_EQ(r[3], 1.0f);
    EXPECT_GT(power<4>(FloatVector<4>{} + 255.0f, 999.99994f)[0], 1e37f);  // saturates, no infinity
}

// |got - exact| in units of the last place of the float nearest `exact`.
double ulpsOff(float got, double exact) {
    int exponent;
    std::frexp(exact, &exponent);
    return std::abs(got - exact) / std::ldexp(1.0, std::max(exponent, -125) - 24);
}

FloatVector<4> lanes(float v) {
    return FloatVector<4>{v, v, v, v};
}

// The worst error in units in the last place of f against `exact` over n + 1 points from `low` to
// `high`, spaced evenly or, with `geometric`, by equal ratios.
template <class Ours, class Exact>
double worstUlps(double low, double high, int n, Ours ours, Exact exact, bool geometric = false) {
    double worst = 0;
    for (int i = 0; i <= n; ++i) {
        const double t = double(i) / n;
        const auto x = static_cast<float>(geometric ? low * std::pow(high / low, t) : low + (high - low) * t);
        worst = std::max(worst, ulpsOff(ours(x), exact(double(x))));
    }
    return worst;
}

TEST(VectorMath, PowerOfTheColourCurvesIsWithinAFewUnitsInTheLastPlace) {
    const auto ours = [](float y) { return [y](float x) { return power<4>(lanes(x), y)[0]; }; };
    const auto exact = [](float y) { return [y](double x) { return std::pow(x, double(y)); }; };
    // The sRGB curve to linear light and back, including values above white.
    EXPECT_LT(worstUlps(0.09, 60, 400000, ours(2.4f), exact(2.4f), true), 5);
    EXPECT_LT(worstUlps(0.0031308, 60, 400000, ours(0.41666666f), exact(0.41666666f), true), 4);
}

TEST(VectorMath, ExponentialFollowsExp) {
    const auto ours = [](float x) { return exponential<4>(lanes(x))[0]; };
    EXPECT_LT(worstUlps(-87, 88.5, 1000000, ours, [](double x) { return std::exp(x); }), 1.5);
    // Subnormal results are rounded once; far below, 0; far above, infinity.
    EXPECT_EQ(ours(-100), std::exp(-100.0f));
    EXPECT_EQ(ours(-103.9f), std::exp(-103.9f));
    EXPECT_EQ(ours(-200), 0.0f);
    EXPECT_EQ(ours(0), 1.0f);
    EXPECT_EQ(ours(100), INFINITY);
}

TEST(VectorMath, CubeRootFollowsCbrt) {
    const auto ours = [](float x) { return cubeRoot<4>(lanes(x))[0]; };
    const auto exact = [](double x) { return std::cbrt(x); };
    EXPECT_LT(worstUlps(0.008, 2, 1000000, ours, exact), 1);
    EXPECT_LT(worstUlps(1e-37, 3e38, 1000000, ours, exact, true), 1);
    EXPECT_EQ(ours(8), 2.0f);
    EXPECT_EQ(ours(INFINITY), INFINITY);
}

TEST(VectorMath, ArcTangentOfAQuotientFollowsAtan2) {
    double worst = 0;
    for (int i = 0; i < 400000; ++i) {
        const double angle = -std::numbers::pi + 2 * std::numbers::pi * i / 400000;
        for (const double radius : {1e-3, 1.0, 37.0}) {
            const auto y = float(radius * std::sin(angle)), x = float(radius * std::cos(angle));
            worst = std::max(
                worst, ulpsOff(arcTangent2<4>(lanes(y), lanes(x))[0], std::atan2(double(y), double(x))));
        }
    }
    EXPECT_LT(worst, 3);
    // Zeros of either sign answer as atan2 does.
    for (const float y : {0.0f, -0.0f, 1.0f, -1.0f}) {
        for (const float x : {0.0f, -0.0f, 2.0f, -2.0f}) {
            const float ours = arcTangent2<4>(lanes(y), lanes(x))[0];
            EXPECT_EQ(ours, std::atan2(y, x)) << y << " " << x;
            EXPECT_EQ(std::signbit(ours), std::signbit(std::atan2(y, x))) << y << " " << x;
        }
    }
}

TEST(VectorMath, SineAndCosineFollowTheCLibrary) {
    double worstSine = 0, worstCosine = 0;
    for (int i = 0; i <= 1000000; ++i) {
        const auto x = float(-7 + 20.0 * i / 1000000);
        FloatVector<4> sine, cosine;
        sineCosine<4>(lanes(x), sine, cosine);
        // Near their zeros, measured against the size of the function's values instead.
        const auto off = [](float got, double exact) {
            return std::abs(exact) < 1e-3 ? std::abs(got - exact) * 0x1p24 / 1000 : ulpsOff(got, exact);
        };
        worstSine = std::max(worstSine, off(sine[0], std::sin(double(x))));
        worstCosine = std::max(worstCosine, off(cosine[0], std::cos(double(x))));
    }
    EXPECT_LT(worstSine, 2);
    EXPECT_LT(worstCosine, 2);
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Image
