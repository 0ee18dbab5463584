// The kernel of HSVCCFilter. It takes the processor's features and a progress sink rather than the host,
// so that it compiles once, in HSVCCKernel.cpp, whatever the hosts the filter is built for.
#pragma once

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// A correction in hue, saturation and value: a turn of the hue (a fraction of a turn) and multipliers of
// saturation and value.
struct HsvCorrection {
    float hue = 0;
    float saturation = 1;
    float value = 1;

    bool isIdentity() const { return hue == 0.0f && saturation == 1.0f && value == 1.0f; }
};

// The correction over `band` of `output`, reading `input` at the same places; a pixel outside the input
// reads as transparent black. Each colour goes to hue, saturation and value, is corrected there and comes
// back; alpha is copied. Integer results are limited to 0..white and cut toward zero; float results are
// not limited. The identity copies the input.
void hsvccBand(ImageBuffer& output, const ImageBuffer& input, const PixelRect& band, CpuFeatures features,
               Progress& progress, const HsvCorrection& correction);

}  // namespace Tw::Image
