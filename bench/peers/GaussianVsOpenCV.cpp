// "Blur" beside cv::GaussianBlur with the same standard deviation, on video frames of the portrait.
// OpenCV convolves with a kernel that grows with sigma (it chooses the size itself); ours is a recursion
// whose cost does not grow with the radius, hence goals that tighten with it.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <string>

#include "bench/EffectSide.h"
#include "bench/peers/PeerFrames.h"
#include "bench/peers/PeerSide.h"
#include "plugins/BlurPlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;

Comparison blur(Image::PixelFormat format, int width, int height, double radius, double goal) {
    const auto setup = [=] {
        auto settings = [radius](Param::Parameters& params) { params.setFloat(0, radius); };
        const cv::Mat in = portraitMat(width, height, cvTypeOfDepth(Image::formatDepth(format)));
        return Sides{effectSide<Plugins::BlurPlugin<Host>>(portraitFrame(width, height, format), settings),
                     peerSide(in, [radius](const cv::Mat& in, cv::Mat& out) {
                         cv::GaussianBlur(in, out, cv::Size(), radius, radius, cv::BORDER_REPLICATE);
                     })};
    };
    return {"Blur " + frameName(format, width, height) + " r" + std::to_string(static_cast<int>(radius)),
            "cv::GaussianBlur", goal, setup};
}

const Registration blurs{
    blur(fourCC("argb"), 1920, 1080, 10, 0.5), blur(fourCC("argb"), 1920, 1080, 50, 0.1),
    blur(fourCC("ae32"), 1920, 1080, 10, 0.5), blur(fourCC("ae32"), 1920, 1080, 50, 0.1),
    blur(fourCC("argb"), 3840, 2160, 10, 0.5), blur(fourCC("argb"), 3840, 2160, 50, 0.1),
    blur(fourCC("ae32"), 3840, 2160, 10, 0.5), blur(fourCC("ae32"), 3840, 2160, 50, 0.1)};

}  // namespace
}  // namespace Tw::Bench
