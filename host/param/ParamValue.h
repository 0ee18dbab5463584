#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace Tw::Host::Param {

struct ParamColor {
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;

    bool operator==(const ParamColor&) const = default;
};

struct ParamPoint {
    double x = 0.0;
    double y = 0.0;

    bool operator==(const ParamPoint&) const = default;
};

// One value of a record, in whichever shape its kind uses. Integers and booleans live in the leading
// bytes of the first double at their own width (a 32-bit word, one byte), so a number has to be written
// and read with the width of its record's kind: writing an integer leaves the double's other bytes as
// they were.
struct ParamValue {
    std::array<double, 3> numbers{};
    std::string text;

    static ParamValue ofFloat(double value);
    static ParamValue ofInt(std::int32_t value);
    static ParamValue ofBool(bool value);
    static ParamValue ofColor(ParamColor color);
    static ParamValue ofPoint(ParamPoint point);
    static ParamValue ofText(std::string text);

    double asFloat() const { return numbers[0]; }
    std::int32_t asInt() const;
    bool asBool() const;
    ParamColor asColor() const { return {numbers[0], numbers[1], numbers[2]}; }
    ParamPoint asPoint() const { return {numbers[0], numbers[1]}; }

    void setFloat(double value) { numbers[0] = value; }
    void setInt(std::int32_t value);
    void setBool(bool value);
    void setColor(ParamColor color);
    void setPoint(ParamPoint point);
};

}  // namespace Tw::Host::Param
