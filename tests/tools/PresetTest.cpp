// Presets: saved by `twfx params --save` or from a list, loaded by `--preset` before the --set options.
#include <gmock/gmock.h>

#include <cmath>
#include <fstream>
#include <sstream>
#include <tuple>

#include "tests/support/TestLayer.h"
#include "tests/tools/TwfxFixture.h"
#include "tools/common/ParameterLabels.h"
#include "tools/common/ParameterValues.h"
#include "tools/common/ToolError.h"
#include "tools/twfx/EffectLookup.h"
#include "tools/twfx/Presets.h"

namespace Tw::Tools::Twfx {
namespace TW_FILE_LOCAL {

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
        const RunResult result = twfx({"render", "Balance", "-i", file("in.png"), "-o", file(out)}, extra);
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

// Every effect's preset, saved with its busy settings, loads back to the same values: its group lines, layer
// lines and every kind of value included.
TEST_F(Preset, EveryEffectsSavedPresetLoadsBack) {
    for (const EffectEntry& effect : Plugins::effectRegistry<StandaloneHost>()) {
        SCOPED_TRACE(effect.displayName);
        Param::Parameters saved, loaded;
        defineParameters(effect, saved);
        defineParameters(effect, loaded);
        ::Tw::Test::applySettings(saved, effect.busySettings, effect.displayName);
        std::ostringstream warnings;
        savePreset(saved, file("saved.txt"), effect.displayName);
        loadPreset(loaded, file("saved.txt"), effect.displayName, warnings);
        EXPECT_EQ(warnings.str(), "");
        for (std::size_t i = 0; i < saved.records.size(); ++i) {
            // Lines go to every record of their label, as the list reads its own file: a label that
            // occurs twice ("Amount" of two groups) takes the value of its last line.
            std::size_t last = i;
            for (std::size_t j = i + 1; j < saved.records.size(); ++j)
                if (saved.records[j].label == saved.records[i].label) last = j;
            // The file holds numbers to six significant digits, as the hosts' own preset files do.
            const auto& numbers = saved.records[last].value.numbers;
            ASSERT_EQ(loaded.records[i].value.numbers.size(), numbers.size());
            for (std::size_t k = 0; k < numbers.size(); ++k)
                EXPECT_NEAR(loaded.records[i].value.numbers[k], numbers[k], 5e-6 * std::abs(numbers[k]))
                    << saved.records[i].label;
            EXPECT_EQ(loaded.records[i].value.text, saved.records[last].value.text) << saved.records[i].label;
        }
    }
}

// Each fault of a preset for "Balance" stops the render with its exit code and a message naming the line.
TEST_F(Preset, FaultsNameTheFileAndLine) {
    const std::string header = "Plugin Name: Balance\nVersion Number: 4\nGamma: 2\n";
    const std::vector<std::tuple<std::string, int, std::string>> faults = {
        {header + "Brightness: 5\n", 5, ":4: \"Balance\" has no parameter \"Brightness\""},
        {header + "\nGamma: fast\n", 6, ":5: \"Gamma\" takes a number, not \"fast\""},
        {header + "Clamp: maybe\n", 6, ":4: \"Clamp\" takes on or off, not \"maybe\""},
        {header + "From Low: 1e999\n", 6, ":4: \"From Low\" takes a number in percent"},
        {header + "Gamma 2\n", 3, ":4: expected \"LABEL: VALUE\""},
        {header + "Gamma: " + std::string(70000, '1'), 3, ":4: not a preset: the line is longer than 65536"},
        {"Gamma: 2\nClamp: true\n", 3, ":1: not a preset: line 1 must be \"Plugin Name: ...\""},
        {"Plugin Name: Balance\n", 3, ":2: not a preset: line 2 must be \"Version Number: ...\""}};
    for (const auto& [text, code, message] : faults) {
        std::ofstream(file("look.txt")) << text;
        const RunResult result = twfx(
            {"render", "Balance", "-i", file("in.png"), "-o", file("out.png"), "--preset", file("look.txt")});
        EXPECT_EQ(result.code, code) << text;
        EXPECT_THAT(result.err, HasSubstr(file("look.txt") + message)) << text;
    }
    EXPECT_FALSE(std::filesystem::exists(file("out.png")));
}

// Values beyond the range take the nearest bound, as from --set, never the value itself.
TEST_F(Preset, ValuesOutsideTheRangeTakeTheBoundWithAWarning) {
    std::ofstream(file("look.txt")) << "Plugin Name: Balance\r\nVersion Number: 4\r\nTo High: 180\r\n"
                                       "Gamma: -3\r\n";
    const RunResult result = twfx(
        {"render", "Balance", "-i", file("in.png"), "-o", file("out.png"), "--preset", file("look.txt")});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_THAT(result.err, HasSubstr("warning: " + file("look.txt") +
                                      ":3: To High 180 is outside its range; "
                                      "using 100"));
    EXPECT_THAT(result.err, HasSubstr(file("look.txt") + ":4: Gamma -3 is outside its range; using 0"));
    EXPECT_EQ(readImage<uint8_t>(file("out.png")).values,
              render("set.png", {"--set", "To High=100", "--set", "Gamma=0"}));
}

// Text, colours and points as the list writes them; labels of another effect's preset are skipped.
TEST_F(Preset, TextColoursPointsAndAnotherEffectsLabels) {
    Param::Parameters params;
    params.records = {Param::ParamRecord::text("Note", ""), Param::ParamRecord::color("Tint", {0, 0, 0}),
                      Param::ParamRecord::point("Centre", {0.5, 0.5})};
    std::ostringstream warnings;
    const auto apply = [&](const std::string& lines, const std::string& effect = "Fx") {
        std::istringstream in("Plugin Name: " + effect + "\nVersion Number: 4\n" + lines);
        applyPreset(params, in, "p", "Fx", warnings);
    };
    apply("Note: \"say \\\"hi\\\"\"\nTint: 0.25 0.5 2 \nCentre: -0.5 1.5 \n");
    EXPECT_EQ(params.getString(0), "say \"hi\"");
    EXPECT_EQ(params.getColor(1), (Param::ParamColor{0.25, 0.5, 1}));
    EXPECT_EQ(params.records[2].value.asPoint(), (Param::ParamPoint{-0.5, 1.5}));
    EXPECT_THAT(warnings.str(), HasSubstr("p:4: Tint 2 is outside its range; using 1"));

    for (const char* text : {"Note: unquoted", "Note: \"open", "Note: \"a\" b", "Tint: 0.5 0.5"}) {
        try {
            apply(std::string(text) + "\n");
            ADD_FAILURE() << text;
        } catch (const ToolError& error) {
            EXPECT_EQ(error.code(), ExitCode::BadValue) << text;
            EXPECT_THAT(error.what(), ::testing::StartsWith("p:3: ")) << text;
        }
    }

    apply("Radius: 4\nNote: \"kept\"\n", "Other");
    EXPECT_THAT(warnings.str(), HasSubstr("p:3: \"Fx\" has no parameter \"Radius\""));
    EXPECT_EQ(params.getString(0), "kept");
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::Twfx
