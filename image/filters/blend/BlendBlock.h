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

// Small: the loads, the mode and the store each sweep the block in turn, and the longer the sweep, the
// longer the streams of the images stand idle while another is read or written. With blocks of 64
// pixels a float frame blends about as fast as memory allows, with blocks of 256 at half that speed;
// the call per block costs little either way.
inline constexpr int kBlendBlockPixels = 64;

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
