// The kernel of ColorKeyFilter. It takes the processor's features and a progress sink rather than the
// host, so that it compiles once, in ColorKeyKernel.cpp, whatever the hosts the filter is built for.
#pragma once

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/filters/retouch/ColorKeySpace.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// What the key writes, with m its strength at the colour of b.
enum class ColorKeyOutput {
    Mix,           // (b - a) * m + a in all four components
    MaskInColour,  // m in red, green and blue, the alpha of a
    MaskInAll,     // m in all four components; a is not read
};

// The key over `band` of `output`, from a of image `a` and b of image `b` at the same places. Integer
// results are cut toward zero: masks are m times white. With `baseAlpha`, a mix takes the alpha of a as
// it is instead of mixing it.
void colorKeyBand(ImageBuffer& output, const ImageBuffer& a, const ImageBuffer& b, const PixelRect& band,
                  CpuFeatures features, Progress& progress, const SkinKey& key, bool inverted,
                  ColorKeyOutput result, bool baseAlpha = false);

}  // namespace Tw::Image
