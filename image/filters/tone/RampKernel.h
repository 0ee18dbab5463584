// The kernel of RampFilter. It takes the processor's features and a progress sink rather than the host,
// so that it compiles once, in RampKernel.cpp, whatever the hosts the filter is built for.
#pragma once

#include <array>

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// A linear ramp of four colours along the line from `point1` to `point2`, in pixels of the rendered
// image: `color1` up to `point1`, `color4` from `point2` on, and `color2` and `color3` at the fractions
// `amount1` and `amount2` of the way between.
struct LinearRamp {
    using Colour = std::array<float, 3>;  // red, green, blue
    using Point = std::array<float, 2>;   // x, y

    float amount1, amount2;
    std::array<Colour, 4> colors;
    Point point1, point2;

    // Whether the four colours are one: the ramp is then a solid colour.
    bool isSolid() const {
        return colors[1] == colors[0] && colors[2] == colors[0] && colors[3] == colors[0];
    }

    friend bool operator==(const LinearRamp&, const LinearRamp&) = default;
};

// `band` of `output` painted with the ramp, alpha white. Integer results are cut toward zero.
void rampBand(ImageBuffer& output, const PixelRect& band, CpuFeatures features, Progress& progress,
              const LinearRamp& ramp);

}  // namespace Tw::Image
