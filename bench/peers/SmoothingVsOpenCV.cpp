// "Smoothing" beside cv::ximgproc::dtFilter, the domain transform filter a user would otherwise reach for.
// Ours runs two edge-preserving blurs and the contrast edges; OpenCV runs one blur (recursive filtering,
// three iterations) on the frame's colour, with the range width of our smoothing blur. On the 4K frame
// also the memory each takes beyond its input and output.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/ximgproc/edge_filter.hpp>

#include "bench/EffectSide.h"
#include "bench/peers/PeerFrames.h"
#include "bench/peers/PeerSide.h"
#include "plugins/SmoothingPlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;

Comparison smoothing(int width, int height, std::size_t memoryFrameBytes) {
    const auto setup = [=] {
        cv::Mat rgb;
        cv::cvtColor(portraitMat(width, height, CV_8UC4), rgb, cv::COLOR_RGBA2RGB);
        // As wide as our smoothing blur at its defaults: spatial sigma 30, range sigma 0.4 of white, three
        // iterations of recursive filtering.
        return Sides{effectSide<Plugins::SmoothingPlugin<Host>>(portraitFrame(width, height, fourCC("argb"))),
                     peerSide(rgb, [](const cv::Mat& in, cv::Mat& out) {
                         cv::ximgproc::dtFilter(in, in, out, 30, 0.4 * 255, cv::ximgproc::DTF_RF, 3);
                     })};
    };
    return {"Smoothing " + frameName(fourCC("argb"), width, height), "cv::ximgproc::dtFilter", 1.0, setup,
            memoryFrameBytes};
}

const Registration smoothings{smoothing(1920, 1080, 0), smoothing(3840, 2160, std::size_t{4} * 3840 * 2160)};

}  // namespace
}  // namespace Tw::Bench
