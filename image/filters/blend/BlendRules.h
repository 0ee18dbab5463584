// How a blend mode's colour function becomes an output pixel: the alpha weights every mode shares, and
// the composition rules. A rule's `compose` takes the base and top pixels in the stored scale and gives
// the output pixel in the stored scale, alpha lanes included, before the rounding of BlendDepth::stored.
//
// Alpha and weight: a = ta * o (at integer depths the stored top alpha times o, then normalised),
// A = ba + a - ba * a is the output's alpha unless a rule says otherwise, and f = a / A is the top's
// share, or a where A is 0.
#pragma once

#include "image/filters/blend/BlendLanes.h"

namespace Tw::Image {

template <class F>
struct BlendWeights {
    F bn;  // the base pixel, normalised
    F ba;  // base alpha, normalised
    F a;   // top alpha times opacity, normalised
    F A;   // ba + a - ba * a
    F f;   // the top's share of the result
};

template <class Px>
[[gnu::always_inline]] inline BlendWeights<typename Px::F> blendWeights(typename Px::F b, typename Px::F t,
                                                                        float opacity) {
    using Depth = typename Px::Depth;
    BlendWeights<typename Px::F> w;
    // Normalised once for the weights and every rule that reads the base's colour.
    w.bn = Depth::normalised(b);
    w.ba = Px::alpha(w.bn);
    w.a = Depth::normalised(Px::alpha(t) * opacity);
    w.A = w.ba + w.a - w.ba * w.a;
    w.f = w.A > 0.0f ? w.a / w.A : w.a;
    return w;
}

// "Normal": out = f (t - b) + b, straight in the stored scale.
struct NormalRule {
    template <class Px, class F, class W>
    [[gnu::always_inline]] static F compose(F b, F t, const W& w) {
        return Px::withAlpha(w.f * (t - b) + b, w.A * Px::Depth::white);
    }
};

// What becomes of a colour function's result at the integer depths before it is composed.
enum class BlendRange {
    Rounded,  // + 0.5, truncated, low bits kept
    Limited,  // limited to 0..white and truncated: for results that leave 0..1 by their nature
};

// Rule S. Mode::colour gives B from normalised base and top; in the stored scale C = ba (B - t) + t and
// out = f (C - b) + b. Where the base is transparent the top's own colour stands in for B, and where the
// top is weak the base stays.
template <class Mode, BlendRange Range = BlendRange::Rounded>
struct StandardRule {
    template <class Px, class F, class W>
    [[gnu::always_inline]] static F compose(F b, F t, const W& w) {
        using Depth = typename Px::Depth;
        const F blended = Mode::template colour<Px>(w.bn, Depth::normalised(t));
        const F B = Range == BlendRange::Limited ? Depth::limited(blended) : Depth::rounded(blended);
        return Px::withAlpha(w.f * (w.ba * (B - t) + t - b) + b, w.A * Depth::white);
    }
};

// Rule D. Mode::direct gives C from normalised base and top and the base's alpha; out = f (C - b) + b.
template <class Mode>
struct DirectRule {
    template <class Px, class F, class W>
    [[gnu::always_inline]] static F compose(F /*b*/, F t, const W& w) {
        using Depth = typename Px::Depth;
        const F C = Mode::template direct<Px>(w.bn, Depth::normalised(t), w.ba);
        return Px::withAlpha((w.f * (C - w.bn) + w.bn) * Depth::white, w.A * Depth::white);
    }
};

// Rule P. Mode::premultiplied gives r; r / A where A is positive, r itself where it is not, goes through
// Mode::finish, which leaves it as it is unless the mode says otherwise, to the output.
template <class Mode>
struct PremultipliedRule {
    template <class F>
    [[gnu::always_inline]] static F finish(F q) {
        return q;
    }

    template <class Px, class F, class W>
    [[gnu::always_inline]] static F compose(F /*b*/, F t, const W& w) {
        using Depth = typename Px::Depth;
        const F r = Mode::template premultiplied<Px>(w.bn, Depth::normalised(t), w.ba, w.a);
        const F out = Mode::finish(w.A > 0.0f ? r / w.A : r);
        return Px::withAlpha(out * Depth::white, w.A * Depth::white);
    }
};

// The stencils and silhouettes: the base's colours as they are, and Mode::alpha from the normalised top.
template <class Mode>
struct StencilRule {
    template <class Px, class F, class W>
    [[gnu::always_inline]] static F compose(F b, F t, const W& w) {
        using Depth = typename Px::Depth;
        return Px::withAlpha(b, Mode::template alpha<Px>(Depth::normalised(t), w.ba, w.a) * Depth::white);
    }
};

}  // namespace Tw::Image
