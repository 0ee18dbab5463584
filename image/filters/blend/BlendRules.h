// How a blend mode's colour function becomes an output pixel: the alpha weights every mode shares, and
// the composition rules. A rule's `compose` takes the base and top pixels in the stored scale and gives
// the output pixel in the stored scale, before the rounding of the store.
//
// Alpha and weight: a = ta * o (at integer depths the stored top alpha times o, then normalised),
// A = ba + a - ba * a is the output's alpha unless a rule says otherwise, and f = a / A is the top's
// share, or a where A is 0.
#pragma once

#include "image/filters/blend/BlendPixel.h"
#include "image/filters/blend/BlendScale.h"

namespace Tw::Image {

template <class F>
struct BlendWeights {
    BlendColour<F> bn;  // the base's colour, normalised
    F ba;               // base alpha, normalised
    F a;                // top alpha times opacity, normalised
    F A;                // ba + a - ba * a
    F f;                // the top's share of the result
};

template <class F, class Scale>
[[gnu::always_inline]] inline BlendWeights<F> blendWeights(const BlendPixel<F>& b, const BlendPixel<F>& t,
                                                           float opacity, const Scale& scale) {
    BlendWeights<F> w;
    // Normalised once for the weights and every rule that reads the base's colour.
    w.bn = scale.normalised(b.colour);
    w.ba = scale.normalised(b.alpha);
    w.a = scale.fraction(t.alpha * opacity);
    w.A = w.ba + w.a - w.ba * w.a;
    w.f = w.A > 0.0f ? w.a / w.A : w.a;
    return w;
}

// "Normal": out = f (t - b) + b, straight in the stored scale.
struct NormalRule {
    template <class F, class Scale>
    [[gnu::always_inline]] static BlendPixel<F> compose(const BlendPixel<F>& b, const BlendPixel<F>& t,
                                                        const BlendWeights<F>& w, const Scale& scale) {
        return {eachComponent([&](F bc, F tc) { return w.f * (tc - bc) + bc; }, b.colour, t.colour),
                w.A * scale.white};
    }
};

// What becomes of a colour function's result at the integer depths before it is composed.
enum class BlendRange {
    Rounded,  // + 0.5, truncated, low bits kept
    Limited,  // limited to 0..white and truncated: for results that leave 0..1 by their nature
};

// B of a rule S mode from normalised colours: Mode::component on each component in turn, or
// Mode::colour on whole colours.
template <class Mode, class F>
[[gnu::always_inline]] inline BlendColour<F> blendedColour(const BlendColour<F>& b, const BlendColour<F>& t) {
    if constexpr (requires { Mode::component(b.red, t.red); }) {
        return eachComponent([](F bc, F tc) { return Mode::component(bc, tc); }, b, t);
    } else {
        return Mode::colour(b, t);
    }
}

// Rule S. B comes from normalised base and top; in the stored scale C = ba (B - t) + t and
// out = f (C - b) + b. Where the base is transparent the top's own colour stands in for B, and where the
// top is weak the base stays.
template <class Mode, BlendRange Range = BlendRange::Rounded>
struct StandardRule {
    template <class F, class Scale>
    [[gnu::always_inline]] static BlendPixel<F> compose(const BlendPixel<F>& b, const BlendPixel<F>& t,
                                                        const BlendWeights<F>& w, const Scale& scale) {
        const BlendColour<F> blended = blendedColour<Mode>(w.bn, scale.normalised(t.colour));
        const auto composed = [&](F B, F bc, F tc) {
            const F whole = Range == BlendRange::Limited ? scale.limited(B) : scale.rounded(B);
            return w.f * (w.ba * (whole - tc) + tc - bc) + bc;
        };
        return {eachComponent(composed, blended, b.colour, t.colour), w.A * scale.white};
    }
};

// Rule D. Mode::direct gives C from normalised base and top and the base's alpha; out = f (C - b) + b.
template <class Mode>
struct DirectRule {
    template <class F, class Scale>
    [[gnu::always_inline]] static BlendPixel<F> compose(const BlendPixel<F>& /*b*/, const BlendPixel<F>& t,
                                                        const BlendWeights<F>& w, const Scale& scale) {
        const auto composed = [&](F bn, F tn) {
            const F C = Mode::direct(bn, tn, w.ba);
            return (w.f * (C - bn) + bn) * scale.white;
        };
        return {eachComponent(composed, w.bn, scale.normalised(t.colour)), w.A * scale.white};
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

    template <class F, class Scale>
    [[gnu::always_inline]] static BlendPixel<F> compose(const BlendPixel<F>& /*b*/, const BlendPixel<F>& t,
                                                        const BlendWeights<F>& w, const Scale& scale) {
        const auto composed = [&](F bn, F tn) {
            const F r = Mode::premultiplied(bn, tn, w.ba, w.a);
            return Mode::finish(w.A > 0.0f ? r / w.A : r) * scale.white;
        };
        return {eachComponent(composed, w.bn, scale.normalised(t.colour)), w.A * scale.white};
    }
};

// The stencils and silhouettes: the base's colours as they are, and Mode::alpha from the normalised top.
template <class Mode>
struct StencilRule {
    template <class F, class Scale>
    [[gnu::always_inline]] static BlendPixel<F> compose(const BlendPixel<F>& b, const BlendPixel<F>& t,
                                                        const BlendWeights<F>& w, const Scale& scale) {
        return {b.colour, Mode::alpha(scale.normalised(t.colour), w.ba, w.a) * scale.white};
    }
};

}  // namespace Tw::Image
