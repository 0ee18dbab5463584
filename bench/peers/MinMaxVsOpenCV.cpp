// "MinMax" beside cv::dilate (its maximum) and cv::erode (its minimum) with the same square, on 8-bit
// video frames of the portrait, both on two threads. OpenCV's default border leaves the outside out of
// the window, as ours does. OpenCV's cost grows with the radius and ours does not; at radius 10 the goal
// is to be no slower.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <memory>

#include "bench/RatioReport.h"
#include "bench/peers/PeerFrames.h"
#include "host/standalone/Host.h"
#include "plugins/MinMaxPlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;

using Host = Tw::Host::Standalone::Host;

enum class Extreme { Max, Min };

void MinMax(benchmark::State& state, Extreme extreme, int width, int height, int radius) {
    Image::ImageBuffer in = portraitFrame(width, height, fourCC("argb"));
    Image::ImageBuffer out;
    out.allocate(in.rect, in.pixelFormat());
    std::unique_ptr<Host> effect;
    if (extreme == Extreme::Max) {
        effect = std::make_unique<Plugins::MaxPlugin<Host>>();
    } else {
        effect = std::make_unique<Plugins::MinPlugin<Host>>();
    }
    effect->threadCount = 2;
    Tw::Host::Param::Parameters params;
    effect->defineParameters(params);
    params.setInt(radius, 0);
    for (auto _ : state)
        effect->render(params, in, out);
}

// cv::dilate for the maximum, cv::erode for the minimum, over the square of the same radius.
void cvMorphology(benchmark::State& state, Extreme extreme, int width, int height, int radius) {
    cv::setNumThreads(2);
    const cv::Mat in = portraitMat(width, height, CV_8UC4);
    cv::Mat out(in.size(), in.type());
    const cv::Mat square = cv::getStructuringElement(cv::MORPH_RECT, {2 * radius + 1, 2 * radius + 1});
    for (auto _ : state) {
        if (extreme == Extreme::Max) {
            cv::dilate(in, out, square);
        } else {
            cv::erode(in, out, square);
        }
    }
}

// Both sides of one case, named alike, and the largest ratio of their times that we accept.
#define TW_MINMAX_PAIR(label, extreme, width, height, radius, goal)        \
    BENCHMARK_CAPTURE(MinMax, label, extreme, width, height, radius)       \
        ->Unit(benchmark::kMillisecond)                                    \
        ->UseRealTime();                                                   \
    BENCHMARK_CAPTURE(cvMorphology, label, extreme, width, height, radius) \
        ->Unit(benchmark::kMillisecond)                                    \
        ->UseRealTime();                                                   \
    const RatioRegistration kRatio_##label{                                \
        {"MinMax/" #label "/real_time", "cvMorphology/" #label "/real_time", goal}};

TW_MINMAX_PAIR(max_8bit_1920x1080_r10, Extreme::Max, 1920, 1080, 10, 1.0)
TW_MINMAX_PAIR(min_8bit_1920x1080_r10, Extreme::Min, 1920, 1080, 10, 1.0)
TW_MINMAX_PAIR(max_8bit_3840x2160_r10, Extreme::Max, 3840, 2160, 10, 1.0)
TW_MINMAX_PAIR(min_8bit_3840x2160_r10, Extreme::Min, 3840, 2160, 10, 1.0)

#undef TW_MINMAX_PAIR

}  // namespace
}  // namespace Tw::Bench
