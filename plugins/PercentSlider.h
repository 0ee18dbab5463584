// A slider from 0 to 100 %, as the tone effects declare their ranges and points.
#pragma once

#include "host/param/Parameters.h"

namespace Tw::Plugins {

inline ::Tw::Host::Param::ParamRecord percentSlider(const char* label, double defaultPercent) {
    namespace Param = ::Tw::Host::Param;
    return Param::ParamRecord::floatSlider(label, defaultPercent, 0, 100, Param::ParamFlag::Percent);
}

}  // namespace Tw::Plugins
