// "Color Correction" with a hue turn and changes of saturation and brightness on a float 4K frame, beside
// OpenCV's conversion of the same frame to HSV and back, which is the colour work it does per pixel.
// Both sides keep four components a pixel. Goal: no slower than the round trip.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <memory>

#include "bench/EffectSide.h"
#include "bench/peers/PeerFrames.h"
#include "bench/peers/PeerSide.h"
#include "plugins/ColorCorrectionPlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;

const Registration colorCorrection{
    {"Color Correction float 3840x2160", "cv::cvtColor HSV and back", 1.0, [] {
         const auto settings = [](Param::Parameters& params) {
             params.setFloat(Plugins::ColorAdjustParam::Hue, 130);
             params.setFloat(Plugins::ColorAdjustParam::Saturation, 40);
             params.setFloat(Plugins::ColorAdjustParam::Brightness, -20);
         };
         auto hsv = std::make_shared<cv::Mat>();
         return Sides{effectSide<Plugins::ColorCorrectionPlugin<Host>>(
                          portraitFrame(3840, 2160, fourCC("ae32")), settings),
                      peerSide(portraitMat(3840, 2160, CV_32FC4), [hsv](const cv::Mat& in, cv::Mat& out) {
                          cv::cvtColor(in, *hsv, cv::COLOR_RGB2HSV);
                          cv::cvtColor(*hsv, out, cv::COLOR_HSV2RGB, 4);
                      })};
     }}};

}  // namespace
}  // namespace Tw::Bench
