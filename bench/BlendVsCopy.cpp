// "Blend" over two 3840 x 2160 float frames, in "Normal" and in "Hue", beside a plain copy of one frame:
// reading two frames and writing one is what a blend costs at least, so the ratio says how much the
// arithmetic adds. Goal: "Normal" within 2 times the copy. "Hue", which works on whole colours, is
// reported with a generous bound.
#include "bench/EffectSide.h"
#include "bench/PlainCopy.h"
#include "plugins/BlendPlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;

constexpr Image::PixelRect kFrame{0, 0, 3840, 2160};

// A frame of smoothly varying colours and alphas, each component on its own period, starting at `phase`.
Image::ImageBuffer testFrame(std::size_t phase) {
    Image::ImageBuffer frame;
    frame.allocate(kFrame, fourCC("ae32"));
    auto* values = reinterpret_cast<float*>(frame.pixels());
    const auto count = static_cast<std::size_t>(frame.rowStride()) * kFrame.height() / sizeof(float);
    for (std::size_t i = 0; i < count; ++i)
        values[i] = static_cast<float>((i + phase) % (1019 + i % 4)) / 1018.0f;
    return frame;
}

Comparison blendFrames(const char* name, int mode, double goal) {
    return {name, "plain copy", goal, [mode] {
                auto settings = [mode](Param::Parameters& params) {
                    params.setInt(mode, Plugins::BlendParam::Mode);
                    params.setFloat(Plugins::BlendParam::Opacity, 80);
                };
                std::vector<Image::ImageBuffer> layers;
                layers.push_back(testFrame(377));
                return Sides{
                    effectSide<Plugins::BlendPlugin<Host>>(testFrame(0), settings, std::move(layers)),
                    plainCopySide(testFrame(0))};
            }};
}

const Registration blend{blendFrames("Blend Normal float 3840x2160", 0, 2.0),
                         blendFrames("Blend Hue float 3840x2160", 26, 5.0)};

}  // namespace
}  // namespace Tw::Bench
