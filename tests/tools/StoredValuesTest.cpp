// Files kept as they are: every effect at its neutral settings gives back its input file bit for bit,
// translucent pixels and 16-bit values that the frame's white of 32768 can't hold apart included; and
// --alpha premultiplied hands the effect colour multiplied by alpha, dividing it again on the way out.
#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "tests/tools/TwfxFixture.h"
#include "tools/twfx/EffectLookup.h"

namespace Tw::Tools::Twfx {
namespace TW_FILE_LOCAL {

using ::testing::ElementsAre;

// The pixel values of a file in its own data format, as stored.
std::vector<std::byte> storedValues(const std::string& path) {
    OIIO::ImageSpec config;
    config.attribute("oiio:UnassociatedAlpha", 1);
    auto input = OIIO::ImageInput::open(path, &config);
    EXPECT_TRUE(input) << path;
    if (!input) return {};
    std::vector<std::byte> values(input->spec().image_bytes());
    EXPECT_TRUE(input->read_image(0, 0, 0, input->spec().nchannels, input->spec().format, values.data()));
    return values;
}

class StoredValues : public TwfxFixture {
protected:
    // 13 x 7 RGBA, every value and alpha from a running sequence that visits the whole range of `white`,
    // alpha 0 and full alpha among them.
    template <class T>
    void writeVaried(const std::string& name, double white, OIIO::TypeDesc format) {
        TestImage<T> image{13, 7, 4, {}};
        for (int i = 0; i < 13 * 7 * 4; ++i) {
            const double step = static_cast<double>((i * 7919) % 1031) / 1030;
            image.values.push_back(static_cast<T>(i % 4 == 3 && i % 3 == 0 ? (i % 2) * white : step * white));
        }
        writeImage(file(name), image, format);
    }

    RunResult render(const std::string& effect, const std::string& in, const std::string& out,
                     std::vector<std::string> extra) {
        return twfx({"render", effect, "-i", file(in), "-o", file(out)}, extra);
    }
};

TEST_F(StoredValues, EveryEffectAtNeutralSettingsGivesBackItsFile) {
    writeVaried<uint8_t>("in8.png", 255, OIIO::TypeDesc::UINT8);
    writeVaried<uint16_t>("in16.png", 65535, OIIO::TypeDesc::UINT16);
    writeVaried<uint8_t>("in.tif", 255, OIIO::TypeDesc::UINT8);
    writeVaried<float>("in.exr", 2, OIIO::TypeDesc::HALF);
    for (const EffectEntry& effect : Plugins::effectRegistry<StandaloneHost>()) {
        if (effect.inputs == Plugins::EffectInputs::Generator || !effect.hasNeutralSettings) continue;
        std::vector<std::string> settings;
        for (const char* setting : effect.neutralSettings)
            settings.insert(settings.end(), {"--set", setting});
        for (const char* in : {"in8.png", "in16.png", "in.tif", "in.exr"}) {
            SCOPED_TRACE(std::string(effect.displayName) + " on " + in);
            const std::string out = std::string("out.") + in;
            const RunResult result = render(std::string(effect.shortName()), in, out, settings);
            ASSERT_EQ(result.code, 0) << result.err;
            EXPECT_TRUE(storedValues(file(out)) == storedValues(file(in)));
        }
    }
}

TEST_F(StoredValues, PremultipliedAlphaConvertsOnTheWayInAndOut) {
    // "From High=50" doubles colour. Straight, 100 becomes 200 whatever the alpha. Premultiplied by alpha
    // 128: 100 * 128 / 255 = 50.2, so 50, doubled 100, divided again 100 * 255 / 128 = 199.2, so 199.
    // Where alpha is 0, the effect sees black, leaves it so, and the file keeps its colour. Alpha itself
    // goes through.
    writeImage<uint8_t>(file("in.png"),
                        {3, 1, 4, {100, 100, 100, 128, 100, 100, 100, 0, 100, 100, 100, 255}});
    const std::vector<std::string> doubled = {"--set", "From High=50"};
    ASSERT_EQ(render("Balance", "in.png", "straight.png", doubled).code, 0);
    EXPECT_THAT(readImage<uint8_t>(file("straight.png")).values,
                ElementsAre(200, 200, 200, 128, 200, 200, 200, 0, 200, 200, 200, 255));

    std::vector<std::string> premultiplied = doubled;
    premultiplied.insert(premultiplied.end(), {"--alpha", "premultiplied"});
    ASSERT_EQ(render("Balance", "in.png", "premultiplied.png", premultiplied).code, 0);
    EXPECT_THAT(readImage<uint8_t>(file("premultiplied.png")).values,
                ElementsAre(199, 199, 199, 128, 100, 100, 100, 0, 200, 200, 200, 255));

    // OpenEXR stores premultiplied colour already: it reaches the effect as it is.
    writeImage<float>(file("in.exr"), {1, 1, 4, {0.25f, 0.25f, 0.25f, 0.5f}});
    ASSERT_EQ(render("Balance", "in.exr", "out.exr", premultiplied).code, 0);
    EXPECT_THAT(readImage<float>(file("out.exr")).values, ElementsAre(0.5f, 0.5f, 0.5f, 0.5f));
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::Twfx
