// Host values of one kind each, as the tests set them.
#pragma once

#include <string>

#include "host/frei0r/ParamMapping.h"

namespace Tw::Host::Frei0r {

inline HostValue numberValue(double number) {
    HostValue value;
    value.number = number;
    return value;
}

inline HostValue colorValue(float r, float g, float b) {
    HostValue value;
    value.color = {r, g, b};
    return value;
}

inline HostValue positionValue(double x, double y) {
    HostValue value;
    value.position = {x, y};
    return value;
}

inline HostValue textValue(std::string text) {
    HostValue value;
    value.text = std::move(text);
    return value;
}

}  // namespace Tw::Host::Frei0r
