#include "bench/peers/PeerFrames.h"

#include <map>
#include <stdexcept>
#include <string>
#include <tuple>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "image/graph/KernelDispatch.h"

namespace Tw::Bench {
namespace {

cv::Mat loadPortrait() {
    const std::string path = std::string(TW_SAMPLES_DIR) + "/astronaut.png";
    const cv::Mat loaded = cv::imread(path, cv::IMREAD_COLOR);
    if (loaded.empty()) throw std::runtime_error("cannot read " + path);
    cv::Mat rgba;
    cv::cvtColor(loaded, rgba, cv::COLOR_BGR2RGBA);
    return rgba;
}

}  // namespace

int cvTypeOfDepth(int depth) {
    return depth == 8 ? CV_8UC4 : depth == 16 ? CV_16UC4 : CV_32FC4;
}

std::string frameName(Image::PixelFormat format, int width, int height) {
    const int depth = Image::formatDepth(format);
    return (depth == 32 ? std::string("float") : std::to_string(depth) + "-bit") + " " +
           std::to_string(width) + "x" + std::to_string(height);
}

cv::Mat portraitMat(int width, int height, int cvType) {
    static std::map<std::tuple<int, int, int>, cv::Mat> cache;
    cv::Mat& frame = cache[{width, height, cvType}];
    if (frame.empty()) {
        static const cv::Mat portrait = loadPortrait();
        cv::Mat scaled;
        cv::resize(portrait, scaled, cv::Size(width, height), 0, 0, cv::INTER_CUBIC);
        const double white = CV_MAT_DEPTH(cvType) == CV_8U ? 255 : CV_MAT_DEPTH(cvType) == CV_16U ? 32768 : 1;
        scaled.convertTo(frame, cvType, white / 255);
    }
    return frame;
}

Image::ImageBuffer portraitFrame(int width, int height, Image::PixelFormat format) {
    const cv::Mat source = portraitMat(width, height, cvTypeOfDepth(Image::formatDepth(format)));
    Image::ImageBuffer frame;
    frame.allocate({0, 0, width, height}, format);
    const auto positions = Image::componentPositions(format).value();
    Image::dispatchLayout(frame, [&](auto layout) {
        using T = typename decltype(layout)::Component;
        for (int y = 0; y < height; ++y) {
            const T* in = source.ptr<T>(y);
            T* out = reinterpret_cast<T*>(frame.pixelAddress(0, y));
            for (int x = 0; x < width; ++x)
                for (int c = 0; c < 4; ++c)
                    out[4 * x + positions[c]] = in[4 * x + c];
        }
    });
    return frame;
}

}  // namespace Tw::Bench
