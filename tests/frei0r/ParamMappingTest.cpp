// Host values to parameter records and back, for every kind of record.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "host/frei0r/ParamMapping.h"
#include "tests/frei0r/HostValues.h"

namespace Tw::Host::Frei0r {
namespace {

using Param::ParamRecord;
using Param::ParamFlag::Hidden;
using Param::ParamFlag::Percent;

// A list of the one record, so that values go through the list's own setters.
struct OneRecord {
    explicit OneRecord(ParamRecord record) { params.records.push_back(std::move(record)); }

    // Sets the host's number; whether it was taken as given.
    bool setNumber(double number) { return setFromHost(params, 0, numberValue(number)); }
    double hostNumber() const { return hostValueOf(params.records[0]).number; }

    Param::Parameters params;
};

TEST(ParamMapping, FloatSlidersSpanTheirSliderRangeAndClampToTheValidRange) {
    OneRecord amount(ParamRecord::floatSlider("Smoothing Amount", 30, 0, 200));
    EXPECT_EQ(amount.hostNumber(), 0.15);
    EXPECT_TRUE(amount.setNumber(0.25));
    EXPECT_EQ(amount.params.getFloat(0), 50.0);
    EXPECT_FALSE(amount.setNumber(1.5));
    EXPECT_EQ(amount.params.getFloat(0), 200.0);
    EXPECT_EQ(amount.hostNumber(), 1.0);

    // Beyond 0..1 a host reaches what the valid range holds past the slider.
    OneRecord radius(ParamRecord::floatSlider("Radius", 10, 0, 200).withSliderRange(0, 30));
    EXPECT_TRUE(radius.setNumber(0.5));
    EXPECT_EQ(radius.params.getFloat(0), 15.0);
    EXPECT_TRUE(radius.setNumber(2.0));
    EXPECT_EQ(radius.params.getFloat(0), 60.0);
    EXPECT_FALSE(radius.setNumber(-0.5));
    EXPECT_EQ(radius.params.getFloat(0), 0.0);
    EXPECT_EQ(explanationOf(radius.params.records[0]), "0..30 over 0..1, valid 0..200");

    OneRecord detail(ParamRecord::floatSlider("Skin Detail Smoothing", 40, -400, 100));
    EXPECT_EQ(detail.hostNumber(), 0.88);
    EXPECT_TRUE(detail.setNumber(0.2));
    EXPECT_EQ(detail.params.getFloat(0), -300.0);

    // Percent sliders keep percent in the record.
    OneRecord percent(ParamRecord::floatSlider("From Low", 0, 0, 100, Percent));
    EXPECT_TRUE(percent.setNumber(0.375));
    EXPECT_EQ(percent.params.getFloat(0), 37.5);
    EXPECT_EQ(explanationOf(percent.params.records[0]), "0..100 % over 0..1");

    // No number leaves the value as it was.
    EXPECT_FALSE(percent.setNumber(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(percent.setNumber(std::numeric_limits<double>::infinity()));
    EXPECT_EQ(percent.params.getFloat(0), 37.5);
}

TEST(ParamMapping, IntegerSlidersRoundAndClampWithoutOverflow) {
    OneRecord radius(ParamRecord::intSlider("Radius", 10, 0, 100).withSliderRange(0, 30));
    EXPECT_EQ(radius.hostNumber(), 10.0 / 30.0);
    EXPECT_TRUE(radius.setNumber(0.5));
    EXPECT_EQ(radius.params.getInt(0), 15);
    EXPECT_TRUE(radius.setNumber(0.51));  // 15.3
    EXPECT_EQ(radius.params.getInt(0), 15);
    EXPECT_TRUE(radius.setNumber(0.52));  // 15.6
    EXPECT_EQ(radius.params.getInt(0), 16);
    EXPECT_TRUE(radius.setNumber(0.75 / 30));  // 0.75
    EXPECT_EQ(radius.params.getInt(0), 1);
    EXPECT_TRUE(radius.setNumber(3.0));
    EXPECT_EQ(radius.params.getInt(0), 90);
    EXPECT_FALSE(radius.setNumber(1e300));
    EXPECT_EQ(radius.params.getInt(0), 100);
    EXPECT_FALSE(radius.setNumber(-1e300));
    EXPECT_EQ(radius.params.getInt(0), 0);
    EXPECT_EQ(explanationOf(radius.params.records[0]), "0..30 in whole steps over 0..1, valid 0..100");
}

TEST(ParamMapping, CheckboxesAreBoolsFromOneHalf) {
    OneRecord clamp(ParamRecord::checkbox("Clamp", false));
    EXPECT_EQ(clamp.hostNumber(), 0.0);
    EXPECT_TRUE(clamp.setNumber(0.5));
    EXPECT_TRUE(clamp.params.getBool(0));
    EXPECT_EQ(clamp.hostNumber(), 1.0);
    EXPECT_TRUE(clamp.setNumber(0.49));
    EXPECT_FALSE(clamp.params.getBool(0));
}

TEST(ParamMapping, PopupsSelectTheItemTheirExplanationNumbers) {
    OneRecord mode(ParamRecord::popup("Blend Mode", {"Normal", "Multiply", "Screen"}, 0));
    EXPECT_EQ(explanationOf(mode.params.records[0]), "item by number: 0 Normal, 0.5 Multiply, 1 Screen");
    EXPECT_TRUE(mode.setNumber(0.5));
    EXPECT_EQ(mode.params.getInt(0), 1);
    EXPECT_TRUE(mode.setNumber(0.74));
    EXPECT_EQ(mode.params.getInt(0), 1);
    EXPECT_TRUE(mode.setNumber(0.76));
    EXPECT_EQ(mode.params.getInt(0), 2);
    EXPECT_FALSE(mode.setNumber(1.6));
    EXPECT_EQ(mode.params.getInt(0), 2);
    EXPECT_EQ(mode.hostNumber(), 1.0);

    // Numbers of items that aren't short decimals are written so that they still select their item.
    OneRecord seven(ParamRecord::popup("Seven", {"a", "b", "c", "d", "e", "f", "g"}, 3));
    const std::string explanation = explanationOf(seven.params.records[0]);
    EXPECT_EQ(explanation.substr(0, 28), "item by number: 0 a, 0.16666");
    for (int item = 0; item < 7; ++item) {
        const std::string name = std::string(1, static_cast<char>('a' + item));
        const auto end = explanation.find(" " + name, 16);
        const auto start = explanation.rfind(' ', end - 1) + 1;
        ASSERT_TRUE(seven.setNumber(std::stod(explanation.substr(start, end - start)))) << name;
        EXPECT_EQ(seven.params.getInt(0), item);
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

}  // namespace
}  // namespace Tw::Host::Frei0r
