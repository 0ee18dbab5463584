// The blend modes whose colour function looks at whole colours: the darker or lighter of two colours by
// luminance, and the four that take hue, saturation and luminance from one input or the other. All go by
// rule S, each component of B taken from the lanes of its own pixel.
#pragma once

#include "image/filters/blend/BlendColourMath.h"
#include "image/filters/blend/BlendRules.h"

namespace Tw::Image {

// Equal luminances select the top.
struct DarkerColor : StandardRule<DarkerColor> {
    static constexpr const char* name = "DarkerColor";
    template <class Px, class F>
    [[gnu::always_inline]] static F colour(F b, F t) {
        return luminanceByFractions<Px>(t - b) > 0.0f ? b : t;
    }
};

struct LighterColor : StandardRule<LighterColor> {
    static constexpr const char* name = "LighterColor";
    template <class Px, class F>
    [[gnu::always_inline]] static F colour(F b, F t) {
        return 0.0f > luminanceByFractions<Px>(t - b) ? b : t;
    }
};

// The top's hue at the base's saturation and luminance.
struct Hue : StandardRule<Hue> {
    static constexpr const char* name = "Hue";
    template <class Px, class F>
    [[gnu::always_inline]] static F colour(F b, F t) {
        return withLuminance<Px>(withSaturation<Px>(t, saturationOf<Px>(b)), luminanceByPercent<Px>(b));
    }
};

// The top's saturation on the base's hue and luminance.
struct Saturation : StandardRule<Saturation> {
    static constexpr const char* name = "Saturation";
    template <class Px, class F>
    [[gnu::always_inline]] static F colour(F b, F t) {
        return withLuminance<Px>(withSaturation<Px>(b, saturationOf<Px>(t)), luminanceByPercent<Px>(b));
    }
};

// The top's hue and saturation at the base's luminance.
struct Color : StandardRule<Color> {
    static constexpr const char* name = "Color";
    template <class Px, class F>
    [[gnu::always_inline]] static F colour(F b, F t) {
        return withLuminance<Px>(t, luminanceByPercent<Px>(b));
    }
};

// The base's hue and saturation at the top's luminance.
struct Luminosity : StandardRule<Luminosity> {
    static constexpr const char* name = "Luminosity";
    template <class Px, class F>
    [[gnu::always_inline]] static F colour(F b, F t) {
        return withLuminance<Px>(b, luminanceByPercent<Px>(t));
    }
};

}  // namespace Tw::Image
