// Several host threads rendering different frames through the one loaded bundle at once, as After Effects
// does with an effect that says it is thread-safe: each render gives the pixels it gives alone. A program
// of its own, so that it can run under ThreadSanitizer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "tests/ae/BuiltBundle.h"
#include "tests/ae/TestFrames.h"
#include "tools/aehost/SimulatedHost.h"

namespace Tw::Tools::AeHost {
namespace TW_FILE_LOCAL {

using ::testing::IsEmpty;

// One job of a host thread: an effect, a depth and a frame of its own.
struct Job {
    const char* entry;
    int depth;
    uint32_t seed;
};

struct Result {
    RenderOutcome outcome;
    std::vector<std::string> faults;
};

Result renderJob(const Job& job) {
    HostSettings settings;
    settings.depth = job.depth;
    settings.workerCount = 3;
    SimulatedHost host(bundleEntry(job.entry), settings);
    Result result;
    if (host.globalSetup() != PF_Err_NONE || host.paramsSetup() != PF_Err_NONE) {
        result.faults.push_back("setup failed");
        return result;
    }
    host.setInput(patternFrame(48 + static_cast<int32_t>(job.seed % 3) * 8, 40, job.depth,
                               ComponentOrder::Argb, job.seed));
    const std::string entry = job.entry;
    if (entry == "BlurEntry") host.set("Radius", std::to_string(2 + job.seed % 4));
    if (entry == "SmoothingEntry") host.set("Smoothing Amount", std::to_string(6 + job.seed % 5));
    if (entry == "MaxEntry") host.set("Radius", std::to_string(1 + job.seed % 3));
    if (entry == "BlendEntry") {
        host.setLayer("Layer", patternFrame(32, 24, job.depth, ComponentOrder::Argb, job.seed + 100));
        host.set("Blend Mode", std::to_string(job.seed % 41));
    }
    result.outcome = host.renderSmart();
    result.faults = host.faults();
    return result;
}

TEST(Concurrency, FramesRenderedAtOnceMatchFramesRenderedAlone) {
    const std::vector<Job> jobs = {{"SmoothingEntry", 8, 1}, {"BlurEntry", 32, 2},      {"BlendEntry", 16, 3},
                                   {"MaxEntry", 8, 4},       {"SmoothingEntry", 32, 5}, {"BlendEntry", 8, 6},
                                   {"BalanceEntry", 16, 7},  {"BlurEntry", 8, 8}};
    std::vector<Result> alone;
    for (const Job& job : jobs)
        alone.push_back(renderJob(job));

    constexpr int kThreads = 4;
    std::vector<Result> together(jobs.size());
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] {
            for (std::size_t i = static_cast<std::size_t>(t); i < jobs.size(); i += kThreads)
                together[i] = renderJob(jobs[i]);
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    for (std::size_t i = 0; i < jobs.size(); ++i) {
        SCOPED_TRACE(std::string(jobs[i].entry) + " at " + std::to_string(jobs[i].depth) + " bits, frame " +
                     std::to_string(jobs[i].seed));
        EXPECT_EQ(alone[i].outcome.error, PF_Err_NONE);
        EXPECT_EQ(together[i].outcome.error, PF_Err_NONE);
        EXPECT_GT(alone[i].outcome.output.width, 0);
        EXPECT_TRUE(together[i].outcome.output == alone[i].outcome.output)
            << firstDifference(together[i].outcome.output, alone[i].outcome.output);
        EXPECT_THAT(alone[i].faults, IsEmpty());
        EXPECT_THAT(together[i].faults, IsEmpty());
    }
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::AeHost
