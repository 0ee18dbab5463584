// Values as a user types them, set into a list through its clamping setters; text that is no value of
// the kind is exit code 6, with a message that names the parameter and says what it takes.
#include <gmock/gmock.h>

#include <sstream>
#include <tuple>

#include "tools/common/ParameterValues.h"
#include "tools/common/ToolError.h"

namespace Tw::Tools::Twfx {
namespace TW_FILE_LOCAL {

using Param::ParamRecord;
using Param::ParamFlag::Percent;
using Param::ParamFlag::UnscaledPoint;
using ::testing::HasSubstr;

enum Index {
    kPercent,
    kFloat,
    kInt,
    kCheckbox,
    kPopup,
    kStringPopup,
    kColor,
    kPoint,
    kUnscaledPoint,
    kText,
    kLayer
};

class ParameterValues : public ::testing::Test {
protected:
    void SetUp() override {
        params.records = {ParamRecord::floatSlider("Opacity", 100, 0, 100, Percent),
                          ParamRecord::floatSlider("Gamma", 1, 0, 5),
                          ParamRecord::intSlider("Radius", 3, 1, 50),
                          ParamRecord::checkbox("Clamp", false),
                          ParamRecord::popup("Mode", {"Normal", "Screen", "Multiply"}, 0),
                          ParamRecord::stringPopup("Channel", {"Red", "Green"}, "Red"),
                          ParamRecord::color("Tint", {0, 0, 0}),
                          ParamRecord::point("Centre", {0.5, 0.5}),
                          ParamRecord::point("Anchor", {0, 0}, UnscaledPoint),
                          ParamRecord::text("Note", ""),
                          ParamRecord::layer("Matte")};
    }

    void set(int index, const std::string& text) { setParameterFromText(params, index, text, warnings); }

    // The exit code and message of setting `text`; Success when it is taken.
    std::pair<ExitCode, std::string> failureOf(int index, const std::string& text) {
        try {
            set(index, text);
        } catch (const ToolError& error) {
            return {error.code(), error.what()};
        }
        return {ExitCode::Success, ""};
    }

    Param::Parameters params;
    std::ostringstream warnings;
};

// Sliders in their own units, percent in percent; a number beyond the range takes the bound, with a
// warning that names the parameter.
TEST_F(ParameterValues, SlidersTakeTheirOwnUnitsAndTheBoundOfTheirRange) {
    for (const auto& [index, text, value] : std::vector<std::tuple<int, std::string, double>>{
             {kPercent, "50", 50}, {kPercent, " 12.5% ", 12.5}, {kFloat, "+2.25", 2.25}, {kInt, "7", 7}}) {
        set(index, text);
        EXPECT_EQ(index == kInt ? params.getInt(index) : params.getFloat(index), value) << text;
    }
    EXPECT_TRUE(warnings.str().empty());
    set(kFloat, "9");
    EXPECT_EQ(params.getFloat(kFloat), 5);
    set(kInt, "99999999999");
    EXPECT_EQ(params.getInt(kInt), 50);
    set(kColor, "1.5,-1,0.25");
    EXPECT_EQ(params.getColor(kColor), (Param::ParamColor{1, 0, 0.25}));
    EXPECT_THAT(warnings.str(), HasSubstr("Gamma 9 is outside its range; using 5"));
    EXPECT_THAT(warnings.str(), HasSubstr("Radius 99999999999 is outside its range; using 50"));
    EXPECT_THAT(warnings.str(), HasSubstr("Tint 1.5 is outside its range; using 1"));
}

TEST_F(ParameterValues, TextThatIsNoNumberIsABadValue) {
    for (const auto& [index, text] : std::vector<std::pair<int, std::string>>{{kFloat, "fast"},
                                                                              {kFloat, ""},
                                                                              {kFloat, "nan"},
                                                                              {kFloat, "1.5x"},
                                                                              {kPercent, "%"},
                                                                              {kInt, "2.5"},
                                                                              {kInt, "three"},
                                                                              {kColor, "0.5,0.5"},
                                                                              {kColor, "red"},
                                                                              {kPoint, "0.5"}}) {
        const auto [code, message] = failureOf(index, text);
        EXPECT_EQ(code, ExitCode::BadValue) << text;
        EXPECT_THAT(message, HasSubstr("\"" + params.records[index].label + "\" takes")) << text;
        EXPECT_THAT(message, HasSubstr("not \"" + text + "\""));
    }
    EXPECT_THAT(failureOf(kInt, "2.5").second, HasSubstr("a whole number"));
}

TEST_F(ParameterValues, CheckboxesTakeOnOffTrueFalseOneZero) {
    for (const auto& [text, on] : std::vector<std::pair<const char*, bool>>{
             {"on", true}, {"Off", false}, {"TRUE", true}, {"false", false}, {"1", true}, {"0", false}}) {
        set(kCheckbox, on ? "off" : "on");
        set(kCheckbox, text);
        EXPECT_EQ(params.getBool(kCheckbox), on) << text;
    }
    EXPECT_EQ(failureOf(kCheckbox, "yes maybe").first, ExitCode::BadValue);
}

TEST_F(ParameterValues, PopupsTakeAnItemNameOrNumber) {
    set(kPopup, "screen");
    EXPECT_EQ(params.getInt(kPopup), 1);
    set(kPopup, "2");
    EXPECT_EQ(params.getInt(kPopup), 2);
    set(kStringPopup, "GREEN");
    EXPECT_EQ(params.getString(kStringPopup), "Green");
    for (const char* bad : {"Overlay", "3", "-1"}) {
        const auto [code, message] = failureOf(kPopup, bad);
        EXPECT_EQ(code, ExitCode::BadValue) << bad;
        EXPECT_THAT(message, HasSubstr("one of Normal, Screen, Multiply")) << bad;
    }
}

TEST_F(ParameterValues, ColoursPointsAndText) {
    set(kColor, "0.2, 0.4,0.6");
    EXPECT_EQ(params.getColor(kColor), (Param::ParamColor{0.2, 0.4, 0.6}));
    // Points are fractions of the frame whether or not they are scaled with the resolution.
    set(kPoint, "0.25,0.75");
    EXPECT_EQ(params.records[kPoint].value.asPoint(), (Param::ParamPoint{0.25, 0.75}));
    set(kUnscaledPoint, "-0.5,2");
    EXPECT_EQ(params.records[kUnscaledPoint].value.asPoint(), (Param::ParamPoint{-0.5, 2}));
    set(kText, " as typed, \"quoted\" ");
    EXPECT_EQ(params.getString(kText), " as typed, \"quoted\" ");
}

TEST_F(ParameterValues, LayersTakeAnImageNotAValue) {
    const auto [code, message] = failureOf(kLayer, "1");
    EXPECT_EQ(code, ExitCode::Usage);
    EXPECT_THAT(message, HasSubstr("--layer"));
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::Twfx
