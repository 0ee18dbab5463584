// A render the host cancels, and one that runs out of host memory: each ends with its host error, shows
// what the host expects of it, and leaves nothing behind, whichever call it stopped at.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "tests/ae/BuiltBundle.h"
#include "tests/ae/StandaloneReference.h"
#include "tests/ae/TestFrames.h"
#include "tools/aehost/SimulatedHost.h"

namespace Tw::Tools::AeHost {
namespace TW_FILE_LOCAL {

using ::testing::IsEmpty;

constexpr int32_t kWidth = 64;
constexpr int32_t kHeight = 48;

// A render of `entry` with its test settings on a host with `settings`.
struct RenderRun {
    RenderOutcome outcome;
    int progressCalls = 0;
    int abortCalls = 0;
    int allocationCalls = 0;
};

RenderRun renderWith(const std::string& entry, const HostSettings& settings) {
    SimulatedHost host(bundleEntry(entry), settings);
    EXPECT_EQ(host.paramsSetup(), PF_Err_NONE);
    host.setInput(patternFrame(kWidth, kHeight, settings.depth, ComponentOrder::Argb, 11));
    applySettings(host, busySettingsOf(entry));
    RenderRun run{host.renderSmart(), host.progressCalls(), host.abortCalls(), host.allocationCalls()};
    // Nothing left: host memory given back, worlds disposed of, and (checked by the host after each
    // command) suites released, parameters and layers checked in.
    EXPECT_EQ(host.handles().liveCount(), 0u);
    EXPECT_EQ(host.effectWorlds(), 0u);
    EXPECT_THAT(host.faults(), IsEmpty());
    if (run.outcome.error == PF_Interrupt_CANCEL) {
        EXPECT_STREQ(host.outData().return_msg, "") << "a cancelled render shows no message";
    } else if (run.outcome.error == PF_Err_OUT_OF_MEMORY) {
        EXPECT_STREQ(host.outData().return_msg, "Out of memory!");
        EXPECT_TRUE(host.outData().out_flags & PF_OutFlag_DISPLAY_ERROR_MESSAGE);
    }
    return run;
}

// The first, a middle and the last of the calls a whole render makes.
std::set<int> callsToStopAt(int total) {
    return {1, (total + 1) / 2, total};
}

TEST(AbortAndErrors, ACancelAtAnyProgressCallEndsTheRenderWithNothingLeft) {
    for (const char* entry : {"SmoothingEntry", "BlurEntry", "BlendEntry"}) {
        const RenderRun whole = renderWith(entry, HostSettings{});
        ASSERT_EQ(whole.outcome.error, PF_Err_NONE);
        ASSERT_GT(whole.progressCalls, 0) << entry << " reports no progress";
        for (const int call : callsToStopAt(whole.progressCalls)) {
            SCOPED_TRACE(std::string(entry) + ", cancelled at progress call " + std::to_string(call) +
                         " of " + std::to_string(whole.progressCalls));
            HostSettings settings;
            settings.cancelAtProgressCall = call;
            const RenderRun cancelled = renderWith(entry, settings);
            EXPECT_EQ(cancelled.outcome.error, PF_Interrupt_CANCEL);
            EXPECT_EQ(cancelled.progressCalls, call) << "no progress is reported once the host has cancelled";
        }
    }
}

TEST(AbortAndErrors, ACancelAtAnAbortCheckEndsTheRenderWithNothingLeft) {
    const RenderRun whole = renderWith("SmoothingEntry", HostSettings{});
    ASSERT_EQ(whole.outcome.error, PF_Err_NONE);
    if (whole.abortCalls == 0) GTEST_SKIP() << "the effect never asks the host whether to stop";
    for (const int call : callsToStopAt(whole.abortCalls)) {
        SCOPED_TRACE("cancelled at abort check " + std::to_string(call) + " of " +
                     std::to_string(whole.abortCalls));
        HostSettings settings;
        settings.cancelAtAbortCall = call;
        const RenderRun cancelled = renderWith("SmoothingEntry", settings);
        EXPECT_EQ(cancelled.outcome.error, PF_Interrupt_CANCEL);
        EXPECT_EQ(cancelled.abortCalls, call);
    }
}

TEST(AbortAndErrors, ARefusedAllocationEndsInOutOfMemoryWithNothingLeft) {
    for (const int depth : {8, 32}) {
        for (const char* entry : {"SmoothingEntry", "BlurEntry", "MaxEntry"}) {
            HostSettings settings;
            settings.depth = depth;
            const RenderRun whole = renderWith(entry, settings);
            ASSERT_EQ(whole.outcome.error, PF_Err_NONE);
            ASSERT_GT(whole.allocationCalls, 0) << entry << " takes no memory from the host";
            for (const int call : callsToStopAt(whole.allocationCalls)) {
                SCOPED_TRACE(std::string(entry) + " at " + std::to_string(depth) +
                             " bits, refused from allocation " + std::to_string(call) + " of " +
                             std::to_string(whole.allocationCalls));
                settings.refuseAllocationsFrom = call;
                EXPECT_EQ(renderWith(entry, settings).outcome.error, PF_Err_OUT_OF_MEMORY);
            }
        }
    }
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::AeHost
