// The kernel of ColorKeyCCFilter. It takes the processor's features and a progress sink rather than the
// host, so that it compiles once, in ColorKeyCCKernel.cpp, whatever the hosts the filter is built for.
#pragma once

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/filters/retouch/ColorKeySpace.h"
#include "image/graph/CieLab.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// (b' - a) * m + a over `band` of `output`, with m the key's strength at the colour of b as it stands and
// b' that colour corrected; alpha mixes b's own. At the integer depths b' is first limited to 0..white
// and cut to whole values, and the mix is cut toward zero. With `baseAlpha`, alpha is a's as it is.
void colorKeyCCBand(ImageBuffer& output, const ImageBuffer& a, const ImageBuffer& b, const PixelRect& band,
                    CpuFeatures features, Progress& progress, const SkinKey& key, bool inverted,
                    const LabCorrection& correction, bool baseAlpha = false);

}  // namespace Tw::Image
