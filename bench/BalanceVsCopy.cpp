// "Balance" with a gamma and "Brightness & Contrast" over a 3840 x 2160 frame at each depth, beside a plain
// copy of the same frame. Goal: within 1.5 times the copy, 8 bits included.
#include "bench/EffectSide.h"
#include "bench/PlainCopy.h"
#include "bench/VaryingFrame.h"
#include "plugins/BalancePlugin.h"
#include "plugins/BrightnessContrastPlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;

template <template <class> class Plugin>
Comparison beside(const char* name, Image::PixelFormat format,
                  const std::function<void(Param::Parameters&)>& settings) {
    return {name, "plain copy", 1.5, [format, settings] {
                return Sides{effectSide<Plugin<Host>>(varyingFrame(format), settings),
                             plainCopySide(varyingFrame(format))};
            }};
}

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

const Registration tone{
    beside<Plugins::BalancePlugin>("Balance gamma 8-bit 3840x2160", fourCC("argb"), balanceWithGamma),
    beside<Plugins::BalancePlugin>("Balance gamma 16-bit 3840x2160", fourCC("ae16"), balanceWithGamma),
    beside<Plugins::BalancePlugin>("Balance gamma float 3840x2160", fourCC("ae32"), balanceWithGamma),
    beside<Plugins::BrightnessContrastPlugin>("Brightness & Contrast 8-bit 3840x2160", fourCC("argb"),
                                              brighterAndHarder),
    beside<Plugins::BrightnessContrastPlugin>("Brightness & Contrast 16-bit 3840x2160", fourCC("ae16"),
                                              brighterAndHarder),
    beside<Plugins::BrightnessContrastPlugin>("Brightness & Contrast float 3840x2160", fourCC("ae32"),
                                              brighterAndHarder)};

}  // namespace
}  // namespace Tw::Bench
