// "Light Burst" at radius 100 over an 8-bit 1920 x 1080 frame, beside the time its samples take at two
// billion a second: every pixel reads 100 samples along its ray, 207 million in all, which that rate reads
// in 0.104 s. The ratio is that rate over ours: 0.5 means four billion samples a second. Goal: the rate.
#include <chrono>
#include <thread>

#include "bench/EffectSide.h"
#include "bench/VaryingFrame.h"
#include "plugins/LightBurstPlugin.h"

namespace Tw::Bench {
namespace {

constexpr Image::PixelRect kHdFrame{0, 0, 1920, 1080};
constexpr double kRadius = 100;
constexpr double kSamplesPerSecond = 2e9;

// The time `samples` take at the goal's rate, spent asleep, so that it leaves the processors to nobody's
// work but the machine's other users'.
Side atSampleRate(double samples) {
    const auto budget = std::chrono::duration_cast<std::chrono::steady_clock::duration>(
        std::chrono::duration<double>(samples / kSamplesPerSecond));
    return [budget] { std::this_thread::sleep_until(std::chrono::steady_clock::now() + budget); };
}

void longRays(Param::Parameters& params) {
    params.setFloat(Plugins::LightBurstParam::Radius, kRadius);
    params.setFloat(Plugins::LightBurstParam::Amount, 50);
}

const Registration lightBurst{
    Comparison{"Light Burst radius 100 8-bit 1920x1080", "2e9 samples/s", 1.0, [] {
                   const double samples = double(kHdFrame.width()) * kHdFrame.height() * kRadius;
                   return Sides{effectSide<Plugins::LightBurstPlugin<Host>>(
                                    varyingFrame(Image::fourCC("argb"), 0, kHdFrame), longRays),
                                atSampleRate(samples)};
               }}};

}  // namespace
}  // namespace Tw::Bench
