// Pixels through the whole tool: files written here, rendered through "Balance", and the output files
// compared with values worked out from the effect's formula, at every depth and in both orders.
//
// The settings map From 25..75 % to To 12.5..87.5 %: scale = 0.75 / 0.5 = 1.5 and offset = 0.125 - 0.25
// * 1.5 = -0.25, all exact in binary, so r = 1.5 v - 0.25 white with no rounding of the factors.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "tests/tools/TwfxFixture.h"
#include "tools/common/FrameConversion.h"

namespace Tw::Tools::Twfx {
namespace TW_FILE_LOCAL {

const std::vector<std::string> kMap = {"--set", "From Low=25", "--set", "From High=75",
                                       "--set", "To Low=12.5", "--set", "To High=87.5"};

double mapped(double v, double white) {
    return 1.5 * v - 0.25 * white;
}

// Integer depths round to nearest and clamp to 0..white.
double mappedInteger(double v, double white) {
    return std::clamp(std::round(mapped(v, white)), 0.0, white);
}

class RenderPixels : public TwfxFixture {
protected:
    RunResult render(const std::string& in, const std::string& out, std::vector<std::string> extra = {}) {
        extra.insert(extra.begin(), kMap.begin(), kMap.end());
        return twfx({"render", "Balance", "-i", file(in), "-o", file(out)}, extra);
    }
};

// At 8 bits 1.5 v - 63.75 has a fraction of .25 or .75, so no value lies halfway between two. At 16 bits
// the frame's values, white 32768, are even so that 1.5 v is whole; the file holds them scaled to 65535.
// In float, above 1 stays above 1, and alpha goes through untouched.
TEST_F(RenderPixels, EachDepthFollowsTheFormulaInBothOrders) {
    TestImage<uint8_t> bytes{4, 2, 3, {}};
    for (int i = 0; i < 24; ++i)
        bytes.values.push_back(static_cast<uint8_t>(i * 11));
    writeImage(file("in.png"), bytes);
    const std::vector<double> frameValues = {0,     2,     5460,  8192,  8194, 16384,
                                             20000, 27306, 30000, 32768, 1000, 12346};
    TestImage<uint16_t> words{2, 2, 3, {}};
    for (const double v : frameValues)
        words.values.push_back(static_cast<uint16_t>(std::lround(v * 65535 / 32768)));
    writeImage(file("in16.png"), words);
    const TestImage<float> floats{
        3, 1, 4, {0.25f, 0.5f, 0.75f, 1.0f, 0.3f, 0.9f, 1.0f, 0.5f, 2.0f, 0.6f, 0.2f, 0.25f}};
    writeImage(file("in.exr"), floats);
    for (const char* order : {"argb", "bgra"}) {
        SCOPED_TRACE(order);
        ASSERT_EQ(render("in.png", "out.png", {"--order", order}).code, 0);
        const TestImage<uint8_t> out = readImage<uint8_t>(file("out.png"));
        ASSERT_EQ(out.values.size(), bytes.values.size());
        EXPECT_EQ(out.channels, 3);
        for (std::size_t i = 0; i < bytes.values.size(); ++i)
            EXPECT_EQ(out.values[i], mappedInteger(bytes.values[i], 255)) << i;

        ASSERT_EQ(render("in16.png", "out.tif", {"--order", order}).code, 0);
        const TestImage<uint16_t> out16 = readImage<uint16_t>(file("out.tif"));
        ASSERT_EQ(out16.values.size(), frameValues.size());
        for (std::size_t i = 0; i < frameValues.size(); ++i)
            EXPECT_EQ(out16.values[i], std::lround(mappedInteger(frameValues[i], 32768) * 65535 / 32768))
                << i;

        ASSERT_EQ(render("in.exr", "out.exr", {"--order", order}).code, 0);
        OIIO::ImageSpec spec;
        const TestImage<float> outFloat = readImage<float>(file("out.exr"), &spec);
        EXPECT_EQ(spec.format, OIIO::TypeDesc::FLOAT);
        ASSERT_EQ(outFloat.values.size(), floats.values.size());
        for (std::size_t i = 0; i < floats.values.size(); ++i) {
            const float v = floats.values[i];
            EXPECT_NEAR(outFloat.values[i], i % 4 == 3 ? v : mapped(v, 1), 1e-6) << i;
        }
    }
}

TEST_F(RenderPixels, DepthFollowsTheInputFileUnlessGiven) {
    // The gamma works on the values of the render's depth: white is 1 in float, and 255 to the power
    // 1/2 = 16 at 8 bits. So the output tells the depth the render ran at.
    writeImage<float>(file("half.exr"), {1, 1, 3, {1, 1, 1}}, OIIO::TypeDesc::HALF);
    writeImage<uint8_t>(file("byte.png"), {1, 1, 3, {255, 255, 255}});
    const auto gamma2 = [&](const std::string& in, const std::string& out, std::vector<std::string> extra) {
        EXPECT_EQ(
            twfx({"render", "Balance", "-i", file(in), "-o", file(out), "--set", "Gamma=2"}, extra).code, 0);
        return readImage<float>(file(out)).values.at(0);
    };
    EXPECT_NEAR(gamma2("half.exr", "float.exr", {}), 1.0, 1e-3);
    EXPECT_NEAR(gamma2("half.exr", "eight.exr", {"--depth", "8"}), 16.0 / 255, 1e-3);
    EXPECT_NEAR(gamma2("byte.png", "eight.png", {}), 16.0 / 255, 1e-6);
    EXPECT_NEAR(gamma2("byte.png", "float.png", {"--depth", "32"}), 1.0, 1e-6);
}

TEST_F(RenderPixels, SixteenBitFilesMapToTheFrameWhiteAndBack) {
    FileImage image;
    image.spec = OIIO::ImageSpec(4, 1, 1, OIIO::TypeDesc::UINT16);
    const uint16_t fileValues[] = {0, 32768, 65535, 1};
    image.pixels.resize(sizeof fileValues);
    std::memcpy(image.pixels.data(), fileValues, sizeof fileValues);

    const Image::ImageBuffer original = frameFromFile(image, frameFormat(16, ComponentOrder::Argb));
    const auto* argb = reinterpret_cast<const uint16_t*>(original.pixels());
    EXPECT_THAT(std::vector<uint16_t>({argb[1], argb[5], argb[9], argb[13]}),
                ::testing::ElementsAre(0, 16384, 32768, 1));
    EXPECT_EQ(argb[0], 32768);  // no alpha in the file: opaque

    // Back, where changed: a quarter of white, 8192, is 65535 / 4 = 16383.75, rounded 16384 in the file,
    // and a grey above white clamps. The file's 1 went to the frame's 1, which is 2 on the way back; left as
    // it was, it keeps its own value.
    Image::ImageBuffer frame = frameFromFile(image, frameFormat(16, ComponentOrder::Argb));
    std::fill_n(reinterpret_cast<uint16_t*>(frame.pixels()) + 5, 3, uint16_t{8192});
    std::fill_n(reinterpret_cast<uint16_t*>(frame.pixels()) + 9, 3, uint16_t{40000});
    storeFrame(frame, original, AlphaMode::Straight, image);
    const auto* stored = reinterpret_cast<const uint16_t*>(image.pixels.data());
    EXPECT_THAT(std::vector<uint16_t>(stored, stored + 4), ::testing::ElementsAre(0, 16384, 65535, 1));

    // And through the tool with neutral settings, the file values come back as they were.
    writeImage<uint16_t>(file("in.png"), {3, 1, 1, {0, 32768, 65535}});
    ASSERT_EQ(twfx({"render", "Balance", "-i", file("in.png"), "-o", file("out.png")}).code, 0);
    EXPECT_THAT(readImage<uint16_t>(file("out.png")).values, ::testing::ElementsAre(0, 32768, 65535));
}

TEST_F(RenderPixels, GreyAndAlphaFilesKeepTheirChannels) {
    writeImage<uint8_t>(file("grey.png"), {2, 1, 1, {100, 200}});
    ASSERT_EQ(render("grey.png", "grey-out.png").code, 0);
    const TestImage<uint8_t> grey = readImage<uint8_t>(file("grey-out.png"));
    EXPECT_EQ(grey.channels, 1);
    EXPECT_THAT(grey.values, ::testing::ElementsAre(mappedInteger(100, 255), mappedInteger(200, 255)));

    writeImage<uint8_t>(file("rgba.tif"), {1, 1, 4, {100, 150, 200, 255}});
    ASSERT_EQ(render("rgba.tif", "rgba-out.tif", {"--order", "bgra"}).code, 0);
    const TestImage<uint8_t> rgba = readImage<uint8_t>(file("rgba-out.tif"));
    EXPECT_EQ(rgba.channels, 4);
    EXPECT_THAT(rgba.values, ::testing::ElementsAre(mappedInteger(100, 255), mappedInteger(150, 255),
                                                    mappedInteger(200, 255), 255));
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::Twfx
