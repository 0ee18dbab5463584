#include "host/param/Parameters.h"

namespace Tw::Host::Param {

double Parameters::getFloat(int index) const {
    return recordAt(index).value.asFloat();
}

std::int32_t Parameters::getInt(int index) const {
    return recordAt(index).value.asInt();
}

bool Parameters::getBool(int index) const {
    return recordAt(index).value.asBool();
}

ParamColor Parameters::getColor(int index) const {
    return recordAt(index).value.asColor();
}

ParamPoint Parameters::getPoint(int index) const {
    const ParamRecord& record = recordAt(index);
    ParamPoint point = record.value.asPoint();
    if (!record.hasFlag(ParamFlag::UnscaledPoint)) {
        double scaleX;
        double scaleY;
        resolutionScale(scaleX, scaleY);
        point.x *= scaleX;
        point.y *= scaleY;
    }
    return point;
}

std::string Parameters::getString(int index) const {
    return recordAt(index).value.text;
}

std::int32_t Parameters::getPath(int) const {
    return 0;
}

double Parameters::getFloatAtTime(int index, double) const {
    return getFloat(index);
}

std::int32_t Parameters::getIntAtTime(int index, double) const {
    return getInt(index);
}

bool Parameters::getBoolAtTime(int index, double) const {
    return getBool(index);
}

ParamColor Parameters::getColorAtTime(int index, double) const {
    return getColor(index);
}

ParamPoint Parameters::getPointAtTime(int index, double) const {
    return getPoint(index);
}

std::string Parameters::getStringAtTime(int index, double) const {
    return getString(index);
}

std::int32_t Parameters::getPathAtTime(int index, double) const {
    return getPath(index);
}

void Parameters::setFloat(int index, double value) {
    ParamRecord& record = recordAt(index);
    if (value < record.validMin.asFloat()) {
        value = record.validMin.asFloat();
    } else if (value > record.validMax.asFloat()) {
        value = record.validMax.asFloat();
    }
    record.value.setFloat(value);
}

void Parameters::setInt(std::int32_t value, int index) {
    ParamRecord& record = recordAt(index);
    if (value < record.validMin.asInt()) {
        value = record.validMin.asInt();
    } else if (value > record.validMax.asInt()) {
        value = record.validMax.asInt();
    }
    record.value.setInt(value);
}

void Parameters::setBool(bool value, int index) {
    recordAt(index).value.setBool(value);
}

void Parameters::setColor(ParamColor color, int index) {
    recordAt(index).value.setColor(color);
}

// The stored point is a fraction of the full-resolution layer; the caller's is in rendered pixels.
void Parameters::setPoint(ParamPoint point, int index) {
    ParamRecord& record = recordAt(index);
    if (!record.hasFlag(ParamFlag::UnscaledPoint)) {
        double scaleX;
        double scaleY;
        resolutionScale(scaleX, scaleY);
        point.x /= scaleX;
        point.y /= scaleY;
    }
    record.value.setPoint(point);
}

void Parameters::setString(const std::string& text, int index) {
    recordAt(index).value.text = text;
}

// The base holds no paths, as getPath shows.
void Parameters::setPath(std::int32_t, int) {}

void Parameters::setFloatUnclamped(int index, double value) {
    recordAt(index).value.setFloat(value);
}

void Parameters::setIntUnclamped(std::int32_t value, int index) {
    recordAt(index).value.setInt(value);
}

// Only numbers have a valid range, so the other shapes store alike with or without the clamp.
void Parameters::setBoolUnclamped(bool value, int index) {
    setBool(value, index);
}

void Parameters::setColorUnclamped(ParamColor color, int index) {
    setColor(color, index);
}

void Parameters::setPointUnclamped(ParamPoint point, int index) {
    setPoint(point, index);
}

void Parameters::setStringUnclamped(const std::string& text, int index) {
    setString(text, index);
}

void Parameters::setPathUnclamped(std::int32_t pathId, int index) {
    setPath(pathId, index);
}

}  // namespace Tw::Host::Param
