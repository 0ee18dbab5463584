// "Balance" with a gamma over a 3840 x 2160 frame, beside a plain copy of the same frame: the copy is
// what any per-pixel effect costs at least, so the ratio says how much the arithmetic adds.
// Goal: at float, within 1.5 times the copy.
#include "bench/PlainCopy.h"
#include "bench/RatioReport.h"
#include "host/standalone/Host.h"
#include "plugins/BalancePlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;
using Image::ImageBuffer;
using Host = Tw::Host::Standalone::Host;

constexpr Image::PixelRect kFrame{0, 0, 3840, 2160};

// A frame of smoothly varying values, so that the gamma meets every kind of value.
ImageBuffer testFrame(Image::PixelFormat format) {
    ImageBuffer frame;
    frame.allocate(kFrame, format);
    const auto bytes = static_cast<std::size_t>(frame.rowStride()) * kFrame.height();
    if (Image::formatDepth(format) == 32) {
        auto* values = reinterpret_cast<float*>(frame.pixels());
        for (std::size_t i = 0; i < bytes / 4; ++i)
            values[i] = static_cast<float>(i % 1021) / 1020.0f;
    } else {
        for (std::size_t i = 0; i < bytes; ++i)
            frame.pixels()[i] = static_cast<std::byte>(i % 251);
    }
    return frame;
}

void balanceWithGamma(benchmark::State& state, Image::PixelFormat format) {
    ImageBuffer in = testFrame(format);
    ImageBuffer out;
    out.allocate(kFrame, format);
    Plugins::BalancePlugin<Host> effect;
    Tw::Host::Param::Parameters params;
    effect.defineParameters(params);
    params.setFloat(0, 5);
    params.setFloat(1, 95);
    params.setFloat(4, 1.8);
    for (auto _ : state)
        effect.render(params, in, out);
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(out.rowStride()) * kFrame.height());
}

void plainCopy(benchmark::State& state, Image::PixelFormat format) {
    timePlainCopy(state, testFrame(format));
}

BENCHMARK_CAPTURE(balanceWithGamma, 8bit, fourCC("argb"))->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(plainCopy, 8bit, fourCC("argb"))->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(balanceWithGamma, float, fourCC("ae32"))->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(plainCopy, float, fourCC("ae32"))->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace Tw::Bench

int main(int argc, char** argv) {
    return Tw::Bench::runWithRatios(argc, argv,
                                    {{"balanceWithGamma/8bit/real_time", "plainCopy/8bit/real_time", 99},
                                     {"balanceWithGamma/float/real_time", "plainCopy/float/real_time", 1.5}});
}
