#include "host/param/ParamValue.h"

#include <cstring>
#include <utility>

namespace Tw::Host::Param {

ParamValue ParamValue::ofFloat(double value) {
    ParamValue result;
    result.setFloat(value);
    return result;
}

ParamValue ParamValue::ofInt(std::int32_t value) {
    ParamValue result;
    result.setInt(value);
    return result;
}

ParamValue ParamValue::ofBool(bool value) {
    ParamValue result;
    result.setBool(value);
    return result;
}

ParamValue ParamValue::ofColor(ParamColor color) {
    ParamValue result;
    result.setColor(color);
    return result;
}

ParamValue ParamValue::ofPoint(ParamPoint point) {
    ParamValue result;
    result.setPoint(point);
    return result;
}

ParamValue ParamValue::ofText(std::string text) {
    ParamValue result;
    result.text = std::move(text);
    return result;
}

std::int32_t ParamValue::asInt() const {
    std::int32_t value;
    std::memcpy(&value, &numbers[0], sizeof value);
    return value;
}

bool ParamValue::asBool() const {
    // Read the byte as a number: a stray bit pattern is still a valid answer, which a bool load isn't.
    unsigned char byte;
    std::memcpy(&byte, &numbers[0], sizeof byte);
    return byte != 0;
}

void ParamValue::setInt(std::int32_t value) {
    std::memcpy(&numbers[0], &value, sizeof value);
}

void ParamValue::setBool(bool value) {
    const unsigned char byte = value ? 1 : 0;
    std::memcpy(&numbers[0], &byte, sizeof byte);
}

void ParamValue::setColor(ParamColor color) {
    numbers = {color.red, color.green, color.blue};
}

void ParamValue::setPoint(ParamPoint point) {
    numbers[0] = point.x;
    numbers[1] = point.y;
}

}  // namespace Tw::Host::Param
