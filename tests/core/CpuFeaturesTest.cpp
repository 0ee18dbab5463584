// CpuFeatures: the word agrees with what the processor and the operating system offer.
#include <gtest/gtest.h>

#include "image/core/CpuFeatures.h"

namespace Tw::Image {
namespace TW_FILE_LOCAL {

#if defined(__x86_64__)
TEST(CpuFeatures, WordAgreesWithTheProcessor) {
    using namespace CpuFeature;
    const CpuFeatures word = cpuFeatures();
    const auto has = [word](CpuFeatures group) {
        EXPECT_TRUE((word & group) == 0 || (word & group) == group) << "group " << group << " half set";
        return (word & group) == group;
    };
    EXPECT_TRUE(has(kSse2));
    EXPECT_TRUE(has(kSse));
    EXPECT_EQ(has(kSsse3), __builtin_cpu_supports("ssse3") != 0);
    EXPECT_EQ(has(kSse41), __builtin_cpu_supports("sse4.1") != 0);
    EXPECT_EQ(has(kSse42), __builtin_cpu_supports("sse4.2") != 0);
    EXPECT_EQ(has(kAes), __builtin_cpu_supports("aes") != 0);
    EXPECT_EQ(has(kBmi1), __builtin_cpu_supports("bmi") != 0);
    EXPECT_EQ(has(kFma), __builtin_cpu_supports("fma") != 0);
    EXPECT_EQ(has(kAvx), __builtin_cpu_supports("avx") != 0);
    EXPECT_EQ(has(kAvx2), __builtin_cpu_supports("avx2") != 0);
    EXPECT_TRUE(!has(kAvx2) || has(kAvx));
    const CpuFeatures known =
        kMmx | kSse | kSse2 | kSse3 | kSsse3 | kSse41 | kSse42 | kBmi1 | kAes | kFma | kF16c | kAvx | kAvx2;
    EXPECT_EQ(word & ~known, 0u);
}
#endif

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Image
