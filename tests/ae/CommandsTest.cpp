// The commands with nothing to render: PF_Cmd_ABOUT, the parameter UI commands none of the effects asks
// for, and commands an effect doesn't know, which it must answer without touching anything.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/ae/BuiltBundle.h"
#include "tools/aehost/SimulatedHost.h"

namespace Tw::Tools::AeHost {
namespace TW_FILE_LOCAL {

using ::testing::IsEmpty;

TEST(Commands, UnknownCommandsAndAboutAnswerNoneAndTouchNothing) {
    for (const char* entry : {"BalanceEntry", "BlendEntry", "SmoothingEntry"}) {
        SimulatedHost host(bundleEntry(entry));
        ASSERT_EQ(host.globalSetup(), PF_Err_NONE);
        ASSERT_EQ(host.paramsSetup(), PF_Err_NONE);
        for (const PF_Cmd command : {PF_Cmd_ABOUT, PF_Cmd_SEQUENCE_SETUP, PF_Cmd_SEQUENCE_SETDOWN,
                                     PF_Cmd_FRAME_SETUP, PF_Cmd_GLOBAL_SETDOWN, PF_Cmd_QUERY_DYNAMIC_FLAGS,
                                     PF_Cmd_GPU_DEVICE_SETUP, PF_Cmd_NUM_CMDS, 99, -1}) {
            SCOPED_TRACE(std::string(entry) + ", command " + std::to_string(command));
            const PF_OutData before = host.outData();
            const std::size_t handles = host.handles().liveCount();
            int untouched = 0x5a5a5a5a;
            EXPECT_EQ(host.command(command, &untouched), PF_Err_NONE);
            EXPECT_EQ(std::memcmp(&before, &host.outData(), sizeof before), 0);
            EXPECT_EQ(untouched, 0x5a5a5a5a);
            EXPECT_EQ(host.handles().liveCount(), handles);
            EXPECT_EQ(host.progressCalls() + host.iterateCalls(), 0);
        }
        EXPECT_THAT(host.faults(), IsEmpty());
    }
}

// None of the effects asks for these; they still answer, and change no value and no control.
TEST(Commands, ParameterUICommandsChangeNothing) {
    SimulatedHost host(bundleEntry("BlendEntry"));
    ASSERT_EQ(host.paramsSetup(), PF_Err_NONE);
    host.set("Blend Mode", "6");
    host.set("Opacity", "33");
    for (PF_ParamIndex index = 1; index <= host.parameters().count(); ++index)
        EXPECT_EQ(host.userChangedParam(index), PF_Err_NONE) << index;
    EXPECT_EQ(host.updateParamsUI(), PF_Err_NONE);
    EXPECT_EQ(host.parameters().value(2)->u.pd.value, 7);
    EXPECT_EQ(host.parameters().value(3)->u.fs_d.value, 33.0);
    EXPECT_THAT(host.paramUIUpdates(), IsEmpty());
    EXPECT_THAT(host.faults(), IsEmpty());
}

// A project reopened: the values stay with their identifiers when the effect adds its list again.
TEST(Commands, ValuesSurviveASecondParameterSetupByIdentifier) {
    SimulatedHost host(bundleEntry("BlendEntry"));
    ASSERT_EQ(host.paramsSetup(), PF_Err_NONE);
    host.set("Blend Mode", "Multiply");
    host.set("Opacity", "40");
    ASSERT_EQ(host.paramsSetup(), PF_Err_NONE);
    EXPECT_EQ(host.parameters().value(2)->u.pd.value, 3) << "\"Multiply\", the third mode";
    EXPECT_EQ(host.parameters().value(3)->u.fs_d.value, 40.0);
    EXPECT_THAT(host.faults(), IsEmpty());
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::AeHost
