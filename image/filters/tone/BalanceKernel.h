// The kernel of the Balance family: each colour component mapped linearly, optionally through a gamma
// first, then limited; alpha passes unchanged, bit for bit.
//
// Per component c (red, green, blue), with v the component as it stands in the image:
//     m = gamma ? pow(v, invGamma) : v;   r = m * scale[c] + offset[c]
// Integer images use their raw values (0..255, 0..32768), so a gamma gives a different image at each
// depth; offsets are in units of white, and results are limited to 0..white and rounded to nearest-even.
// Float results are raised to at least 0 and, with clamp, limited to at most 1.
//
// The kernel takes the processor's features and a progress sink rather than the host, so that it compiles
// once, in BalanceKernel.cpp, whatever the hosts the filters are built for.
#pragma once

#include <algorithm>
#include <array>

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// Scales and offsets for red, green, blue and alpha; offsets are fractions of white.
struct ScaleAndOffset {
    std::array<float, 4> scale{1, 1, 1, 1};
    std::array<float, 4> offset{0, 0, 0, 0};
};

// The scale and offset that map the range fromLow..fromHigh onto toLow..toHigh. Equal from ends give
// the steepest slope allowed, 255.
inline void rangeScale(float fromLow, float fromHigh, float toLow, float toHigh, float& scale,
                       float& offset) {
    const float slope = fromLow == fromHigh ? 1e38f : (toHigh - toLow) / (fromHigh - fromLow);
    scale = std::min(255.0f, slope);
    offset = toLow - fromLow * scale;
}

struct BalanceSettings {
    ScaleAndOffset map;
    float gamma = 1;
    bool clamp = false;
};

// Runs the kernel over `band` of `output`, reading `input` at the same places.
void balanceBand(ImageBuffer& output, const ImageBuffer& input, const PixelRect& band, CpuFeatures features,
                 Progress& progress, const BalanceSettings& settings);

}  // namespace Tw::Image
