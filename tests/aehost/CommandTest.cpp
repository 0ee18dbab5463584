// aehost as a user meets it: every way a run can fail has its message and exit code and leaves no output
// file; a bundle that breaks the protocol is rendered, its faults listed, and the run ends with code 8;
// effects are named as a user types them, and the host's switches reach the render.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <OpenImageIO/imageio.h>

#include "tests/aehost/AehostFixture.h"
#include "tools/common/ToolError.h"

namespace Tw::Tools::AeHost {
namespace TW_FILE_LOCAL {

using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class Aehost : public AehostFixture {};

int code(ExitCode exitCode) {
    return static_cast<int>(exitCode);
}

TEST_F(Aehost, UsageErrorsEndWithTwoAndSaySo) {
    const std::string out = file("out.png");
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {},
             {"draw"},
             {"list"},
             {"params", kBundle},
             {"render", kBundle, "Blur", "-o", out},
             {"render", kBundle, "Blur", "-i", kPortrait},
             {"render", kBundle, "Blur", "-i", kPortrait, "-o", out, "--depth", "12"},
             {"render", kBundle, "Blur", "-i", kPortrait, "-o", out, "--downsample", "2"},
             {"render", kBundle, "Blur", "-i", kPortrait, "-o", out, "--downsample", "0.333"},
             {"render", kBundle, "Blur", "-i", kPortrait, "-o", out, "--workers", "0"},
             {"render", kBundle, "Blur", "-i", kPortrait, "-o", out, "--set", "Radius"},
             {"render", kBundle, "Blur", "-i", kPortrait, "-o", out, "--fast"},
             {"render", kBundle, "Blur", "-i", kPortrait, "-o", out, "--workers"}}) {
        SCOPED_TRACE(::testing::PrintToString(arguments));
        const RunResult result = aehost(arguments);
        EXPECT_EQ(result.code, code(ExitCode::Usage));
        EXPECT_THAT(result.err, AllOf(StartsWith("aehost: "), HasSubstr("(see aehost --help)")));
        EXPECT_FALSE(exists("out.png"));
    }
    const RunResult help = aehost({"--help"});
    EXPECT_EQ(help.code, 0);
    EXPECT_THAT(help.out, HasSubstr("aehost render BUNDLE EFFECT -i IN -o OUT"));
}

TEST_F(Aehost, EachFailureHasItsExitCodeAndLeavesNoOutput) {
    struct Case {
        std::vector<std::string> arguments;
        ExitCode code;
        std::string message;
    };
    const std::string out = file("out.png");
    for (const Case& c : std::vector<Case>{
             {{"render", TW_SAMPLES_DIR "/README.md", "Blur", "-i", kPortrait, "-o", out},
              ExitCode::BundleNotLoaded,
              "cannot load the bundle"},
             {{"render", kBundle, "Blur", "-i", file("none.png"), "-o", out},
              ExitCode::UnreadableInput,
              "cannot read"},
             {{"render", kBundle, "Blur", "-i", kPortrait, "-o", file("no/out.png")},
              ExitCode::UnwritableOutput,
              "no directory"},
             {{"render", kBundle, "Sharpness", "-i", kPortrait, "-o", out},
              ExitCode::UnknownName,
              "no effect"},
             {{"render", kBundle, "MinMax", "-i", kPortrait, "-o", out},
              ExitCode::UnknownName,
              "names 2 effects: MaxEntry, MinEntry"},
             {{"render", kBundle, "Blur", "-i", kPortrait, "-o", out, "--set", "Strength=2"},
              ExitCode::UnknownName,
              "has no parameter \"Strength\""},
             {{"render", kBundle, "Blur", "-i", kPortrait, "-o", out, "--set", "Radius=wide"},
              ExitCode::BadValue,
              "\"Radius\" takes a number"},
             {{"render", kBundle, "Blur", "-i", kPortrait, "-o", out, "--cancel-at-progress", "2"},
              ExitCode::RenderFailed,
              "BlurEntry answered the smart render with PF_Interrupt_CANCEL"},
             {{"render", kBundle, "Blur", "-i", kPortrait, "-o", out, "--plain", "--refuse-allocations-from",
               "1"},
              ExitCode::RenderFailed,
              "PF_Cmd_RENDER with PF_Err_OUT_OF_MEMORY: Out of memory!"}}) {
        SCOPED_TRACE(::testing::PrintToString(c.arguments));
        const RunResult result = aehost(c.arguments);
        EXPECT_EQ(result.code, code(c.code));
        EXPECT_THAT(result.err, AllOf(StartsWith("aehost: "), HasSubstr(c.message)));
        EXPECT_FALSE(exists("out.png"));
    }
}

TEST_F(Aehost, ProtocolFaultsAreListedAndTheImageIsStillWritten) {
    const RunResult result =
        aehost({"render", kFaultyBundle, "Leaky", "-i", kPortrait, "-o", file("out.png"), "--plain"});
    EXPECT_EQ(result.code, code(ExitCode::ProtocolFault));
    EXPECT_THAT(result.err, HasSubstr("aehost: protocol fault: PF World Suite version 2 still acquired"));
    EXPECT_THAT(result.err,
                HasSubstr("aehost: protocol fault: memory handles the effect took and never gave back: 1"));
    EXPECT_THAT(result.err, HasSubstr("LeakyEntry broke the host's protocol 2 times"));
    EXPECT_TRUE(exists("out.png"));
}

TEST_F(Aehost, EffectsAreNamedAsAUserTypesThem) {
    const RunResult list = aehost({"list", kBundle});
    EXPECT_EQ(list.code, 0);
    // Columns as wide as the longest entry name needs.
    EXPECT_THAT(list.out, ContainsRegex("\nBalanceRGBEntry +BalanceRGB +Balance RGB\n"));
    EXPECT_THAT(list.out, ContainsRegex("\nMaxEntry +Max +MinMax\n"));
    const RunResult params = aehost({"params", kBundle, "balance rgb"});
    EXPECT_EQ(params.code, 0);
    EXPECT_THAT(params.out, AllOf(StartsWith("BalanceRGBEntry,"), HasSubstr("From Low RGB")));
    for (const char* name : {"SmoothingEntry", "smoothing", "SMOOTHINGentry"}) {
        EXPECT_EQ(aehost({"render", kBundle, name, "-i", kPortrait, "-o", file("out.png")}).code, 0) << name;
    }
}

// Premiere Pro's 16-bit BGRA worlds stored bottom up, at half resolution, by plain render on three workers,
// after the project was saved and reopened: the output is the downsampled frame, the depth follows the
// switch and a clamped value is told.
TEST_F(Aehost, TheHostsSwitchesReachTheRender) {
    const RunResult result = aehost({"render", kBundle, "Blur", "-i", kPortrait, "-o", file("out.tif"),
                                     "--set", "Radius=9999", "--premiere", "--depth", "16", "--downsample",
                                     "1/2", "--negative-rowbytes", "--plain", "--workers", "3", "--reopen"});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.err, HasSubstr("warning: Radius 9999 is outside its range"));
    auto written = OIIO::ImageInput::open(file("out.tif"));
    ASSERT_TRUE(written);
    EXPECT_EQ(written->spec().width, 256);
    EXPECT_EQ(written->spec().height, 256);
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::AeHost
