// "Auto-Balance" over a 3840 x 2160 float frame, beside a plain copy of the same frame. The effect reads
// the frame twice, once for its histogram and once for the map, and writes it once. Goal: within 2 times
// the copy.
#include "bench/EffectSide.h"
#include "bench/PlainCopy.h"
#include "bench/VaryingFrame.h"
#include "plugins/AutoBalancePlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;
using namespace Plugins::AutoBalanceParam;

const Registration autoBalance{
    {"Auto-Balance float 3840x2160", "plain copy", 2.0, [] {
         // The levels at 5 % and 95 % of the pixels stretched over the whole range, clamped.
         auto settings = [](Param::Parameters& params) {
             params.setFloat(FromLow, 5);
             params.setFloat(FromHigh, 95);
             params.setFloat(ToLow, 0);
             params.setFloat(ToHigh, 100);
             params.setBool(true, Clamp);
         };
         return Sides{effectSide<Plugins::AutoBalancePlugin<Host>>(varyingFrame(fourCC("ae32")), settings),
                      plainCopySide(varyingFrame(fourCC("ae32")))};
     }}};

}  // namespace
}  // namespace Tw::Bench
