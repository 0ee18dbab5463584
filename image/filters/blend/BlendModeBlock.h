// The blend kernel of a mode: one template over the mode, run over a block of pixels in planes, one
// pixel a lane, with the mode's rule making each output pixel (BlendRules.h), in the arithmetic of float
// or of integer images (BlendScale.h). Every variant works with the same operations, so all give the
// same bits.
//
// Only the files of the mode groups (BlendModeGroups.h) include this header.
#pragma once

#include <cstring>

#include "image/filters/blend/BlendBlock.h"
#include "image/filters/blend/BlendModeGroups.h"
#include "image/filters/blend/BlendModeList.h"
#include "image/graph/KernelDispatch.h"

namespace Tw::Image {

template <class F>
[[gnu::always_inline]] inline BlendPixel<F> blendPixelAt(const BlendPlanes& planes, int i) {
    F c[4];
    for (int k = 0; k < 4; ++k)
        std::memcpy(&c[k], &planes.component[k][i], sizeof(F));
    return {{c[0], c[1], c[2]}, c[3]};
}

template <class F>
[[gnu::always_inline]] inline void storeBlendPixel(BlendPlanes& planes, int i, const BlendPixel<F>& pixel) {
    const F c[4] = {pixel.colour.red, pixel.colour.green, pixel.colour.blue, pixel.alpha};
    for (int k = 0; k < 4; ++k)
        std::memcpy(&planes.component[k][i], &c[k], sizeof(F));
}

template <class Mode, int Lanes, class Scale>
[[gnu::always_inline]] inline void blendVectors(const BlendBlock& block, const Scale& scale) {
    using F = FloatVector<Lanes>;
    // Read once: the stores to the output's planes could otherwise change them, as far as g++ knows.
    const BlendPlanes& base = *block.base;
    const BlendPlanes& top = *block.top;
    BlendPlanes& out = *block.out;
    const int pixels = block.pixels;
    const float opacity = block.opacity;
    for (int i = 0; i < pixels; i += Lanes) {
        const auto b = blendPixelAt<F>(base, i);
        const auto t = blendPixelAt<F>(top, i);
        storeBlendPixel(out, i, Mode::compose(b, t, blendWeights(b, t, opacity, scale), scale));
    }
}

template <class Mode>
void blendModeBlock(const BlendBlock& block, CpuFeatures features) {
    dispatchVariant(features, [&](auto isa) {
        constexpr int lanes = decltype(isa)::floatLanes;
        if (block.depth.isFloat()) {
            blendVectors<Mode, lanes>(block, BlendFloatScale<lanes>{});
        } else {
            blendVectors<Mode, lanes>(block, BlendIntegerScale<lanes>(block.depth));
        }
    });
}

template <int Group>
BlendModeKernel BlendModeGroup<Group>::kernel(int mode) {
    BlendModeKernel kernel = nullptr;
    withBlendModeIn<firstMode, endMode>(
        mode, [&](auto blendMode) { kernel = &blendModeBlock<typename decltype(blendMode)::type>; });
    return kernel;
}

}  // namespace Tw::Image
