// A block of pixels as a blend mode's kernel takes it: the base's, the top's and the output's pixels in
// planes of float components (RgbaPlanes.h), the depth as numbers (BlendScale.h) and the opacity. The
// kernel of a mode is thereby one function per processor variant and kind of arithmetic, float or
// integer, whatever the depth and component order of the images; the row loop (BlendRuns.h) fills the
// planes from the images and stores the result.
#pragma once

#include "image/core/CpuFeatures.h"
#include "image/filters/blend/BlendScale.h"
#include "image/graph/RgbaPlanes.h"

namespace Tw::Image {

// Large enough that a call per block costs nothing much, small enough that the three blocks of a
// worker stay in the first-level cache beside the rows they come from.
inline constexpr int kBlendBlockPixels = 256;

using BlendPlanes = RgbaPlanes<kBlendBlockPixels>;

// What an input reads as where it has no pixels: transparent black.
inline constexpr BlendPlanes kTransparentPlanes{};

struct BlendBlock {
    const BlendPlanes* base;
    const BlendPlanes* top;
    BlendPlanes* out;
    int pixels;  // a whole number of vectors of the variant that loads and blends them
    BlendDepth depth;
    float opacity;
};

// A mode's kernel over one block, in the widest variant `features` allows.
using BlendModeKernel = void (*)(const BlendBlock& block, CpuFeatures features);

}  // namespace Tw::Image
