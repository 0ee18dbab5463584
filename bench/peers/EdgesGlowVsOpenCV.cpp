// "Edges" and "Glow" beside what a user of OpenCV would write for a second derivative of a Gaussian: the
// Gaussian with the same standard deviation (its kernel as long as OpenCV chooses, 81 taps at 10 on float
// frames), then the 3 x 3 Laplacian, on float 4K frames of the portrait. Both our effects take second
// derivatives by recursion, at a cost that does not grow with the radius; "Edges" takes two of them.
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <memory>
#include <string>

#include "bench/EffectSide.h"
#include "bench/peers/PeerFrames.h"
#include "bench/peers/PeerSide.h"
#include "plugins/EdgesPlugin.h"
#include "plugins/GlowPlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;

template <template <class> class Plugin>
Comparison secondDerivative(const char* effect, int width, int height, double radius) {
    const auto setup = [=] {
        auto settings = [radius](Param::Parameters& params) { params.setFloat(0, radius); };
        // The blurred frame between the two calls is kept from call to call, as our side keeps its blocks.
        auto blurred = std::make_shared<cv::Mat>();
        return Sides{effectSide<Plugin<Host>>(portraitFrame(width, height, fourCC("ae32")), settings),
                     peerSide(portraitMat(width, height, CV_32FC4), [radius, blurred](const cv::Mat& in,
                                                                                      cv::Mat& out) {
                         cv::GaussianBlur(in, *blurred, cv::Size(), radius, radius, cv::BORDER_REPLICATE);
                         cv::Laplacian(*blurred, out, -1);
                     })};
    };
    return {std::string(effect) + " " + frameName(fourCC("ae32"), width, height) + " r" +
                std::to_string(static_cast<int>(radius)),
            "cv::GaussianBlur + cv::Laplacian", 0.5, setup};
}

const Registration secondDerivatives{secondDerivative<Plugins::EdgesPlugin>("Edges", 3840, 2160, 10),
                                     secondDerivative<Plugins::GlowPlugin>("Glow", 3840, 2160, 10)};

}  // namespace
}  // namespace Tw::Bench
