// The kernels' power function against the C library's, over the values images hold.
#include <gtest/gtest.h>

#include <cmath>

#include "image/graph/VectorMath.h"

namespace Tw::Image {
namespace {

// y * log2(x) is taken in single precision, so the result can be off by about one unit in the last place
// of that product: under 2e-6 relative, a twentieth of a 16-bit step at white.
TEST(VectorMath, PowerFollowsPowfClosely) {
    const float exponents[] = {1.0f / 2.2f, 0.5f, 1.0f / 1.8f, 2.2f, 3.0f, 1.0f / 5.0f};
    double worst = 0;
    for (const float y : exponents) {
        for (int i = 1; i <= 40000; ++i) {
            // Fractions of white, and the raw values of 8-bit and 16-bit components.
            const float x = i <= 20000 ? static_cast<float>(i) / 20000.0f : static_cast<float>(i - 20000) * 1.6384f;
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

}  // namespace
}  // namespace Tw::Image
