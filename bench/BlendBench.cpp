// "Blend" over two 3840 x 2160 frames, float and 8-bit, in "Normal" and in "Hue", beside a plain copy of
// one frame of the same depth: reading two frames and writing one is what a blend costs at least, so the
// ratio says how much the arithmetic adds. Goal: "Normal" within 2 times the copy. "Hue", which works on
// whole colours, is reported with a generous bound.
#include "bench/PlainCopy.h"
#include "bench/RatioReport.h"
#include "host/standalone/Host.h"
#include "plugins/BlendPlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;
using Image::ImageBuffer;
using Host = Tw::Host::Standalone::Host;

constexpr Image::PixelRect kFrame{0, 0, 3840, 2160};

const Image::PixelFormat kFloatFrame = fourCC("ae32");
const Image::PixelFormat kByteFrame = fourCC("argb");

// A frame of smoothly varying colours and alphas, each component on its own period, starting at `phase`.
ImageBuffer testFrame(Image::PixelFormat format, std::size_t phase) {
    ImageBuffer values;
    values.allocate(kFrame, kFloatFrame);
    auto* components = reinterpret_cast<float*>(values.pixels());
    const auto count = static_cast<std::size_t>(values.rowStride()) * kFrame.height() / sizeof(float);
    for (std::size_t i = 0; i < count; ++i)
        components[i] = static_cast<float>((i + phase) % (1019 + i % 4)) / 1018.0f;
    if (format == kFloatFrame) return values;
    ImageBuffer frame;
    frame.allocate(kFrame, format);
    frame.copyFrom(values);
    return frame;
}

void blendFrames(benchmark::State& state, Image::PixelFormat format, int mode) {
    ImageBuffer base = testFrame(format, 0);
    ImageBuffer top = testFrame(format, 377);
    ImageBuffer out;
    out.allocate(kFrame, format);
    Plugins::BlendPlugin<Host> effect;
    Tw::Host::Param::Parameters params;
    effect.defineParameters(params);
    params.setInt(mode, Plugins::BlendParam::Mode);
    params.setFloat(Plugins::BlendParam::Opacity, 80);
    ImageBuffer* layers[] = {&top};
    for (auto _ : state)
        effect.render(params, base, out, layers);
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(out.rowStride()) * kFrame.height());
}

void plainCopy(benchmark::State& state, Image::PixelFormat format) {
    timePlainCopy(state, testFrame(format, 0));
}

BENCHMARK_CAPTURE(blendFrames, Normal, kFloatFrame, 0)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(blendFrames, Hue, kFloatFrame, 26)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(plainCopy, Float, kFloatFrame)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(blendFrames, Normal8, kByteFrame, 0)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(blendFrames, Hue8, kByteFrame, 26)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(plainCopy, Byte, kByteFrame)->Unit(benchmark::kMillisecond)->UseRealTime();

const RatioRegistration normalRatio({"blendFrames/Normal/real_time", "plainCopy/Float/real_time", 2.0});
const RatioRegistration hueRatio({"blendFrames/Hue/real_time", "plainCopy/Float/real_time", 5.0});
const RatioRegistration normalByteRatio({"blendFrames/Normal8/real_time", "plainCopy/Byte/real_time", 2.0});
const RatioRegistration hueByteRatio({"blendFrames/Hue8/real_time", "plainCopy/Byte/real_time", 5.0});

}  // namespace
}  // namespace Tw::Bench

int main(int argc, char** argv) {
    return Tw::Bench::runWithRatios(argc, argv);
}
