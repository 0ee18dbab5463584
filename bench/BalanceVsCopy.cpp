// "Balance" with a gamma over a 3840 x 2160 frame, beside a plain copy of the same frame. Goal: at float,
// within 1.5 times the copy; at 8 bits the ratio is reported against a bound that only a fault would pass.
#include "bench/EffectSide.h"
#include "bench/PlainCopy.h"
#include "bench/VaryingFrame.h"
#include "plugins/BalancePlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;

Comparison balanceWithGamma(const char* name, Image::PixelFormat format, double goal) {
    return {name, "plain copy", goal, [format] {
                // "From Low" 5 %, "From High" 95 %, "Gamma" 1.8.
                auto settings = [](Param::Parameters& params) {
                    params.setFloat(0, 5);
                    params.setFloat(1, 95);
                    params.setFloat(4, 1.8);
                };
                return Sides{effectSide<Plugins::BalancePlugin<Host>>(varyingFrame(format), settings),
                             plainCopySide(varyingFrame(format))};
            }};
}

const Registration balance{balanceWithGamma("Balance gamma 8-bit 3840x2160", fourCC("argb"), 99),
                           balanceWithGamma("Balance gamma float 3840x2160", fourCC("ae32"), 1.5)};

}  // namespace
}  // namespace Tw::Bench
