// Pixels as the blend modes see them: each component of Lanes pixels in a float vector of its own (see
// RgbaPlanes.h), so that a mode's arithmetic is the same lane-wise code for every pixel, and a colour
// function that needs a pixel's red, green and blue finds them in the same lane of three vectors.
#pragma once

#include "image/graph/PixelVector.h"

namespace Tw::Image {

template <class F>
struct BlendColour {
    F red, green, blue;
};

template <class F>
struct BlendPixel {
    BlendColour<F> colour;
    F alpha;
};

// op applied to each component of the colours in turn: red, green, blue.
template <class F, class Op>
[[gnu::always_inline]] inline BlendColour<F> eachComponent(Op&& op, const BlendColour<F>& x) {
    return {op(x.red), op(x.green), op(x.blue)};
}
template <class F, class Op>
[[gnu::always_inline]] inline BlendColour<F> eachComponent(Op&& op, const BlendColour<F>& x,
                                                           const BlendColour<F>& y) {
    return {op(x.red, y.red), op(x.green, y.green), op(x.blue, y.blue)};
}
template <class F, class Op>
[[gnu::always_inline]] inline BlendColour<F> eachComponent(Op&& op, const BlendColour<F>& x,
                                                           const BlendColour<F>& y, const BlendColour<F>& z) {
    return {op(x.red, y.red, z.red), op(x.green, y.green, z.green), op(x.blue, y.blue, z.blue)};
}

}  // namespace Tw::Image
