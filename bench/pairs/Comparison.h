// A comparison: one of our effects beside a peer that does the same work, on the same frames. The
// harness (AlternatingRuns.h) times the two sides in alternation and reports the median of the ratios of
// adjacent runs, so that a neighbour who slows the machine for a while slows both sides of the pairs it
// falls on, and the few pairs it splits fall outside the median.
//
// A file of comparisons registers its own, each a few lines: a name, the peer's name, a goal, and a setup
// that makes the frames once and returns the two sides over them.
//
//     const Registration sharpen{Comparison{"Sharpen 8-bit 1920x1080", "cv::medianBlur", 1.0, [] {
//         auto settings = [](Param::Parameters& params) { params.setFloat(0, 50); };
//         Side ours = effectSide<Plugins::SharpenPlugin<Host>>(portraitFrame(1920, 1080, argb), settings);
//         return Sides{ours, peerSide(portraitMat(1920, 1080, CV_8UC4), [](const cv::Mat& in, cv::Mat& out) {
//                          cv::medianBlur(in, out, 3);
//                      })};
//     }}};
//
// effectSide (EffectSide.h) makes our side, peerSide (peers/PeerSide.h) OpenCV's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

namespace Tw::Bench {

// The threads each side works on, ours and the peer alike.
inline constexpr uint32_t kThreads = 2;

// One side of a comparison: does the work once, on the frames its setup made. Called many times; every
// call does the same work.
using Side = std::function<void()>;

struct Sides {
    Side ours;
    Side peer;
};

struct Comparison {
    std::string name;
    // What ours is compared with, as the table shows it.
    std::string peer;
    // The largest acceptable median of the ratios ours / peer.
    double goal;
    // Makes the frames and both sides over them. Called when the comparison's turn comes, and its frames
    // go when the comparison is done.
    std::function<Sides()> setup;
    // When not zero, also the memory each side takes in one call beyond the frames of the setup, in
    // frames of this many bytes.
    std::size_t memoryFrameBytes = 0;
};

// Every registered comparison, in the order of registration.
std::vector<Comparison>& registeredComparisons();

struct Registration {
    explicit Registration(std::initializer_list<Comparison> comparisons);
};

}  // namespace Tw::Bench
