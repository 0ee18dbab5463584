// "Smoothing" beside cv::ximgproc::dtFilter, the domain transform filter a user would otherwise reach for,
// both on two threads. Ours runs two edge-preserving blurs and the contrast edges; OpenCV runs one blur
// (recursive filtering, three iterations) on the frame's colour, with the range width of our smoothing
// blur. Then the memory Smoothing holds on a 4K frame, beside its input and output.
#include <malloc.h>

#include <fstream>
#include <string>

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/ximgproc/edge_filter.hpp>

#include "bench/RatioReport.h"
#include "bench/peers/PeerFrames.h"
#include "host/standalone/Host.h"
#include "plugins/SmoothingPlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;

void renderSmoothing(benchmark::State& state, Plugins::SmoothingPlugin<Tw::Host::Standalone::Host>& effect,
                     int width, int height) {
    Image::ImageBuffer in = portraitFrame(width, height, fourCC("argb"));
    Image::ImageBuffer out;
    out.allocate(in.rect, in.pixelFormat());
    effect.threadCount = 2;
    Tw::Host::Param::Parameters params;
    effect.defineParameters(params);
    for (auto _ : state)
        effect.render(params, in, out);
}

void Smoothing(benchmark::State& state, int width, int height) {
    Plugins::SmoothingPlugin<Tw::Host::Standalone::Host> effect;
    renderSmoothing(state, effect, width, height);
}

void cvDtFilter(benchmark::State& state, int width, int height) {
    cv::setNumThreads(2);
    cv::Mat rgb;
    cv::cvtColor(portraitMat(width, height, CV_8UC4), rgb, cv::COLOR_RGBA2RGB);
    cv::Mat out(rgb.size(), rgb.type());
    for (auto _ : state)
        cv::ximgproc::dtFilter(rgb, rgb, out, 30, 0.4 * 255, cv::ximgproc::DTF_RF, 3);
}

// A size in kB from /proc/self/status: "VmRSS" now, "VmHWM" the most resident since the last reset.
double statusKiB(const std::string& field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(field + ":")) return std::stod(line.substr(field.size() + 1));
    }
    return 0;
}

// What one render of Smoothing holds beyond its input and output, in frames of the input's size: the
// pixel memory the host lent it at most at once, and the growth of the process's resident memory at its
// highest (reset just before the render, so nothing that ran earlier counts). Pages are resident once
// written, so the second figure may stay below the first.
void SmoothingMemory(benchmark::State& state, int width, int height) {
    Plugins::SmoothingPlugin<Tw::Host::Standalone::Host> effect;
    const double frameKiB = 4.0 * width * height / 1024;
    portraitFrame(width, height, fourCC("argb"));  // the cached source picture is not the render's
    // Memory that earlier benchmarks freed would otherwise still be resident and serve this render.
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5";
    const double residentBefore = statusKiB("VmRSS") + 2 * frameKiB;  // with the input and output to come
    renderSmoothing(state, effect, width, height);
    state.counters["held_frames"] = static_cast<double>(effect.peakBytes()) / (frameKiB * 1024);
    state.counters["resident_frames"] = (statusKiB("VmHWM") - residentBefore) / frameKiB;
}

#define TW_SMOOTHING_PAIR(label, width, height, goal)                                                  \
    BENCHMARK_CAPTURE(Smoothing, label, width, height)->Unit(benchmark::kMillisecond)->UseRealTime();  \
    BENCHMARK_CAPTURE(cvDtFilter, label, width, height)->Unit(benchmark::kMillisecond)->UseRealTime(); \
    const RatioRegistration kRatio_##label{                                                            \
        {"Smoothing/" #label "/real_time", "cvDtFilter/" #label "/real_time", goal}};

TW_SMOOTHING_PAIR(8bit_1920x1080, 1920, 1080, 1.0)
TW_SMOOTHING_PAIR(8bit_3840x2160, 3840, 2160, 1.0)

#undef TW_SMOOTHING_PAIR

BENCHMARK_CAPTURE(SmoothingMemory, 8bit_3840x2160, 3840, 2160)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
}  // namespace Tw::Bench
