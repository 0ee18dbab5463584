// "Blend" over two 3840 x 2160 float frames, in "Normal" and in "Hue", beside a plain copy of one frame:
// reading two frames and writing one is what a blend costs at least, so the ratio says how much the
// arithmetic adds. Goal: "Normal" within 2 times the copy. "Hue", which works on whole colours, is
// reported with a generous bound.
#include "bench/EffectSide.h"
#include "bench/PlainCopy.h"
#include "bench/VaryingFrame.h"
#include "plugins/BlendPlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;

Comparison blendFrames(const char* name, int mode, double goal) {
    return {name, "plain copy", goal, [mode] {
                auto settings = [mode](Param::Parameters& params) {
                    params.setInt(mode, Plugins::BlendParam::Mode);
                    params.setFloat(Plugins::BlendParam::Opacity, 80);
                };
                std::vector<Image::ImageBuffer> layers;
                layers.push_back(varyingFrame(fourCC("ae32"), 377));
                return Sides{effectSide<Plugins::BlendPlugin<Host>>(varyingFrame(fourCC("ae32")), settings,
                                                                    std::move(layers)),
                             plainCopySide(varyingFrame(fourCC("ae32")))};
            }};
}

const Registration blend{blendFrames("Blend Normal float 3840x2160", 0, 2.0),
                         blendFrames("Blend Hue float 3840x2160", 26, 5.0)};

}  // namespace
}  // namespace Tw::Bench
