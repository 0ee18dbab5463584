// Host values to parameter records and back, for every kind of record.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <tuple>

#include "host/frei0r/ParamMapping.h"
#include "tests/frei0r/HostValues.h"

namespace Tw::Host::Frei0r {
namespace TW_FILE_LOCAL {

using Param::ParamRecord;
using Param::ParamFlag::Hidden;
using Param::ParamFlag::Percent;

// A list of the one record, so that values go through the list's own setters.
struct OneRecord {
    explicit OneRecord(ParamRecord record) { params.records.push_back(std::move(record)); }

    // Sets the host's number; whether it was taken as given.
    bool setNumber(double number) { return setFromHost(params, 0, numberValue(number)); }
    double hostNumber() const { return hostValueOf(params.records[0]).number; }
    std::string explanation() const { return explanationOf(params.records[0]); }

    // For each (host number, taken as given, value stored): sets the number and reads the value back.
    template <class Read>
    void expectSets(std::initializer_list<std::tuple<double, bool, double>> cases, Read read) {
        for (const auto& [number, taken, stored] : cases) {
            EXPECT_EQ(setNumber(number), taken) << number;
            EXPECT_EQ(read(params), stored) << number;
        }
    }

    Param::Parameters params;
};

const auto floatValue = [](const Param::Parameters& p) { return p.getFloat(0); };
const auto intValue = [](const Param::Parameters& p) { return double(p.getInt(0)); };

TEST(ParamMapping, FloatSlidersSpanTheirSliderRangeAndClampToTheValidRange) {
    OneRecord amount(ParamRecord::floatSlider("Smoothing Amount", 30, 0, 200));
    EXPECT_EQ(amount.hostNumber(), 0.15);
    amount.expectSets({{0.25, true, 50}, {1.5, false, 200}}, floatValue);
    EXPECT_EQ(amount.hostNumber(), 1.0);

    // Beyond 0..1 a host reaches what the valid range holds past the slider.
    OneRecord radius(ParamRecord::floatSlider("Radius", 10, 0, 200).withSliderRange(0, 30));
    radius.expectSets({{0.5, true, 15}, {2.0, true, 60}, {-0.5, false, 0}}, floatValue);
    EXPECT_EQ(radius.explanation(), "0..30 over 0..1, valid 0..200");

    OneRecord detail(ParamRecord::floatSlider("Skin Detail Smoothing", 40, -400, 100));
    EXPECT_EQ(detail.hostNumber(), 0.88);
    detail.expectSets({{0.2, true, -300}}, floatValue);

    // Percent sliders keep percent in the record; no number leaves the value as it was.
    OneRecord percent(ParamRecord::floatSlider("From Low", 0, 0, 100, Percent));
    percent.expectSets({{0.375, true, 37.5},
                        {std::numeric_limits<double>::quiet_NaN(), false, 37.5},
                        {std::numeric_limits<double>::infinity(), false, 37.5}},
                       floatValue);
    EXPECT_EQ(percent.explanation(), "0..100 % over 0..1");
}

TEST(ParamMapping, IntegerSlidersRoundAndClampWithoutOverflowAndCheckboxesTurnAtOneHalf) {
    OneRecord radius(ParamRecord::intSlider("Radius", 10, 0, 100).withSliderRange(0, 30));
    EXPECT_EQ(radius.hostNumber(), 10.0 / 30.0);
    radius.expectSets({{0.5, true, 15},
                       {0.51, true, 15},  // 15.3
                       {0.52, true, 16},  // 15.6
                       {0.75 / 30, true, 1},
                       {3.0, true, 90},
                       {1e300, false, 100},
                       {-1e300, false, 0}},
                      intValue);
    EXPECT_EQ(radius.explanation(), "0..30 in whole steps over 0..1, valid 0..100");

    OneRecord clamp(ParamRecord::checkbox("Clamp", false));
    EXPECT_EQ(clamp.hostNumber(), 0.0);
    clamp.expectSets({{0.5, true, 1}, {0.49, true, 0}},
                     [](const Param::Parameters& p) { return double(p.getBool(0)); });
}

TEST(ParamMapping, PopupsSelectTheItemTheirExplanationNumbers) {
    OneRecord mode(ParamRecord::popup("Blend Mode", {"Normal", "Multiply", "Screen"}, 0));
    EXPECT_EQ(mode.explanation(), "item by number: 0 Normal, 0.5 Multiply, 1 Screen");
    mode.expectSets({{0.5, true, 1}, {0.74, true, 1}, {0.76, true, 2}, {1.6, false, 2}}, intValue);
    EXPECT_EQ(mode.hostNumber(), 1.0);

    // Numbers of items that aren't short decimals are written so that they still select their item.
    OneRecord seven(ParamRecord::popup("Seven", {"a", "b", "c", "d", "e", "f", "g"}, 3));
    const std::string explanation = seven.explanation();
    EXPECT_EQ(explanation.substr(0, 28), "item by number: 0 a, 0.16666");
    for (int item = 0; item < 7; ++item) {
        const auto end = explanation.find(std::string(" ") + char('a' + item), 16);
        const auto start = explanation.rfind(' ', end - 1) + 1;
        seven.expectSets({{std::stod(explanation.substr(start, end - start)), true, double(item)}}, intValue);
    }

    // A string popup stores the chosen item's text.
    OneRecord key(ParamRecord::stringPopup("Key", {"Skin", "Sky", "Grass"}, "Sky"));
    EXPECT_EQ(key.hostNumber(), 0.5);
    EXPECT_TRUE(key.setNumber(1.0));
    EXPECT_EQ(key.params.getString(0), "Grass");
}

TEST(ParamMapping, ColoursPointsAndTextPassAsTheyAre) {
    OneRecord color(ParamRecord::color("To High RGB", {1, 1, 1}));
    EXPECT_TRUE(setFromHost(color.params, 0, colorValue(0.25f, 0.5f, 0.75f)));
    EXPECT_EQ(color.params.getColor(0), (Param::ParamColor{0.25, 0.5, 0.75}));
    // Components stay within 0..1, as they do on the command line.
    EXPECT_FALSE(setFromHost(color.params, 0, colorValue(1.5f, -0.5f, 0.3f)));
    EXPECT_EQ(color.params.getColor(0), (Param::ParamColor{1.0, 0.0, double{0.3f}}));
    const f0r_param_color_t read = hostValueOf(color.params.records[0]).color;
    EXPECT_EQ(read.r, 1.0f);
    EXPECT_EQ(read.b, 0.3f);

    // Records keep points as fractions of the frame, as frei0r positions are.
    OneRecord point(ParamRecord::point("Center", {0.5, 0.5}));
    EXPECT_TRUE(setFromHost(point.params, 0, positionValue(0.3, 1.2)));
    EXPECT_EQ(point.params.records[0].value.asPoint(), (Param::ParamPoint{0.3, 1.2}));
    EXPECT_EQ(hostValueOf(point.params.records[0]).position.y, 1.2);

    OneRecord text(ParamRecord::text("Name", "first"));
    EXPECT_TRUE(setFromHost(text.params, 0, textValue("second")));
    EXPECT_EQ(hostValueOf(text.params.records[0]).text, "second");
}

TEST(ParamMapping, OnlyRecordsWithAControlAHostShowsHaveAKind) {
    EXPECT_EQ(hostKindOf(ParamRecord::checkbox("Clamp", false)), F0R_PARAM_BOOL);
    EXPECT_EQ(hostKindOf(ParamRecord::intSlider("Radius", 1, 0, 9)), F0R_PARAM_DOUBLE);
    EXPECT_EQ(hostKindOf(ParamRecord::floatSlider("Gamma", 1, 0, 5)), F0R_PARAM_DOUBLE);
    EXPECT_EQ(hostKindOf(ParamRecord::popup("Mode", {"a", "b"}, 0)), F0R_PARAM_DOUBLE);
    EXPECT_EQ(hostKindOf(ParamRecord::color("Tint", {})), F0R_PARAM_COLOR);
    EXPECT_EQ(hostKindOf(ParamRecord::point("Center", {})), F0R_PARAM_POSITION);
    EXPECT_EQ(hostKindOf(ParamRecord::text("Name", "")), F0R_PARAM_STRING);

    // Layers are the mixer's inputs; the rest have no value or no control to show.
    EXPECT_EQ(hostKindOf(ParamRecord::layer("Layer")), std::nullopt);
    EXPECT_EQ(hostKindOf(ParamRecord::groupStart("Sharpen")), std::nullopt);
    EXPECT_EQ(hostKindOf(ParamRecord::groupEnd()), std::nullopt);
    EXPECT_EQ(hostKindOf(ParamRecord::floatSlider("Internal", 1, 0, 5, Hidden)), std::nullopt);
    EXPECT_EQ(hostKindOf(ParamRecord::popup("Empty", {}, 0)), std::nullopt);
    OneRecord layer(ParamRecord::layer("Layer"));
    EXPECT_FALSE(layer.setNumber(1.0));
    EXPECT_EQ(layer.params.getInt(0), 0);
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Host::Frei0r
