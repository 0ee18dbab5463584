// Frames of a clip rendered one after another through one frei0r plug-in instance, as a host plays it.
// The instance keeps its effect from frame to frame, so the pixel blocks one frame releases serve the
// next: the counters give the blocks the first and the second frame took from the system (the second
// takes none). The same frames through a new instance each, as every frame was once rendered, show what
// the reuse saves.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <vector>

#include "host/frei0r/PluginInstance.h"

namespace Tw::Bench {
namespace {

using Host::Frei0r::PluginDescription;
using Host::Frei0r::PluginInstance;

constexpr unsigned kWidth = 1920;
constexpr unsigned kHeight = 1080;

// A few opaque frames, a grey ramp from left to right with noise that differs from frame to frame.
std::array<std::vector<uint32_t>, 4> clipFrames() {
    std::array<std::vector<uint32_t>, 4> frames;
    uint32_t seed = 1;
    for (auto& frame : frames) {
        frame.resize(std::size_t{kWidth} * kHeight);
        for (std::size_t i = 0; i < frame.size(); ++i) {
            seed = seed * 1664525u + 1013904223u;
            const uint32_t grey = static_cast<uint32_t>(i % kWidth * 224 / kWidth) + (seed >> 27);
            frame[i] = 0xff000000u | grey * 0x010101u;
        }
    }
    return frames;
}

void oneInstance(benchmark::State& state, const char* entryName) {
    const PluginDescription plugin(Host::Frei0r::effectNamed(entryName));
    const auto frames = clipFrames();
    std::vector<uint32_t> out(frames[0].size());
    PluginInstance instance(plugin, kWidth, kHeight);
    instance.update(frames[0].data(), {}, out.data());
    const std::size_t firstFrame = instance.pixelAllocations();
    instance.update(frames[1].data(), {}, out.data());
    const std::size_t secondFrame = instance.pixelAllocations() - firstFrame;

    std::size_t next = 2;
    for (auto _ : state) {
        instance.update(frames[next++ % frames.size()].data(), {}, out.data());
        benchmark::DoNotOptimize(out.data());
    }
    state.counters["first_frame_allocations"] = static_cast<double>(firstFrame);
    state.counters["second_frame_allocations"] = static_cast<double>(secondFrame);
}

void newInstancePerFrame(benchmark::State& state, const char* entryName) {
    const PluginDescription plugin(Host::Frei0r::effectNamed(entryName));
    const auto frames = clipFrames();
    std::vector<uint32_t> out(frames[0].size());
    std::size_t next = 0;
    for (auto _ : state) {
        PluginInstance instance(plugin, kWidth, kHeight);
        instance.update(frames[next++ % frames.size()].data(), {}, out.data());
        benchmark::DoNotOptimize(out.data());
    }
}

BENCHMARK_CAPTURE(oneInstance, Smoothing, "SmoothingEntry")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(newInstancePerFrame, Smoothing, "SmoothingEntry")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(oneInstance, Blur, "BlurEntry")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(newInstancePerFrame, Blur, "BlurEntry")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace Tw::Bench

BENCHMARK_MAIN();
