// Pixels as the blend kernels see them: a vector of Lanes floats holds Lanes / 4 whole pixels, their
// components in the memory order of Layout. Most modes work lane by lane; alpha and the modes that look
// at a whole colour (luminance, saturation) need, in every lane, a component of the lane's own pixel.
// `spread` gives that, and the lane masks say which lanes hold which component. `Depth` is the scale of the
// stored values.
#pragma once

#include <cstddef>
#include <utility>

#include "image/filters/blend/BlendDepth.h"
#include "image/graph/PixelVector.h"

namespace Tw::Image {

template <class PixelLayout, int Lanes>
struct BlendLanes {
    using Layout = PixelLayout;
    using Depth = BlendDepth<typename Layout::Component, Lanes>;
    static constexpr int lanes = Lanes;
    using F = FloatVector<Lanes>;
    using I = IntVector<Lanes>;

    // Component `Position` of each pixel, in all four lanes of that pixel.
    template <int Position>
    [[gnu::always_inline]] static F spread(F v) {
        return [&]<std::size_t... Lane>(std::index_sequence<Lane...>) {
            return __builtin_shufflevector(v, v, (Lane / 4 * 4 + Position)...);
        }
        (std::make_index_sequence<Lanes>{});
    }
    [[gnu::always_inline]] static F red(F v) { return spread<Layout::red>(v); }
    [[gnu::always_inline]] static F green(F v) { return spread<Layout::green>(v); }
    [[gnu::always_inline]] static F blue(F v) { return spread<Layout::blue>(v); }
    [[gnu::always_inline]] static F alpha(F v) { return spread<Layout::alpha>(v); }

    // All bits set in the lanes of component `Position`, none elsewhere.
    template <int Position>
    [[gnu::always_inline]] static I lanesOf() {
        return [&]<std::size_t... Lane>(std::index_sequence<Lane...>) {
            return I{(Lane % 4 == Position ? -1 : 0)...};
        }
        (std::make_index_sequence<Lanes>{});
    }

    // The colour lanes of `colour` with the alpha lanes of `alpha`.
    [[gnu::always_inline]] static F withAlpha(F colour, F alpha) {
        return lanesOf<Layout::alpha>() ? alpha : colour;
    }
};

}  // namespace Tw::Image
