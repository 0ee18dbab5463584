// Effects and parameters as a user names them: listings, case-insensitive names, ambiguous and unknown
// names (exit code 5).
#include <gmock/gmock.h>

#include <array>
#include <sstream>

#include "tests/tools/TwfxFixture.h"
#include "tools/common/ParameterLabels.h"
#include "tools/common/ParameterListing.h"
#include "tools/common/ToolError.h"
#include "tools/twfx/EffectLookup.h"

namespace Tw::Tools::Twfx {
namespace TW_FILE_LOCAL {

using Param::ParamRecord;
using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::Not;

class Names : public TwfxFixture {};

// Runs `find` and hands back the ToolError it throws.
template <class Find>
ToolError errorOf(Find find) {
    try {
        find();
    } catch (const ToolError& error) {
        return error;
    }
    ADD_FAILURE() << "no error";
    return ToolError(ExitCode::Success, "");
}

TEST_F(Names, ListShowsDisplayNameShortNameAndInputs) {
    const RunResult result = twfx({"list"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, ContainsRegex("\nBalance +Balance +filter\n"));
    EXPECT_THAT(result.out, ContainsRegex("\nBalance RGB +BalanceRGB +filter\n"));
}

TEST_F(Names, EffectsGoByDisplayOrShortNameInAnyCase) {
    for (const char* name : {"Balance RGB", "balancergb", "BALANCE rgb"})
        EXPECT_STREQ(findEffect(name).entryName, "BalanceRGBEntry") << name;
    EXPECT_STREQ(findEffect("balance").entryName, "BalanceEntry");

    const RunResult result = twfx({"params", "Posterize"});
    EXPECT_EQ(result.code, 5);
    EXPECT_THAT(result.err, HasSubstr("unknown effect \"Posterize\""));
}

TEST_F(Names, ANameOfTwoEffectsIsAnErrorThatListsBoth) {
    const EffectEntry balance = Plugins::effectRegistry<StandaloneHost>()[0];
    const EffectEntry effects[] = {{"MaxEntry", "MinMax", balance.inputs, balance.create, {}, {}},
                                   {"MinEntry", "MinMax", balance.inputs, balance.create, {}, {}}};
    const ToolError error = errorOf([&] { findEffect("minmax", effects); });
    EXPECT_EQ(error.code(), ExitCode::UnknownName);
    EXPECT_THAT(error.what(), AllOf(HasSubstr("\"minmax\" names 2 effects"), HasSubstr("Max, Min")));
    EXPECT_STREQ(findEffect("Min", effects).entryName, "MinEntry");
}

TEST_F(Names, ParamsShowsPercentSlidersInPercent) {
    const RunResult result = twfx({"params", "Balance"});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.out, ContainsRegex("\nFrom High +slider +100.0% +0.0% to 100.0%\n"));
    EXPECT_THAT(result.out, ContainsRegex("\nGamma +slider +1.00 +0.00 to 5.00\n"));
    EXPECT_THAT(result.out, ContainsRegex("\nClamp +checkbox +off\n"));
}

// Group starts head their members; group ends and records without a control are not shown.
TEST_F(Names, ParameterTableIndentsGroupsAndHidesStructure) {
    Param::Parameters params;
    params.records = {ParamRecord::groupStart("Sharpen"), ParamRecord::intSlider("Amount", 3, 0, 10),
                      ParamRecord::groupEnd(), ParamRecord{},
                      ParamRecord::popup("Mode", {"Normal", "Screen"}, 1)};
    std::ostringstream table;
    writeParameterTable(table, params);
    EXPECT_THAT(table.str(),
                ContainsRegex("\nSharpen +group\n  Amount +integer slider +3 +0 to 10\nMode +popup +"
                              "Screen +Normal, Screen\n$"));
}

class Labels : public ::testing::Test {
protected:
    void SetUp() override {
        params.records = {ParamRecord::groupStart("Sharpen"),
                          ParamRecord::floatSlider("Amount", 0, 0, 100),
                          ParamRecord::groupEnd(),
                          ParamRecord::groupStart("Blur"),
                          ParamRecord::floatSlider("Amount", 0, 0, 100),
                          ParamRecord::intSlider("Radius", 1, 0, 9),
                          ParamRecord::groupEnd(),
                          ParamRecord::floatSlider("Detail", 0, 0, 100)};
    }
    Param::Parameters params;
};

TEST_F(Labels, ALabelUsedTwiceIsNamedWithItsGroup) {
    EXPECT_EQ(findParameter(params, "Sharpen/Amount", "Fx"), 1);
    EXPECT_EQ(findParameter(params, "blur/amount", "Fx"), 4);
    EXPECT_EQ(findParameter(params, "radius", "Fx"), 5);
    EXPECT_EQ(findParameter(params, "Blur/Radius", "Fx"), 5);
    const ToolError error = errorOf([&] { findParameter(params, "Amount", "Fx"); });
    EXPECT_EQ(error.code(), ExitCode::UnknownName);
    EXPECT_THAT(error.what(), AllOf(HasSubstr("Sharpen/Amount"), HasSubstr("Blur/Amount")));

    // After a group's end a record stands outside it, and a bare label names the one outside every group.
    EXPECT_EQ(findParameter(params, "Detail", "Fx"), 7);
    EXPECT_THAT(errorOf([&] { findParameter(params, "Blur/Detail", "Fx"); }).what(),
                HasSubstr("no parameter"));
    params.records.push_back(ParamRecord::floatSlider("Amount", 0, 0, 100));
    EXPECT_EQ(findParameter(params, "Amount", "Fx"), 8);
    EXPECT_EQ(findParameter(params, "Sharpen/Amount", "Fx"), 1);
}

TEST_F(Labels, GroupsAndUnknownLabelsNameNoParameter) {
    for (const char* key : {"Sharpen", "Size", "Sharpen/Radius"}) {
        const ToolError error = errorOf([&] { findParameter(params, key, "Fx"); });
        EXPECT_EQ(error.code(), ExitCode::UnknownName) << key;
        EXPECT_THAT(error.what(), HasSubstr("\"Fx\" has no parameter \"" + std::string(key) + "\""));
    }
}

TEST_F(Names, UnknownLabelsInSetAndLayer) {
    writeImage<uint8_t>(file("in.png"), {1, 1, 3, {10, 20, 30}});
    for (const auto& [option, value, message] : std::vector<std::array<std::string, 3>>{
             {"--set", "Brightness=5", "\"Balance\" has no parameter \"Brightness\""},
             {"--layer", "Matte=" + file("in.png"), "\"Balance\" has no parameter \"Matte\""},
             {"--layer", "Gamma=" + file("in.png"), "\"Gamma\" is not a layer parameter"}}) {
        const RunResult result =
            twfx({"render", "Balance", "-i", file("in.png"), "-o", file("out.png"), option, value});
        EXPECT_EQ(result.code, 5) << value;
        EXPECT_THAT(result.err, HasSubstr(message));
    }
    EXPECT_THAT(filesPresent(), Not(::testing::Contains("out.png")));
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::Twfx
