#include "bench/peers/PeerSide.h"

#include <memory>
#include <utility>

namespace Tw::Bench {

Side peerSide(cv::Mat input, std::function<void(const cv::Mat& in, cv::Mat& out)> filter) {
    struct Call {
        cv::Mat input;
        cv::Mat output;
        std::function<void(const cv::Mat&, cv::Mat&)> filter;
    };
    auto call = std::make_shared<Call>();
    call->output = cv::Mat(input.size(), input.type(), cv::Scalar::all(0));
    call->input = std::move(input);
    call->filter = std::move(filter);
    cv::setNumThreads(kThreads);
    return [call] { call->filter(call->input, call->output); };
}

}  // namespace Tw::Bench
