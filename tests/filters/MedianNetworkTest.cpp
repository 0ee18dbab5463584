// The 3 x 3 median network against a sort, lane by lane, at the element types the kernels use.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include "image/graph/MedianNetwork.h"

namespace Tw::Image {
namespace TW_FILE_LOCAL {

// Lanes whose nine values come from `pool`: a few values give many ties, a wide pool few.
template <class E, int N>
void expectMedianOfEveryWindow(const std::vector<E>& pool, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_int_distribution<std::size_t> pick(0, pool.size() - 1);
    for (int round = 0; round < 2000; ++round) {
        std::array<Vector<E, N>, 9> window;  // position k of the window, row by row, in every lane
        for (auto& v : window)
            for (int lane = 0; lane < N; ++lane)
                v[lane] = pool[pick(random)];
        // Columns of the window: positions k, k + 3, k + 6.
        const auto column = [&](int k) { return sortColumn<E, N>(window[k], window[k + 3], window[k + 6]); };
        const Vector<E, N> median = medianOfColumns(column(0), column(1), column(2));
        for (int lane = 0; lane < N; ++lane) {
            std::array<E, 9> values;
            for (int k = 0; k < 9; ++k)
                values[k] = window[k][lane];
            std::nth_element(values.begin(), values.begin() + 4, values.end());
            ASSERT_EQ(median[lane], values[4]) << "round " << round << " lane " << lane;
        }
    }
}

template <class E>
std::vector<E> everyValueFrom(int first, int last) {
    std::vector<E> pool;
    for (int v = first; v <= last; ++v)
        pool.push_back(static_cast<E>(v));
    return pool;
}

TEST(MedianNetwork, EightBitComponents) {
    expectMedianOfEveryWindow<uint8_t, 32>(everyValueFrom<uint8_t>(0, 255), 1);
    expectMedianOfEveryWindow<uint8_t, 32>({0, 1, 254, 255}, 2);
    expectMedianOfEveryWindow<uint8_t, 4>({0, 7, 128, 255}, 3);
}

TEST(MedianNetwork, SixteenBitComponentsCompareUnsigned) {
    // White, 32768, and the values above it that no valid image holds still order as unsigned numbers.
    expectMedianOfEveryWindow<uint16_t, 16>(everyValueFrom<uint16_t>(0, 65535), 4);
    expectMedianOfEveryWindow<uint16_t, 16>({0, 1, 32767, 32768, 32769, 65535}, 5);
    expectMedianOfEveryWindow<uint16_t, 8>({0, 32768, 65535}, 6);
}

TEST(MedianNetwork, FloatsIncludingExtremes) {
    constexpr float kMax = std::numeric_limits<float>::max();
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    constexpr float kTiny = std::numeric_limits<float>::denorm_min();
    const std::vector<float> extremes = {-kInfinity, -kMax, -1.0f, -kTiny, 0.0f,
                                         kTiny,      0.5f,  1.0f,  kMax,   kInfinity};
    expectMedianOfEveryWindow<float, 4>(extremes, 7);
    expectMedianOfEveryWindow<float, 4>({-0.0f, 0.0f, 1.0f}, 8);
    std::vector<float> wide;
    std::mt19937 random(9);
    for (int i = 0; i < 1000; ++i)
        wide.push_back(std::uniform_real_distribution<float>(-2.0f, 3.0f)(random));
    expectMedianOfEveryWindow<float, 4>(wide, 10);
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Image
