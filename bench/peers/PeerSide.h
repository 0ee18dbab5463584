// OpenCV's side of a comparison: one filter call over the same input into the same output at every call,
// on the comparisons' threads.
#pragma once

#include <opencv2/core.hpp>

#include <functional>

#include "bench/pairs/Comparison.h"

namespace Tw::Bench {

// `filter` from `input` into an output of the input's size and type, written once here so that it counts
// among the setup's frames. A filter whose output has another type replaces it at the warming call.
Side peerSide(cv::Mat input, std::function<void(const cv::Mat& in, cv::Mat& out)> filter);

}  // namespace Tw::Bench
