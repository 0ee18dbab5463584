// The generators over a float 3840 x 2160 frame beside a plain copy of the same frame: "Ramp" along a
// slanting line inside the frame with four different colours, and "Gradient" as a user first gets it.
// They only write the frame, so the copy, which also reads one, is a generous measure. Goal: within 1.5
// times the copy.
#include <string>

#include "bench/EffectSide.h"
#include "bench/PlainCopy.h"
#include "bench/VaryingFrame.h"
#include "plugins/GradientPlugin.h"
#include "plugins/RampPlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;

void slantingRamp(Param::Parameters& params) {
    namespace P = Plugins::RampParam;
    params.setPoint({0.25, 0.25}, P::Point1);
    params.setFloat(P::Point2, 30);
    params.setFloat(P::Point3, 55);
    params.setPoint({0.75, 0.75}, P::Point4);
    params.setColor({0.1, 0.05, 0.3}, P::Color1);
    params.setColor({0.8, 0.2, 0.1}, P::Color2);
    params.setColor({0.2, 0.7, 0.4}, P::Color3);
    params.setColor({1, 0.9, 0.6}, P::Color4);
}

template <class Plugin>
Comparison besideCopy(const char* effect, void (*settings)(Param::Parameters&)) {
    const Image::PixelFormat format = fourCC("ae32");
    return {std::string(effect) + " float 3840x2160", "plain copy", 1.5, [settings, format] {
                return Sides{effectSide<Plugin>(varyingFrame(format), settings),
                             plainCopySide(varyingFrame(format))};
            }};
}

const Registration generators{besideCopy<Plugins::RampPlugin<Host>>("Ramp", slantingRamp),
                              besideCopy<Plugins::GradientPlugin<Host>>("Gradient", nullptr)};

}  // namespace
}  // namespace Tw::Bench
