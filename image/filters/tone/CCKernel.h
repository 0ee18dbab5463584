// The kernel of CCFilter. It takes the processor's features and a progress sink rather than the host, so
// that it compiles once, in CCKernel.cpp, whatever the hosts the filter is built for.
#pragma once

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/CieLab.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// The correction over `band` of `output`, reading `input` at the same places; a pixel outside the input
// reads as transparent black. Alpha is copied. Integer results are limited to 0..white and cut toward
// zero; float results are not limited. The identity copies the input.
void ccBand(ImageBuffer& output, const ImageBuffer& input, const PixelRect& band, CpuFeatures features,
            Progress& progress, const LabCorrection& correction);

}  // namespace Tw::Image
