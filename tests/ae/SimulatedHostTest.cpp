// The simulated host itself, driven by a stand-in effect written for these tests: every misuse it must
// catch is caught (otherwise the integration tests could pass over a fault), and iterate_generic hands out
// work as a real host does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

#include "tests/ae/TestFrames.h"
#include "tools/aehost/SimulatedHost.h"

namespace Tw::Tools::AeHost {
namespace TW_FILE_LOCAL {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

enum class Misuse {
    None,
    SuiteKept,
    SuiteReleasedTwice,
    ParameterNotCheckedIn,
    InputNotCheckedIn,
    WriteInRowPadding,
    WriteIntoInput,
    ProgressFromWorker,
    WorldKept,
};

// What the stand-in does wrong in its next smart render.
Misuse misuse = Misuse::None;

PF_Err reportFromWorker(void* refcon, A_long threadIndex, A_long, A_long) {
    auto* in = static_cast<PF_InData*>(refcon);
    return threadIndex == 1 ? in->inter.progress(in->effect_ref, 1, 2) : PF_Err_NONE;
}

// Copies its 8-bit input to its output, as an effect that does nothing would, and commits `misuse` on the
// way.
void renderWithMisuse(PF_InData* in, PF_SmartRenderExtra& smart) {
    PF_ProgPtr ref = in->effect_ref;
    PF_EffectWorld* input = nullptr;
    PF_EffectWorld* output = nullptr;
    smart.cb->checkout_layer_pixels(ref, 0, &input);
    smart.cb->checkout_output(ref, &output);
    for (A_long y = 0; y < output->height; ++y)
        std::memcpy(reinterpret_cast<char*>(output->data) + y * output->rowbytes,
                    reinterpret_cast<char*>(input->data) + y * input->rowbytes,
                    static_cast<std::size_t>(output->width) * 4);
    const void* suite = nullptr;
    PF_ParamDef param{};
    PF_EffectWorld world{};
    switch (misuse) {
        case Misuse::SuiteKept:
            in->pica_basicP->AcquireSuite(kPFWorldSuite, kPFWorldSuiteVersion2, &suite);
            break;
        case Misuse::SuiteReleasedTwice:
            in->pica_basicP->AcquireSuite(kPFWorldSuite, kPFWorldSuiteVersion2, &suite);
            in->pica_basicP->ReleaseSuite(kPFWorldSuite, kPFWorldSuiteVersion2);
            in->pica_basicP->ReleaseSuite(kPFWorldSuite, kPFWorldSuiteVersion2);
            break;
        case Misuse::ParameterNotCheckedIn:
            in->inter.checkout_param(ref, 0, in->current_time, in->time_step, in->time_scale, &param);
            break;
        case Misuse::WriteInRowPadding:
            reinterpret_cast<char*>(output->data)[output->width * 4] = 1;
            break;
        case Misuse::WriteIntoInput:
            reinterpret_cast<char*>(input->data)[0] ^= 1;
            break;
        case Misuse::ProgressFromWorker:
            in->utils->iterate_generic(PF_Iterations_ONCE_PER_PROCESSOR, in, &reportFromWorker);
            break;
        case Misuse::WorldKept:
            in->pica_basicP->AcquireSuite(kPFWorldSuite, kPFWorldSuiteVersion2, &suite);
            static_cast<const PF_WorldSuite2*>(suite)->PF_NewWorld(ref, 4, 4, true, PF_PixelFormat_ARGB32,
                                                                   &world);
            in->pica_basicP->ReleaseSuite(kPFWorldSuite, kPFWorldSuiteVersion2);
            break;
        default:
            break;
    }
    if (misuse != Misuse::InputNotCheckedIn) smart.cb->checkin_layer_pixels(ref, 0);
}

// What the stand-in saw of iterate_generic, at PF_Cmd_FRAME_SETUP.
struct IterationRecord {
    std::mutex mutex;
    std::set<std::pair<A_long, A_long>> threadAndIteration;
    std::set<A_long> counts;
    bool workerZeroIsCaller = true;
    std::thread::id caller;
    std::atomic<int> calls{0};
    PF_Err onceEach = -1;
    PF_Err stopped = -1;
};
IterationRecord iterations;

PF_Err recordIteration(void*, A_long threadIndex, A_long i, A_long count) {
    const std::lock_guard lock(iterations.mutex);
    iterations.threadAndIteration.insert({threadIndex, i});
    iterations.counts.insert(count);
    if (threadIndex == 0 && std::this_thread::get_id() != iterations.caller)
        iterations.workerZeroIsCaller = false;
    return PF_Err_NONE;
}

PF_Err failAtTen(void*, A_long, A_long i, A_long) {
    ++iterations.calls;
    return i == 10 ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE;
}

PF_Err standIn(PF_Cmd command, PF_InData* in, PF_OutData*, PF_ParamDef**, PF_LayerDef*, void* extra) {
    if (command == PF_Cmd_SMART_PRE_RENDER) {
        auto& pre = *static_cast<PF_PreRenderExtra*>(extra);
        PF_CheckoutResult result{};
        const PF_Err error = pre.cb->checkout_layer(in->effect_ref, 0, 0, &pre.input->output_request,
                                                    in->current_time, in->time_step, in->time_scale, &result);
        pre.output->result_rect = pre.output->max_result_rect = result.result_rect;
        return error;
    }
    if (command == PF_Cmd_SMART_RENDER) renderWithMisuse(in, *static_cast<PF_SmartRenderExtra*>(extra));
    if (command == PF_Cmd_FRAME_SETUP) {
        iterations.caller = std::this_thread::get_id();
        iterations.onceEach =
            in->utils->iterate_generic(PF_Iterations_ONCE_PER_PROCESSOR, nullptr, &recordIteration);
        iterations.stopped = in->utils->iterate_generic(1000, nullptr, &failAtTen);
    }
    return PF_Err_NONE;
}

TEST(SimulatedHost, CatchesEveryMisuseOfItsProtocol) {
    struct Case {
        Misuse misuse;
        const char* fault;
    };
    for (const Case& c :
         {Case{Misuse::SuiteKept, "still acquired"}, Case{Misuse::SuiteReleasedTwice, "isn't acquired"},
          Case{Misuse::ParameterNotCheckedIn, "parameter checkouts against"},
          Case{Misuse::InputNotCheckedIn, "checkout id 0 still checked out"},
          Case{Misuse::WriteInRowPadding, "wrote outside the pixels it owns in the output"},
          Case{Misuse::WriteIntoInput, "wrote outside the pixels it owns in a layer"},
          Case{Misuse::ProgressFromWorker, "progress from a thread other than the command's"},
          Case{Misuse::WorldKept, "worlds the effect made are left"}}) {
        SCOPED_TRACE(c.fault);
        misuse = c.misuse;
        SimulatedHost host(&standIn);
        host.setInput(patternFrame(8, 6, 8, ComponentOrder::Argb));
        host.renderSmart();
        EXPECT_THAT(host.faults(), Contains(HasSubstr(c.fault)));
    }
    misuse = Misuse::None;
    SimulatedHost host(&standIn);
    host.setInput(patternFrame(8, 6, 8, ComponentOrder::Argb));
    const RenderOutcome outcome = host.renderSmart();
    EXPECT_EQ(outcome.output, host.input());
    EXPECT_THAT(host.faults(), IsEmpty());
}

TEST(SimulatedHost, IterateGenericRunsOncePerWorkerOnTheCallerAndStopsAtAnError) {
    HostSettings settings;
    settings.workerCount = 5;
    SimulatedHost host(&standIn, settings);
    ASSERT_EQ(host.command(PF_Cmd_FRAME_SETUP), PF_Err_NONE);
    EXPECT_EQ(iterations.onceEach, PF_Err_NONE);
    EXPECT_EQ(iterations.threadAndIteration,
              (std::set<std::pair<A_long, A_long>>{{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}}));
    EXPECT_EQ(iterations.counts, std::set<A_long>{5});
    EXPECT_TRUE(iterations.workerZeroIsCaller);
    EXPECT_EQ(iterations.stopped, PF_Err_OUT_OF_MEMORY);
    EXPECT_LT(iterations.calls.load(), 1000) << "no iteration starts after an error";
    EXPECT_THAT(host.faults(), IsEmpty());
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::AeHost
