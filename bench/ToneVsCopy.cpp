// The per-pixel tone effects over 3840 x 2160 frames at every depth, beside a plain copy of the same frame:
// "Balance" with a gamma, "Brightness & Contrast", "Color Correction" with a hue turn and changes of
// saturation and brightness, and "Tint" with a coloured ramp. The ratio says what the effect costs beyond
// reading and writing the frame. Goal: within 1.5 times the copy, 8 bits included.
#include <string>

#include "bench/EffectSide.h"
#include "bench/PlainCopy.h"
#include "bench/VaryingFrame.h"
#include "plugins/BalancePlugin.h"
#include "plugins/BrightnessContrastPlugin.h"
#include "plugins/ColorCorrectionPlugin.h"
#include "plugins/TintPlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;

// "From Low" 5 %, "From High" 95 %, "Gamma" 1.8.
void balanceWithGamma(Param::Parameters& params) {
    params.setFloat(0, 5);
    params.setFloat(1, 95);
    params.setFloat(4, 1.8);
}

// "Brightness" 20, "Contrast" 35, clamped: unclamped, the effect does nothing.
void brighterAndHarder(Param::Parameters& params) {
    params.setFloat(0, 20);
    params.setFloat(1, 35);
    params.setBool(true, 2);
}

void hueTurn(Param::Parameters& params) {
    params.setFloat(Plugins::ColorAdjustParam::Hue, 130);
    params.setFloat(Plugins::ColorAdjustParam::Saturation, 40);
    params.setFloat(Plugins::ColorAdjustParam::Brightness, -20);
}

// Points out of order and colours off grey, so that every piece of the ramp is met.
void colouredRamp(Param::Parameters& params) {
    namespace P = Plugins::TintParam;
    params.setFloat(P::Point1, 10);
    params.setFloat(P::Point2, 70);
    params.setFloat(P::Point3, 40);
    params.setFloat(P::Point4, 90);
    params.setColor({0.1, 0.05, 0.3}, P::Color1);
    params.setColor({0.8, 0.2, 0.1}, P::Color2);
    params.setColor({0.2, 0.7, 0.4}, P::Color3);
    params.setColor({1, 0.9, 0.6}, P::Color4);
}

template <class Plugin>
Comparison besideCopy(const std::string& effect, void (*settings)(Param::Parameters&), const char* depth,
                      Image::PixelFormat format) {
    return {effect + " " + depth + " 3840x2160", "plain copy", 1.5, [settings, format] {
                return Sides{effectSide<Plugin>(varyingFrame(format), settings),
                             plainCopySide(varyingFrame(format))};
            }};
}

template <class Plugin>
Registration atEveryDepth(const char* effect, void (*settings)(Param::Parameters&)) {
    return Registration{besideCopy<Plugin>(effect, settings, "8-bit", fourCC("argb")),
                        besideCopy<Plugin>(effect, settings, "16-bit", fourCC("ae16")),
                        besideCopy<Plugin>(effect, settings, "float", fourCC("ae32"))};
}

const Registration balance = atEveryDepth<Plugins::BalancePlugin<Host>>("Balance gamma", balanceWithGamma);
const Registration brightnessContrast =
    atEveryDepth<Plugins::BrightnessContrastPlugin<Host>>("Brightness & Contrast", brighterAndHarder);
const Registration colorCorrection =
    atEveryDepth<Plugins::ColorCorrectionPlugin<Host>>("Color Correction", hueTurn);
const Registration tint = atEveryDepth<Plugins::TintPlugin<Host>>("Tint", colouredRamp);

}  // namespace
}  // namespace Tw::Bench
