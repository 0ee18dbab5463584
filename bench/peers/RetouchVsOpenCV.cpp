// The skin retouch beside what a user would otherwise run: the whole retouch ("Smoothing" into
// "Presets", as twfx retouch runs it) beside one cv::ximgproc::dtFilter, the colour key and "CIE CC"
// beside OpenCV's conversion to L*a*b* and back, which is the colour work they do per pixel, and "Sharpen"
// beside cv::medianBlur of the same 3 x 3 window. On the 4K frame also the memory the retouch takes.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/ximgproc/edge_filter.hpp>

#include <memory>

#include "bench/EffectSide.h"
#include "bench/peers/PeerFrames.h"
#include "bench/peers/PeerSide.h"
#include "plugins/CIECCPlugin.h"
#include "plugins/SharpenPlugin.h"
#include "plugins/SkinRetouch.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;

cv::Mat rgbPortrait(int width, int height, int cvType) {
    cv::Mat rgb;
    cv::cvtColor(portraitMat(width, height, cvType), rgb, cv::COLOR_RGBA2RGB);
    return rgb;
}

// The peer of the whole retouch: the one edge-preserving blur of the "Smoothing" comparison.
Side domainTransformSide(int width, int height) {
    return peerSide(rgbPortrait(width, height, CV_8UC4), [](const cv::Mat& in, cv::Mat& out) {
        cv::ximgproc::dtFilter(in, in, out, 30, 0.4 * 255, cv::ximgproc::DTF_RF, 3);
    });
}

// A float frame to L*a*b* and back.
Side labRoundTripSide(int width, int height) {
    auto lab = std::make_shared<cv::Mat>();
    return peerSide(rgbPortrait(width, height, CV_32FC4), [lab](const cv::Mat& in, cv::Mat& out) {
        cv::cvtColor(in, *lab, cv::COLOR_RGB2Lab);
        cv::cvtColor(*lab, out, cv::COLOR_Lab2RGB);
    });
}

// Every option of the retouch on.
void everyOption(Param::Parameters& params) {
    const auto presets = static_cast<int>(Plugins::SkinRetouchFilters<Host>::presetsFirst());
    namespace P = Plugins::PresetsParam;
    params.setFloat(presets + P::PreserveSmallDetail, 50);
    params.setFloat(presets + P::SharpenAmount, 50);
    params.setFloat(presets + P::AdjustHue, 10);
    params.setFloat(presets + P::ShineAmount, 50);
}

Comparison retouch(int width, int height, std::size_t memoryFrameBytes) {
    return {"Retouch " + frameName(fourCC("argb"), width, height), "cv::ximgproc::dtFilter", 1.0,
            [=] {
                return Sides{
                    effectSide<Plugins::SkinRetouch<Host>>(portraitFrame(width, height, fourCC("argb"))),
                    domainTransformSide(width, height)};
            },
            memoryFrameBytes};
}

const Registration retouches{
    retouch(1920, 1080, 0),
    {"Retouch every option 8-bit 1920x1080", "cv::ximgproc::dtFilter", 2.5,
     [] {
         return Sides{
             effectSide<Plugins::SkinRetouch<Host>>(portraitFrame(1920, 1080, fourCC("argb")), everyOption),
             domainTransformSide(1920, 1080)};
     }},
    // The "Presets" graph on two float frames, the frame and its key source: the key and the mix.
    {"Colour key float 3840x2160", "cv::cvtColor Lab and back", 1.0,
     [] {
         std::vector<Image::ImageBuffer> keySource;
         keySource.push_back(portraitFrame(3840, 2160, fourCC("ae32")));
         return Sides{effectSide<Plugins::PresetsPlugin<Host>>(portraitFrame(3840, 2160, fourCC("ae32")), {},
                                                               std::move(keySource)),
                      labRoundTripSide(3840, 2160)};
     }},
    {"CIE CC float 3840x2160", "cv::cvtColor Lab and back", 1.0,
     [] {
         const auto settings = [](Param::Parameters& params) {
             params.setFloat(Plugins::CIECCParam::Hue, 40);
             params.setFloat(Plugins::CIECCParam::Saturation, -30);
             params.setFloat(Plugins::CIECCParam::Brightness, 15);
         };
         return Sides{
             effectSide<Plugins::CIE_CC_Plugin<Host>>(portraitFrame(3840, 2160, fourCC("ae32")), settings),
             labRoundTripSide(3840, 2160)};
     }},
    {"Sharpen 8-bit 1920x1080", "cv::medianBlur 3x3", 1.5,
     [] {
         const auto settings = [](Param::Parameters& params) { params.setFloat(0, 50); };
         return Sides{
             effectSide<Plugins::SharpenPlugin<Host>>(portraitFrame(1920, 1080, fourCC("argb")), settings),
             peerSide(portraitMat(1920, 1080, CV_8UC4),
                      [](const cv::Mat& in, cv::Mat& out) { cv::medianBlur(in, out, 3); })};
     }},
    retouch(3840, 2160, std::size_t{4} * 3840 * 2160)};

}  // namespace
}  // namespace Tw::Bench
