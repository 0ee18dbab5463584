// Further layers through the tool, with "Blend": a layer file of another size keeps its own rectangle at
// the frame's origin, neither moved nor scaled.
#include <gmock/gmock.h>

#include "tests/tools/TwfxFixture.h"

namespace Tw::Tools::Twfx {
namespace TW_FILE_LOCAL {

class Layers : public TwfxFixture {
protected:
    // A 6 x 4 input whose grey is 20 x + 40 y, and a white layer of `width` x `height`; both opaque.
    void SetUp() override {
        TwfxFixture::SetUp();
        TestImage<uint8_t> in{6, 4, 3, {}};
        for (int y = 0; y < 4; ++y)
            for (int x = 0; x < 6; ++x)
                in.values.insert(in.values.end(), 3, greyAt(x, y));
        writeImage(file("in.png"), in);
    }
    static uint8_t greyAt(int x, int y) { return static_cast<uint8_t>(20 * x + 40 * y); }

    void writeWhiteLayer(const std::string& name, int width, int height) {
        writeImage(file(name),
                   TestImage<uint8_t>{width, height, 3, std::vector<uint8_t>(width * height * 3, 255)});
    }

    TestImage<uint8_t> renderBlend(std::vector<std::string> extra) {
        const RunResult result =
            twfx({"render", "Blend", "-i", file("in.png"), "-o", file("out.png")}, extra);
        EXPECT_EQ(result.code, 0) << result.err;
        return readImage<uint8_t>(file("out.png"));
    }
};

TEST_F(Layers, ASmallerLayerLiesAtTheOriginAndTheInputShowsAroundIt) {
    writeWhiteLayer("small.png", 3, 2);
    const TestImage<uint8_t> out =
        renderBlend({"--layer", "Layer=" + file("small.png"), "--set", "Opacity=50"});
    ASSERT_EQ(out.width, 6);
    ASSERT_EQ(out.height, 4);
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 6; ++x) {
            // Half of white over the grey: (255 - v) / 2 + v + 0.5, truncated.
            const int v = greyAt(x, y);
            const int want = x < 3 && y < 2 ? (256 + v) / 2 : v;
            EXPECT_EQ(out.values[static_cast<std::size_t>((y * 6 + x) * 3)], want) << x << "," << y;
        }
    }
}

TEST_F(Layers, ALargerLayerIsCutToTheInput) {
    writeWhiteLayer("large.png", 9, 7);
    const TestImage<uint8_t> out =
        renderBlend({"--layer", "Layer=" + file("large.png"), "--set", "Blend Mode=Darken"});
    EXPECT_EQ(out.width, 6);
    EXPECT_EQ(out.height, 4);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 6; ++x)
            EXPECT_EQ(out.values[static_cast<std::size_t>((y * 6 + x) * 3)], greyAt(x, y)) << x << "," << y;
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::Twfx
