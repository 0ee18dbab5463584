// The blend modes whose colour function looks at whole colours: the darker or lighter of two colours by
// luminance, and the four that take hue, saturation and luminance from one input or the other. All go by
// rule S, `colour` giving B from normalised colours.
#pragma once

#include "image/filters/blend/BlendColourMath.h"
#include "image/filters/blend/BlendRules.h"

namespace Tw::Image {

// The luminance of the top's colour over the base's, weighed component by component.
template <class F>
[[gnu::always_inline]] inline F luminanceGain(const BlendColour<F>& b, const BlendColour<F>& t) {
    return luminanceByFractions(eachComponent([](F bc, F tc) { return tc - bc; }, b, t));
}

// The colour whose every component a mask of lanes picks from `x`, else from `y`.
template <class F, class Mask>
[[gnu::always_inline]] inline BlendColour<F> pickColour(Mask fromX, const BlendColour<F>& x,
                                                        const BlendColour<F>& y) {
    return eachComponent([&](F xc, F yc) { return fromX ? xc : yc; }, x, y);
}

// Equal luminances select the top.
struct DarkerColor : StandardRule<DarkerColor> {
    static constexpr const char* name = "DarkerColor";
    template <class F>
    [[gnu::always_inline]] static BlendColour<F> colour(const BlendColour<F>& b, const BlendColour<F>& t) {
        return pickColour(luminanceGain(b, t) > 0.0f, b, t);
    }
};

struct LighterColor : StandardRule<LighterColor> {
    static constexpr const char* name = "LighterColor";
    template <class F>
    [[gnu::always_inline]] static BlendColour<F> colour(const BlendColour<F>& b, const BlendColour<F>& t) {
        return pickColour(0.0f > luminanceGain(b, t), b, t);
    }
};

// The top's hue at the base's saturation and luminance.
struct Hue : StandardRule<Hue> {
    static constexpr const char* name = "Hue";
    template <class F>
    [[gnu::always_inline]] static BlendColour<F> colour(const BlendColour<F>& b, const BlendColour<F>& t) {
        return withLuminance(withSaturation(t, saturationOf(b)), luminanceByPercent(b));
    }
};

// The top's saturation on the base's hue and luminance.
struct Saturation : StandardRule<Saturation> {
    static constexpr const char* name = "Saturation";
    template <class F>
    [[gnu::always_inline]] static BlendColour<F> colour(const BlendColour<F>& b, const BlendColour<F>& t) {
        return withLuminance(withSaturation(b, saturationOf(t)), luminanceByPercent(b));
    }
};

// The top's hue and saturation at the base's luminance.
struct Color : StandardRule<Color> {
    static constexpr const char* name = "Color";
    template <class F>
    [[gnu::always_inline]] static BlendColour<F> colour(const BlendColour<F>& b, const BlendColour<F>& t) {
        return withLuminance(t, luminanceByPercent(b));
    }
};

// The base's hue and saturation at the top's luminance.
struct Luminosity : StandardRule<Luminosity> {
    static constexpr const char* name = "Luminosity";
    template <class F>
    [[gnu::always_inline]] static BlendColour<F> colour(const BlendColour<F>& b, const BlendColour<F>& t) {
        return withLuminance(b, luminanceByPercent(t));
    }
};

}  // namespace Tw::Image
