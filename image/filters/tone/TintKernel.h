// The kernel of TintFilter. It takes the processor's features and a progress sink rather than the host,
// so that it compiles once, in TintKernel.cpp, whatever the hosts the filter is built for.
#pragma once

#include <array>

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// A ramp of four colours at four luminances. The points are taken in the order given, never sorted.
struct TintRamp {
    using Colour = std::array<float, 3>;  // red, green, blue

    float amount1, amount2, amount3, amount4;  // luminances, 0..1
    Colour color1, color2, color3, color4;

    friend bool operator==(const TintRamp&, const TintRamp&) = default;
};

// Each pixel of `band` of `output` the colour of the ramp at its luminance 0.3 r + 0.59 g + 0.11 b,
// reading `input` at the same places; a pixel outside the input reads as transparent black. Alpha is
// copied. Integer results are cut toward zero.
void tintBand(ImageBuffer& output, const ImageBuffer& input, const PixelRect& band, CpuFeatures features,
              Progress& progress, const TintRamp& ramp);

}  // namespace Tw::Image
