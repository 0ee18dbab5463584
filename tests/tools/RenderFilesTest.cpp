// What a render does with files: unreadable inputs (exit 3) and unwritable outputs (exit 4) named in
// the message, no output file after any failure or a cancel, sizes under downsampling, sequences and the
// memory their frames share.
#include <gmock/gmock.h>

#include <fstream>
#include <sstream>
#include <tuple>

#include "tests/tools/TwfxFixture.h"
#include "tools/twfx/FrameRenderer.h"

namespace Tw::Tools::Twfx {
namespace TW_FILE_LOCAL {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class RenderFiles : public TwfxFixture {
protected:
    void SetUp() override {
        TwfxFixture::SetUp();
        TestImage<uint8_t> image{8, 6, 3, {}};
        for (int i = 0; i < 8 * 6 * 3; ++i)
            image.values.push_back(static_cast<uint8_t>(i * 5));
        writeImage(file("in.png"), image);
    }

    RunResult render(const std::string& in, const std::string& out, std::vector<std::string> extra = {}) {
        return twfx({"render", "Balance", "-i", in, "-o", out, "--set", "To Low=10"}, extra);
    }
};

// Unreadable inputs (exit 3) and unwritable outputs (exit 4), found before the render: no output file.
TEST_F(RenderFiles, UnreadableInputsAndUnwritableOutputsNameTheFile) {
    std::ofstream(file("text.png")) << "not an image";
    struct Case {
        std::string in, out, preset;
        int code;
        std::string message;
    };
    for (const Case& c : std::vector<Case>{
             {"missing.png", "out.png", "", 3, "cannot read " + file("missing.png") + ": no such file"},
             {"text.png", "out.png", "", 3, "cannot read " + file("text.png")},
             {"in.png", "out.png", "missing.txt", 3, "cannot read preset " + file("missing.txt")},
             {"in.png", "no/such/dir/out.png", "", 4,
              "cannot write " + file("no/such/dir/out.png") + ": no directory"},
             {"in.png", "out.xyz", "", 4, "no image format goes by the extension \".xyz\""}}) {
        const std::vector<std::string> preset = {"--preset", file(c.preset)};
        const RunResult result =
            render(file(c.in), file(c.out), c.preset.empty() ? std::vector<std::string>{} : preset);
        EXPECT_EQ(result.code, c.code) << c.message;
        EXPECT_THAT(result.err, HasSubstr(c.message));
    }
    EXPECT_THAT(filesPresent(), ElementsAre("in.png", "text.png"));
}

TEST_F(RenderFiles, AFailedWriteLeavesNoFileBehind) {
    // A directory with the output's name: the image is written, but can't take the name.
    std::filesystem::create_directory(file("out.png"));
    const RunResult result = render(file("in.png"), file("out.png"));
    EXPECT_EQ(result.code, 4);
    EXPECT_THAT(result.err, HasSubstr("cannot write " + file("out.png")));
    EXPECT_THAT(filesPresent(), ElementsAre("in.png", "out.png"));
    EXPECT_TRUE(std::filesystem::is_directory(file("out.png")));
}

TEST_F(RenderFiles, ACancelledRenderWritesNothingAndKeepsAnEarlierOutput) {
    std::ofstream(file("out.png")) << "earlier";
    const std::atomic<bool> cancel{true};
    std::vector<std::string> arguments = {"render", "Balance",       "-i",    file("in.png"),
                                          "-o",     file("out.png"), "--set", "To Low=10"};
    // With the bar on: the render stops at its first check, before it reports any progress.
    const RunResult result = twfx(arguments, &cancel, true);
    EXPECT_EQ(result.code, 130);
    EXPECT_EQ(result.err, "twfx: cancelled\n");
    EXPECT_THAT(filesPresent(), ElementsAre("in.png", "out.png"));
    std::string kept;
    std::getline(std::ifstream(file("out.png")), kept);
    EXPECT_EQ(kept, "earlier");
}

TEST_F(RenderFiles, DownsampledRendersAreSmaller) {
    for (const auto& [factors, width, height] : {std::tuple{"0.5", 4, 3}, std::tuple{"0.25,1", 2, 6}}) {
        ASSERT_EQ(render(file("in.png"), file("small.png"), {"--downsample", factors}).code, 0);
        const TestImage<uint8_t> out = readImage<uint8_t>(file("small.png"));
        EXPECT_EQ(std::pair(out.width, out.height), std::pair(width, height)) << factors;
    }
}

// The default ramp runs from yellow at the left edge to blue beyond the right one, its last piece
// from magenta: blue throughout, no green.
TEST_F(RenderFiles, AGeneratorPaintsAFrameOfTheGivenSizeOrOfTheInputs) {
    ASSERT_EQ(twfx({"render", "Ramp", "--size", "20x10", "-o", file("ramp.png")}).code, 0);
    const TestImage<uint8_t> ramp = readImage<uint8_t>(file("ramp.png"));
    ASSERT_EQ(ramp.width, 20);
    ASSERT_EQ(ramp.height, 10);
    ASSERT_EQ(ramp.channels, 4);
    const auto pixel = [&](int x, int y) {
        const auto* p = &ramp.values[static_cast<std::size_t>((y * 20 + x) * 4)];
        return std::vector<int>{p[0], p[1], p[2], p[3]};
    };
    EXPECT_EQ(pixel(0, 9), (std::vector<int>{255, 255, 0, 255}));
    EXPECT_EQ(pixel(19, 0)[1], 0);
    EXPECT_EQ(pixel(19, 0)[2], 255);
    EXPECT_EQ(pixel(19, 0)[3], 255);

    ASSERT_EQ(twfx({"render", "Ramp", "--size", "20x10", "--downsample", "0.5", "-o", file("half.png")}).code,
              0);
    EXPECT_EQ(readImage<uint8_t>(file("half.png")).width, 10);
    ASSERT_EQ(twfx({"render", "Ramp", "-i", file("in.png"), "-o", file("over.png")}).code, 0);
    EXPECT_EQ(readImage<uint8_t>(file("over.png")).height, 6);
}

TEST_F(RenderFiles, SequencesRenderEachFrameToItsNumber) {
    for (const char* frame : {"in.0009.png", "in.0010.png"})
        std::filesystem::copy_file(file("in.png"), file(frame));
    RunResult result = render(file("in.%04d.png"), file("out_%d.png"), {"--frames", "9-10"});
    ASSERT_EQ(result.code, 0) << result.err;
    EXPECT_TRUE(std::filesystem::exists(file("out_9.png")));
    EXPECT_TRUE(std::filesystem::exists(file("out_10.png")));

    // A missing frame stops the run there, with the frames before it written.
    result = render(file("in.%04d.png"), file("seq.%04d.png"), {"--frames", "10-11"});
    EXPECT_EQ(result.code, 3);
    EXPECT_THAT(result.err, HasSubstr("in.0011.png"));
    EXPECT_TRUE(std::filesystem::exists(file("seq.0010.png")));
    EXPECT_FALSE(std::filesystem::exists(file("seq.0011.png")));
}

TEST_F(RenderFiles, FramesOfASequenceAfterTheFirstTakeNoNewPixelMemory) {
    for (const char* frame : {"in.0001.png", "in.0002.png", "in.0003.png"})
        std::filesystem::copy_file(file("in.png"), file(frame));
    RenderRequest request;
    request.effect = "Smoothing";
    request.input = file("in.%04d.png");
    request.output = file("out.%04d.png");
    request.frames = FrameRange{1, 3};
    const EffectEntry& effect = findEffect(request.effect);
    Param::Parameters params;
    defineParameters(effect, params);
    std::ostringstream out, err;
    const Console console{out, err};
    FrameRenderer renderer(request, effect, params, {}, console);

    renderer.render(1, [](double) {});
    const std::size_t firstFrame = renderer.effect().allocationCount();
    EXPECT_GT(firstFrame, 0u);
    renderer.render(2, [](double) {});
    renderer.render(3, [](double) {});
    EXPECT_EQ(renderer.effect().allocationCount(), firstFrame);
    EXPECT_TRUE(std::filesystem::exists(file("out.0003.png")));
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::Twfx
