// Frames for the tests: a picture with structure for filters to act on, and how assertions tell two frames
// apart and show one.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

#include "tools/aehost/Frame.h"

namespace Tw::Tools::AeHost {

// Ramps in red and green, a hard vertical edge and a diagonal one in blue, and alpha that is mostly opaque
// but half and fully transparent in places. Float frames also hold values a little outside 0..1. `seed`
// shifts the ramps, so that frames differ.
Frame patternFrame(int32_t width, int32_t height, int depth, ComponentOrder order, uint32_t seed = 0);

// Where two frames first differ, for failure messages; empty when they are equal.
std::string firstDifference(const Frame& actual, const Frame& expected);
// How assertions show a frame: its shape, not its pixels.
void PrintTo(const Frame& frame, std::ostream* out);

}  // namespace Tw::Tools::AeHost
