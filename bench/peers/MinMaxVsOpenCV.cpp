// "MinMax" beside cv::dilate (its maximum) and cv::erode (its minimum) with the same square, on 8-bit
// video frames of the portrait. OpenCV's default border leaves the outside out of the window, as ours
// does. OpenCV's cost grows with the radius and ours does not; at radius 10 the goal is to be no slower.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <string>

#include "bench/EffectSide.h"
#include "bench/peers/PeerFrames.h"
#include "bench/peers/PeerSide.h"
#include "plugins/MinMaxPlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;

// One of the two effects, and the OpenCV operation that computes the same extreme.
struct Extreme {
    const char* name;
    const char* peer;
    cv::MorphTypes operation;
};

template <template <class> class Plugin>
Comparison minMax(Extreme extreme, int width, int height, int radius) {
    const auto setup = [=] {
        auto settings = [radius](Param::Parameters& params) { params.setInt(radius, 0); };
        const cv::Mat square = cv::getStructuringElement(cv::MORPH_RECT, {2 * radius + 1, 2 * radius + 1});
        return Sides{
            effectSide<Plugin<Host>>(portraitFrame(width, height, fourCC("argb")), settings),
            peerSide(portraitMat(width, height, CV_8UC4), [square, extreme](const cv::Mat& in, cv::Mat& out) {
                cv::morphologyEx(in, out, extreme.operation, square);
            })};
    };
    return {std::string("MinMax ") + extreme.name + " " + frameName(fourCC("argb"), width, height) + " r" +
                std::to_string(radius),
            extreme.peer, 1.0, setup};
}

constexpr Extreme kMax{"max", "cv::dilate", cv::MORPH_DILATE};
constexpr Extreme kMin{"min", "cv::erode", cv::MORPH_ERODE};

const Registration minMaxes{
    minMax<Plugins::MaxPlugin>(kMax, 1920, 1080, 10), minMax<Plugins::MinPlugin>(kMin, 1920, 1080, 10),
    minMax<Plugins::MaxPlugin>(kMax, 3840, 2160, 10), minMax<Plugins::MinPlugin>(kMin, 3840, 2160, 10)};

}  // namespace
}  // namespace Tw::Bench
