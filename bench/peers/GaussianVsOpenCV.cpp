// "Blur" beside cv::GaussianBlur with the same standard deviation, on video frames of the portrait, both
// on two threads. OpenCV convolves with a kernel that grows with sigma (it chooses the size itself); ours
// is a recursion whose cost does not grow with the radius, hence goals that tighten with it.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include "bench/RatioReport.h"
#include "bench/peers/PeerFrames.h"
#include "host/standalone/Host.h"
#include "plugins/BlurPlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;

void Blur(benchmark::State& state, Image::PixelFormat format, int width, int height, double radius) {
    Image::ImageBuffer in = portraitFrame(width, height, format);
    Image::ImageBuffer out;
    out.allocate(in.rect, format);
    Plugins::BlurPlugin<Tw::Host::Standalone::Host> effect;
    Tw::Host::Param::Parameters params;
    effect.defineParameters(params);
    params.setFloat(0, radius);
    for (auto _ : state)
        effect.render(params, in, out);
}

void cvGaussianBlur(benchmark::State& state, int cvType, int width, int height, double sigma) {
    cv::setNumThreads(2);
    const cv::Mat in = portraitMat(width, height, cvType);
    cv::Mat out(in.size(), in.type());
    for (auto _ : state)
        cv::GaussianBlur(in, out, cv::Size(), sigma, sigma, cv::BORDER_REPLICATE);
}

// Both sides of one case, named alike, and the largest ratio of their times that we accept.
#define TW_BLUR_PAIR(label, format, cvType, width, height, radius, goal)    \
    BENCHMARK_CAPTURE(Blur, label, format, width, height, radius)           \
        ->Unit(benchmark::kMillisecond)                                     \
        ->UseRealTime();                                                    \
    BENCHMARK_CAPTURE(cvGaussianBlur, label, cvType, width, height, radius) \
        ->Unit(benchmark::kMillisecond)                                     \
        ->UseRealTime();                                                    \
    const RatioRegistration kRatio_##label{                                 \
        {"Blur/" #label "/real_time", "cvGaussianBlur/" #label "/real_time", goal}};

TW_BLUR_PAIR(8bit_1920x1080_r10, fourCC("argb"), CV_8UC4, 1920, 1080, 10, 0.5)
TW_BLUR_PAIR(8bit_1920x1080_r50, fourCC("argb"), CV_8UC4, 1920, 1080, 50, 0.1)
TW_BLUR_PAIR(float_1920x1080_r10, fourCC("ae32"), CV_32FC4, 1920, 1080, 10, 0.5)
TW_BLUR_PAIR(float_1920x1080_r50, fourCC("ae32"), CV_32FC4, 1920, 1080, 50, 0.1)
TW_BLUR_PAIR(8bit_3840x2160_r10, fourCC("argb"), CV_8UC4, 3840, 2160, 10, 0.5)
TW_BLUR_PAIR(8bit_3840x2160_r50, fourCC("argb"), CV_8UC4, 3840, 2160, 50, 0.1)
TW_BLUR_PAIR(float_3840x2160_r10, fourCC("ae32"), CV_32FC4, 3840, 2160, 10, 0.5)
TW_BLUR_PAIR(float_3840x2160_r50, fourCC("ae32"), CV_32FC4, 3840, 2160, 50, 0.1)

#undef TW_BLUR_PAIR

}  // namespace
}  // namespace Tw::Bench
