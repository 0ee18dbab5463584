// Settings away from the defaults for each effect of the bundle, cheap enough to render often, shared by
// the tests that compare the bundle with the standalone host.
#pragma once

#include <string>
#include <vector>

#include "tests/ae/StandaloneReference.h"

namespace Tw::Test::AE {

inline std::vector<Setting> settingsFor(const std::string& entry) {
    if (entry == "BalanceEntry")
        return {{"From Low", 10.0}, {"To High", 90.0}, {"Gamma", 1.4}, {"Clamp", true}};
    if (entry == "BalanceRGBEntry")
        return {{"Gamma", 0.8}, {"From High RGB", Color8{230, 240, 250}}, {"To Low RGB", Color8{10, 0, 20}}};
    if (entry == "BlendEntry") return {{"Blend Mode", PopupChoice{3}}, {"Opacity", 60.0}};
    if (entry == "BlurEntry") return {{"Radius", 2.5}};
    if (entry == "CIECCEntry")
        return {{"Adjust Hue", 40.0}, {"Adjust Saturation", -30.0}, {"Adjust Brightness", 15.0}};
    if (entry == "MaxEntry" || entry == "MinEntry") return {{"Radius", 3.0}};
    if (entry == "SmoothingEntry")
        return {{"Smoothing Amount", 8.0}, {"Skin Detail Smoothing", 20.0}, {"Contrast Enhance", 40.0}};
    return {};
}

}  // namespace Tw::Test::AE
