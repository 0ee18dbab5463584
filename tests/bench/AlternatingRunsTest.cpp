#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstring>
#include <string>

#include "bench/pairs/AlternatingRuns.h"
#include "bench/pairs/PeakMemory.h"
#include "bench/pairs/Quantile.h"

namespace Tw::Bench {
namespace TW_FILE_LOCAL {

constexpr std::size_t kPage = 4096;

// Maps `bytes` of fresh memory in small pages, writes every page and gives the memory back: each call
// faults in bytes / 4096 pages.
void touchFreshMemory(std::size_t bytes) {
    void* memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    madvise(memory, bytes, MADV_NOHUGEPAGE);
    for (std::size_t offset = 0; offset < bytes; offset += kPage)
        static_cast<volatile char*>(memory)[offset] = 1;
    munmap(memory, bytes);
}

TEST(QuantileTest, InterpolatesBetweenTheNearestOfTheSortedValues) {
    EXPECT_DOUBLE_EQ(quantile({3, 1, 2}, 0.5), 2);
    EXPECT_DOUBLE_EQ(quantile({4, 1, 3, 2}, 0.5), 2.5);
    EXPECT_DOUBLE_EQ(quantile({4, 1, 3, 2}, 0.25), 1.75);
    EXPECT_DOUBLE_EQ(quantile({4, 1, 3, 2}, 0.75), 3.25);
    EXPECT_DOUBLE_EQ(quantile({5, 9}, 0), 5);
    EXPECT_DOUBLE_EQ(quantile({5, 9}, 1), 9);
    EXPECT_DOUBLE_EQ(quantile({7}, 0.25), 7);
}

TEST(AlternatingRunsTest, WarmsBothSidesThenAlternatesAndCountsTheFaultsOfEach) {
    std::string calls;
    constexpr std::size_t kFreshBytes = 256 * kPage;
    const Sides sides{[&] {
                          calls += 'o';
                          touchFreshMemory(kFreshBytes);
                      },
                      [&] { calls += 'p'; }};
    // Samples of one call each, and exactly four pairs.
    const RunPlan plan{.shortestSampleSeconds = 0,
                       .longestSampleSeconds = 0,
                       .budgetSeconds = 0,
                       .minPairs = 4,
                       .maxPairs = 4};

    const PairedTimes times = timeInAlternation(sides, plan);

    EXPECT_EQ(calls, "opopopopop");
    EXPECT_EQ(times.ours.seconds.size(), 4u);
    EXPECT_EQ(times.peer.seconds.size(), 4u);
    EXPECT_GE(times.ours.faultsPerCall, 256);
    EXPECT_LT(times.peer.faultsPerCall, 16);
}

TEST(PeakMemoryTest, CountsWhatTheCallTouchesAtItsHighestAndNotWhatWasResidentBefore) {
    constexpr std::size_t kBytes = std::size_t{64} << 20;
    std::vector<char> resident(kBytes, 1);
    const double fresh = residentGrowthOfCall([] { touchFreshMemory(kBytes); });
    const double reused = residentGrowthOfCall([&] { std::memset(resident.data(), 2, resident.size()); });
    EXPECT_GE(fresh, 0.95 * kBytes);
    EXPECT_LT(fresh, 1.5 * kBytes);
    EXPECT_LT(reused, 0.1 * kBytes);
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Bench
