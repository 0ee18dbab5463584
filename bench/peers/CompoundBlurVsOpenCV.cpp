// "Compound Blur" on a float video frame of the portrait, with the portrait itself as its blur map so that
// every pixel's box differs, beside cv::boxFilter with the fixed 61 x 61 box of the largest radius,
// normalised, on the same frame. Ours reads each box from a summed-area table, so its cost does not grow
// with the radius: the second row sets radius 30 beside radius 5.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <vector>

#include "bench/EffectSide.h"
#include "bench/peers/PeerFrames.h"
#include "bench/peers/PeerSide.h"
#include "plugins/CompoundBlurPlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

Side compoundBlur(double radius) {
    auto settings = [radius](Param::Parameters& params) {
        params.setFloat(Plugins::CompoundBlurParam::MaximumRadius, radius);
    };
    std::vector<Image::ImageBuffer> map;
    map.push_back(portraitFrame(kWidth, kHeight, fourCC("ae32")));
    return effectSide<Plugins::CompoundBlurPlugin<Host>>(portraitFrame(kWidth, kHeight, fourCC("ae32")),
                                                         settings, std::move(map));
}

const Registration compoundBlurs{
    {"Compound Blur float 1920x1080 r30", "cv::boxFilter 61x61", 1.5,
     [] {
         return Sides{compoundBlur(30),
                      peerSide(portraitMat(kWidth, kHeight, CV_32FC4), [](const cv::Mat& in, cv::Mat& out) {
                          cv::boxFilter(in, out, -1, cv::Size(61, 61));
                      })};
     }},
    {"Compound Blur float 1920x1080 r30 beside r5", "Compound Blur r5", 1.2, [] {
         return Sides{compoundBlur(30), compoundBlur(5)};
     }}};

}  // namespace
}  // namespace Tw::Bench
