#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/param/FourCharCode.h"
#include "host/param/Parameters.h"

namespace TW_FILE_LOCAL {

using namespace Tw::Host::Param;

std::string tempPath(const std::string& name) {
    return ::testing::TempDir() + "tw_param_" + name;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

void writeFile(const std::string& path, const std::string& text) {
    std::ofstream(path) << text;
}

// One record of each kind the text file knows, with an index per kind for readability.
enum Index { Radius, Amount, Invert, Note, Mode, Preset, Tint, Center, Group, GroupEnd, KeySource };

void declareEveryKind(Parameters& list) {
    list.records = {
        ParamRecord::intSlider("Radius", 10, 0, 100),
        ParamRecord::floatSlider("Amount", 25, 0, 100, ParamFlag::Percent),
        ParamRecord::checkbox("Invert", false),
        ParamRecord::text("Note", "plain"),
        ParamRecord::popup("Mode", {"Normal", "Mask", "Blur Only"}, 0),
        ParamRecord::stringPopup("Preset", {"Soft", "Strong"}, "Soft"),
        ParamRecord::color("Tint", {1.0, 0.5, 0.25}),
        ParamRecord::point("Center", {0.5, 0.5}),
        ParamRecord::groupStart("Mask", ParamFlag::StartCollapsed),
        ParamRecord::groupEnd(),
        ParamRecord::layer("Key Source"),
    };
}

void setEveryKind(Parameters& list) {
    list.setIntUnclamped(500, Radius);  // beyond the valid range: the file must not clamp
    list.setFloat(Amount, 12.5);
    list.setBool(true, Invert);
    list.setString(R"(say "hi" \ bye)", Note);
    list.setInt(2, Mode);
    list.setString(R"(Str"ong\)", Preset);
    list.setColor({0.25, 0.5, 1.0}, Tint);
    list.setPoint({0.125, 2.0}, Center);
    list.setInt(3, KeySource);
}

class RecordingParameters : public Parameters {
public:
    std::vector<int> resets;
    std::vector<int> values;
    std::vector<double> amountAtReset;

    void notifyReset(int index) override {
        resets.push_back(index);
        amountAtReset.push_back(getFloat(Amount));
    }
    void notifyValue(int index) override { values.push_back(index); }
};

class ReducedResolutionParameters : public Parameters {
public:
    void resolutionScale(double& x, double& y) const override {
        x = 0.5;
        y = 0.25;
    }
};

TEST(ParametersTextFile, DumpWritesOneLinePerPersistedRecord) {
    Parameters list;
    declareEveryKind(list);
    setEveryKind(list);
    list.setFloat(Amount, 1.0 / 3.0);
    list.records.push_back(ParamRecord::floatSlider("Secret", 1, 0, 2, ParamFlag::NotInTextFile));
    for (ParamKind kind : {ParamKind::None, ParamKind::Path, ParamKind::Unused}) {
        list.records.push_back(ParamRecord::groupStart("No Text Form"));
        list.records.back().kind = kind;
    }
    const std::string path = tempPath("dump.txt");

    list.dump(path, "Smoothing", "4.0.10");
    EXPECT_EQ(readFile(path),
              "Plugin Name: Smoothing\nVersion Number: 4.0.10\nRadius: 500\nAmount: 0.333333\n"
              "Invert: true\nNote: \"say \\\"hi\\\" \\\\ bye\"\nMode: 2\nPreset: \"Str\\\"ong\\\\\"\n"
              "Tint: 0.25 0.5 1 \nCenter: 0.125 2 \nMask: \n: \nKey Source: 3\n");

    list.dump(path, nullptr, "4.0.10");
    EXPECT_EQ(readFile(path), "Plugin Name: ");
    list.dump(path, "Smoothing", nullptr);
    EXPECT_EQ(readFile(path), "Plugin Name: Smoothing\nVersion Number: ");
}

TEST(ParametersTextFile, RestoreReadsBackWhatDumpWrote) {
    Parameters written;
    declareEveryKind(written);
    setEveryKind(written);
    const std::string path = tempPath("roundtrip.txt");
    written.dump(path, "Smoothing", "4.0.10");

    RecordingParameters read;
    declareEveryKind(read);
    read.restore(path);
    EXPECT_EQ(read.getInt(Radius), 500);
    EXPECT_EQ(read.getFloat(Amount), 12.5);
    EXPECT_TRUE(read.getBool(Invert));
    EXPECT_EQ(read.getString(Note), R"(say "hi" \ bye)");
    EXPECT_EQ(read.getInt(Mode), 2);
    EXPECT_EQ(read.getString(Preset), R"(Str"ong\)");
    EXPECT_EQ(read.getColor(Tint), (ParamColor{0.25, 0.5, 1.0}));
    EXPECT_EQ(read.getPoint(Center), (ParamPoint{0.125, 2.0}));
    EXPECT_EQ(read.getInt(KeySource), 3);
    EXPECT_EQ(read.resets.size(), read.records.size());
    EXPECT_TRUE(read.values.empty()) << "restore stores without notifying";
}

TEST(ParametersTextFile, RestoreStopsAtAnOverlongLine) {
    const std::string fits(252, 'a');  // with the blank and two quotes, 255 characters after the colon
    const std::string tooLong(253, 'b');
    const std::string path = tempPath("overlong.txt");
    writeFile(path, "Plugin Name: X\nVersion Number: 1\nRadius: 7\nNote: \"" + fits + "\"\nPreset: \"" +
                        tooLong + "\"\nAmount: 3\n");

    Parameters list;
    declareEveryKind(list);
    list.restore(path);
    EXPECT_EQ(list.getInt(Radius), 7);
    EXPECT_EQ(list.getString(Note), fits);
    EXPECT_EQ(list.getString(Preset), "Soft") << "the overlong line itself is not taken";
    EXPECT_EQ(list.getFloat(Amount), 25) << "lines after the overlong one are not read";
}

TEST(ParametersTextFile, RestoreMatchesLabelsExactly) {
    Parameters list;
    list.records = {
        ParamRecord::checkbox("Use Mask", false),
        ParamRecord::checkbox("Use Mask", false),
        ParamRecord::floatSlider("Hidden Amount", 5, 0, 10, ParamFlag::NotInTextFile),
        ParamRecord::color("Tint", {0.1, 0.2, 0.3}),
        ParamRecord::text("Note", "plain"),
        ParamRecord::floatSlider("Amount", 25, 0, 100),
    };
    const std::string path = tempPath("labels.txt");
    list.setFloatUnclamped(2, 9);
    writeFile(path,
              "Plugin Name: X\nVersion Number: 1\nUse Mask :  true  \nUnknown: 4\nTint: 0.5 junk 0.9\n"
              "Note: unquoted\namount: 70\n");

    list.restore(path);
    EXPECT_TRUE(list.getBool(0));
    EXPECT_TRUE(list.getBool(1)) << "every record with the label takes the line";
    EXPECT_EQ(list.getFloat(2), 5) << "a record absent from the file returns to its default";
    EXPECT_EQ(list.getColor(3), (ParamColor{0.5, 0.2, 0.3})) << "numbers stop at the first that fails";
    EXPECT_EQ(list.getString(4), "");
    EXPECT_EQ(list.getFloat(5), 25) << "labels compare case-sensitively";
    EXPECT_EQ(list.records.size(), 6u) << "unknown keys add nothing";

    writeFile(path, "Plugin Name: X\nVersion Number: 1\nUse Mask: True\nNote: \"ends\\\n");
    list.restore(path);
    EXPECT_FALSE(list.getBool(0));
    EXPECT_EQ(list.getString(4), "ends") << "an escape at the end of the line ends the text";

    list.setFloatUnclamped(5, 50);
    list.restore(tempPath("missing/none.txt"));
    EXPECT_EQ(list.getFloat(5), 25) << "an unreadable file still resets";
}

// Numbers are stored as read, unclamped, but a number too long for its kind can't overflow it: integers
// stop at the 32-bit limits, and doubles become infinite or zero.
TEST(ParametersTextFile, RestoreLimitsNumbersThatDoNotFitTheirKind) {
    const std::string path = tempPath("limits.txt");
    Parameters list;
    declareEveryKind(list);
    writeFile(path,
              "Plugin Name: X\nVersion Number: 1\nRadius: 99999999999\nMode: -99999999999999999999999\n"
              "Amount: -1e999\nTint: 1e999 1e-999 +7.5x\nKey Source: +12 apples\n");
    list.restore(path);
    EXPECT_EQ(list.getInt(Radius), 2147483647);
    EXPECT_EQ(list.getInt(Mode), -2147483647 - 1);
    EXPECT_EQ(list.getFloat(Amount), -HUGE_VAL);
    EXPECT_EQ(list.getColor(Tint), (ParamColor{HUGE_VAL, 0, 7.5}));
    EXPECT_EQ(list.getInt(KeySource), 12) << "what follows a number is not looked at";
}

TEST(ParametersSetters, ClampToTheValidRangeOnlyWhenAsked) {
    Parameters list;
    list.records = {ParamRecord::floatSlider("Amount", 10, -50, 100).withSliderRange(0, 50),
                    ParamRecord::intSlider("Radius", 10, 0, 100).withSliderRange(0, 30)};
    const std::vector<std::pair<double, double>> floatCases = {{-51, -50}, {-50, -50}, {-10, -10},
                                                               {75, 75},   {100, 100}, {100.5, 100}};
    for (const auto& [given, stored] : floatCases) {
        list.setFloat(0, given);
        EXPECT_EQ(list.getFloat(0), stored) << "the valid range, not the slider's: " << given;
    }
    list.setFloatUnclamped(0, 150);
    EXPECT_EQ(list.getFloat(0), 150);

    const std::vector<std::pair<int, int>> intCases = {{-1, 0}, {0, 0}, {50, 50}, {100, 100}, {101, 100}};
    for (const auto& [given, stored] : intCases) {
        list.setInt(given, 1);
        EXPECT_EQ(list.getInt(1), stored) << "the valid range, not the slider's: " << given;
    }
    list.setIntUnclamped(-7, 1);
    EXPECT_EQ(list.getInt(1), -7);
    EXPECT_THROW(list.setFloat(2, 1), std::out_of_range);
}

TEST(ParamValue, NumbersKeepTheWidthOfTheirKind) {
    ParamValue value = ParamValue::ofFloat(1.5);
    value.setInt(7);
    EXPECT_EQ(value.asInt(), 7);
    const double original = 1.5;
    EXPECT_EQ(std::memcmp(reinterpret_cast<const char*>(&value.numbers[0]) + 4,
                          reinterpret_cast<const char*>(&original) + 4, 4),
              0)
        << "an integer writes four bytes only";

    value = ParamValue::ofInt(256);
    value.setBool(true);
    EXPECT_EQ(value.asInt(), 257) << "a boolean writes one byte only";
    value.setBool(false);
    EXPECT_EQ(value.asInt(), 256);
    EXPECT_FALSE(ParamValue::ofInt(256).asBool()) << "a boolean reads one byte only";
    EXPECT_EQ(ParamValue::ofInt(-5).asInt(), -5);
    EXPECT_NE(ParamValue::ofInt(-5).asFloat(), -5.0) << "integers are not stored as doubles";
}

TEST(ParametersPoints, ScaleWithTheResolutionUnlessUnscaled) {
    ReducedResolutionParameters list;
    list.records = {ParamRecord::point("Center", {0.5, 0.8}),
                    ParamRecord::point("Offset", {0.5, 0.8}, ParamFlag::UnscaledPoint)};
    EXPECT_EQ(list.getPoint(0), (ParamPoint{0.25, 0.2}));
    EXPECT_EQ(list.getPointAtTime(0, 3.0), (ParamPoint{0.25, 0.2}));
    EXPECT_EQ(list.getPoint(1), (ParamPoint{0.5, 0.8}));

    list.setPoint({10, 10}, 0);
    EXPECT_EQ(list.records[0].value.asPoint(), (ParamPoint{20, 40}));
    list.setPointUnclamped({10, 10}, 1);
    EXPECT_EQ(list.records[1].value.asPoint(), (ParamPoint{10, 10}));

    Parameters fullResolution;
    fullResolution.records = {ParamRecord::point("Center", {0.5, 0.8})};
    EXPECT_EQ(fullResolution.getPoint(0), (ParamPoint{0.5, 0.8}));
}

TEST(ParametersNotifications, ResetNotifiesEachIndexAfterItsOwnReset) {
    RecordingParameters list;
    declareEveryKind(list);
    list.setFloat(Amount, 80);
    list.notifyAllResets();
    EXPECT_EQ(list.getFloat(Amount), 80) << "notifying resets nothing";
    list.resets.clear();
    list.amountAtReset.clear();

    list.reset();
    const std::vector<int> everyIndex = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    EXPECT_EQ(list.resets, everyIndex);
    EXPECT_EQ(list.amountAtReset[Radius], 80) << "a later record is not reset yet";
    EXPECT_EQ(list.amountAtReset[Amount], 25);
    list.notifyAllValues();
    EXPECT_EQ(list.values, everyIndex);
}

// Popup items carry four-character codes as the hosts store them, the first character in the lowest byte,
// one per item.
TEST(ParamRecordDeclarations, PopupItemCodesAreOnePerItem) {
    ParamRecord output = ParamRecord::popup("Output Type", {"Normal", "Mask", "Blur Only"}, 1);
    output.withItemCodes({fourCharCode("1CbB"), fourCharCode("2CbB"), 0});
    EXPECT_EQ(output.itemCodes[0], 0x42624331u);
    EXPECT_THROW(output.withItemCodes({0}), std::invalid_argument);
}

}  // namespace TW_FILE_LOCAL
