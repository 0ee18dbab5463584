// Presets: saved by `twfx params --save` or from a list, loaded by `--preset` before the --set options.
#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

#include "tests/tools/TwfxFixture.h"
#include "tools/common/ParameterLabels.h"
#include "tools/common/ParameterValues.h"
#include "tools/twfx/EffectLookup.h"
#include "tools/twfx/Presets.h"

namespace Tw::Tools::Twfx {
namespace {

using ::testing::HasSubstr;

class Preset : public TwfxFixture {
protected:
    void SetUp() override {
        TwfxFixture::SetUp();
        TestImage<uint8_t> image{5, 1, 3, {}};
        for (int i = 0; i < 15; ++i)
            image.values.push_back(static_cast<uint8_t>(i * 17));
        writeImage(file("in.png"), image);
    }

    std::vector<uint8_t> render(const std::string& out, std::vector<std::string> extra) {
        std::vector<std::string> arguments = {"render", "Balance", "-i", file("in.png"), "-o", file(out)};
        arguments.insert(arguments.end(), extra.begin(), extra.end());
        const RunResult result = twfx(arguments);
        EXPECT_EQ(result.code, 0) << result.err;
        return readImage<uint8_t>(file(out)).values;
    }

    // A preset of "Balance" with `settings` applied, as LABEL=VALUE.
    void savePresetOf(const std::string& path,
                      const std::vector<std::pair<std::string, std::string>>& settings) {
        Param::Parameters params;
        defineParameters(findEffect("Balance"), params);
        std::ostringstream warnings;
        for (const auto& [label, value] : settings)
            setParameterFromText(params, findParameter(params, label, "Balance"), value, warnings);
        savePreset(params, path, "Balance");
    }
};

TEST_F(Preset, ParamsSavesTheDefaultsInTheTextFormat) {
    ASSERT_EQ(twfx({"params", "balance", "--save", file("balance.txt")}).code, 0);
    std::ifstream saved(file("balance.txt"));
    std::stringstream text;
    text << saved.rdbuf();
    EXPECT_EQ(text.str(), "Plugin Name: Balance\nVersion Number: " TW_TEST_VERSION
                          "\nFrom Low: 0\nFrom High: 100\nTo Low: 0\nTo High: 100\nGamma: 1\nClamp: false\n");

    const RunResult result = twfx({"params", "Balance", "--save", file("none/balance.txt")});
    EXPECT_EQ(result.code, 4);
    EXPECT_THAT(result.err, HasSubstr("cannot write " + file("none/balance.txt")));
}

TEST_F(Preset, ALoadedPresetRendersAsTheSameSettings) {
    savePresetOf(file("look.txt"), {{"From Low", "10"}, {"To High", "80"}, {"Clamp", "on"}});
    const auto fromPreset = render("preset.png", {"--preset", file("look.txt")});
    const auto fromSettings =
        render("set.png", {"--set", "From Low=10", "--set", "To High=80", "--set", "Clamp=on"});
    EXPECT_EQ(fromPreset, fromSettings);
    EXPECT_NE(fromPreset, readImage<uint8_t>(file("in.png")).values);
}

TEST_F(Preset, SettingsApplyAfterThePreset) {
    savePresetOf(file("look.txt"), {{"From Low", "10"}, {"To High", "80"}});
    const auto overridden = render("over.png", {"--set", "To High=50", "--preset", file("look.txt")});
    EXPECT_EQ(overridden, render("set.png", {"--set", "From Low=10", "--set", "To High=50"}));
}

TEST_F(Preset, APresetOfAnotherEffectLoadsWithAWarning) {
    std::ofstream(file("rgb.txt")) << "Plugin Name: Balance RGB\nVersion Number: 4\nTo Low: 20\n";
    const RunResult result =
        twfx({"render", "Balance", "-i", file("in.png"), "-o", file("out.png"), "--preset", file("rgb.txt")});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.err, HasSubstr("warning: preset " + file("rgb.txt") + " is for \"Balance RGB\""));
    EXPECT_EQ(readImage<uint8_t>(file("out.png")).values, render("set.png", {"--set", "To Low=20"}));
}

}  // namespace
}  // namespace Tw::Tools::Twfx
