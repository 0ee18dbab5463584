// The three sliders of the colour corrections "CIE CC" and "Color Correction": a turn of the hue in
// degrees, and changes of saturation and brightness in percent. The two effects differ in the colour
// space they correct in, not in what a user sets.
#pragma once

#include "host/param/Parameters.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

// Parameter indices, in host order.
namespace ColorAdjustParam {
enum : int { Hue, Saturation, Brightness };
}

inline void addColorAdjustSliders(Param::Parameters& list) {
    // A slider in degrees. The host's own fixed-point slider is no kind of the parameter list; a float
    // slider over the same range stands for it.
    list.records.push_back(Param::ParamRecord::floatSlider("Adjust Hue", 0, -360, 360));
    list.records.push_back(Param::ParamRecord::floatSlider("Adjust Saturation", 0, -100, 100));
    list.records.push_back(Param::ParamRecord::floatSlider("Adjust Brightness", 0, -100, 100));
}

// The sliders as the filters take them: the hue in turns, the changes as fractions, each narrowed to
// single precision before it is divided.
struct ColorAdjustment {
    float hue, saturation, brightness;

    explicit ColorAdjustment(const Param::Parameters& params)
        : hue(static_cast<float>(params.getFloat(ColorAdjustParam::Hue)) / 360.0f),
          saturation(static_cast<float>(params.getFloat(ColorAdjustParam::Saturation)) / 100.0f),
          brightness(static_cast<float>(params.getFloat(ColorAdjustParam::Brightness)) / 100.0f) {}

    // All three at 0: the effect leaves its input alone and builds no node.
    bool isNone() const { return hue == 0.0f && saturation == 0.0f && brightness == 0.0f; }
};

}  // namespace Tw::Plugins
