// Usage errors: each ends with exit code 2 and a message that names what is wrong, before any file is
// touched.
#include <gmock/gmock.h>

#include "tests/tools/TwfxFixture.h"

namespace Tw::Tools::Twfx {
namespace TW_FILE_LOCAL {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class CommandLine : public TwfxFixture {
protected:
    // A render of an existing image with `extra` options added.
    RunResult renderWith(std::vector<std::string> extra) {
        writeImage<uint8_t>(file("in.png"), {1, 1, 3, {10, 20, 30}});
        return twfx({"render", "Balance", "-i", file("in.png"), "-o", file("out.png")}, extra);
    }

    void expectUsageError(const RunResult& result, const std::string& message) {
        EXPECT_EQ(result.code, 2);
        EXPECT_THAT(result.err, StartsWith("twfx: "));
        EXPECT_THAT(result.err, HasSubstr(message));
        EXPECT_FALSE(std::filesystem::exists(file("out.png")));
    }
};

TEST_F(CommandLine, HelpDocumentsEveryExitCode) {
    const RunResult result = twfx({"--help"});
    EXPECT_EQ(result.code, 0);
    for (const char* code : {"  0 ", "  1 ", "  2 ", "  3 ", "  4 ", "  5 ", "  6 ", "  130 "})
        EXPECT_THAT(result.out, HasSubstr(code));
    EXPECT_EQ(twfx({"render", "--help"}).code, 0);
}

TEST_F(CommandLine, MissingCommandOrUnknownCommand) {
    expectUsageError(twfx({}), "no command");
    expectUsageError(twfx({"draw"}), "unknown command \"draw\"");
    expectUsageError(twfx({"list", "extra"}), "list takes no arguments");
}

TEST_F(CommandLine, RenderNeedsEffectInputAndOutput) {
    expectUsageError(twfx({"render", "-i", "a.png", "-o", "b.png"}), "needs an effect name");
    expectUsageError(twfx({"render", "Balance", "-o", "b.png"}), "-i FILE");
    expectUsageError(twfx({"render", "Balance", "-i", "a.png"}), "-o FILE");
    expectUsageError(twfx({"render", "Balance", "-i"}), "-i needs a value");
}

TEST_F(CommandLine, OnlyAGeneratorRendersAFrameOfAGivenSizeWithoutAnInput) {
    expectUsageError(twfx({"render", "Ramp", "-o", file("out.png")}),
                     "-i FILE (a generator takes --size instead)");
    expectUsageError(twfx({"render", "Balance", "--size", "4x4", "-o", file("out.png")}),
                     "\"Balance\" needs an input image");
    expectUsageError(renderWith({"--size", "4x4"}), "--size is for a generator without -i");
    for (const char* size : {"1920", "0x4", "4x", "x4", "4x4x4", "70000x4", "-4x4"}) {
        expectUsageError(twfx({"render", "Ramp", "--size", size, "-o", file("out.png")}),
                         "--size takes WIDTHxHEIGHT");
    }
}

TEST_F(CommandLine, BadOptionValues) {
    expectUsageError(renderWith({"--depth", "12"}), "--depth must be 8, 16 or 32, not \"12\"");
    expectUsageError(renderWith({"--order", "rgba"}), "--order must be argb or bgra, not \"rgba\"");
    expectUsageError(renderWith({"--alpha", "linear"}), "--alpha must be straight or premultiplied");
    for (const char* factor : {"0", "1.5", "-0.5", "half", "0.5,0.5,0.5", "0.5,"})
        expectUsageError(renderWith({"--downsample", factor}), "--downsample takes X or X,Y");
    for (const char* threads : {"0", "1025", "4294967296"})
        expectUsageError(renderWith({"--threads", threads}),
                         "--threads must be a whole number from 1 to 1024");
    expectUsageError(renderWith({"--frames", "5-2"}), "--frames takes FIRST-LAST");
    expectUsageError(renderWith({"--set", "Gamma"}), "--set takes \"LABEL=VALUE\", not \"Gamma\"");
    expectUsageError(renderWith({"--layer", "=x.png"}), "--layer takes \"LABEL=FILE\"");
    expectUsageError(renderWith({"--speed", "2"}), "unknown option --speed");
    expectUsageError(renderWith({"--depth=8", "--depth", "16"}), "--depth is given twice");
    expectUsageError(renderWith({"Balance RGB"}), "unexpected argument \"Balance RGB\"");
}

TEST_F(CommandLine, OptionsTakeTheirValueAfterAnEqualsSign) {
    const RunResult result = renderWith({"--depth=16", "--order=BGRA", "--threads=2", "--set=Gamma=1"});
    EXPECT_EQ(result.code, 0) << result.err;
}

TEST_F(CommandLine, SequencesNeedPatternsAndFrames) {
    expectUsageError(renderWith({"--frames", "1-3"}), "--frames needs an input named with a frame number");
    expectUsageError(twfx({"render", "Balance", "-i", file("in.%04d.png"), "-o", file("out.png")}),
                     "give its frames with --frames");
    expectUsageError(
        twfx({"render", "Balance", "-i", file("in.%04d.png"), "-o", file("out.png"), "--frames", "1-2"}),
        "the output of a sequence needs a frame number pattern");
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::Twfx
