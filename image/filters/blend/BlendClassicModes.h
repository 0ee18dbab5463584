// The classic modes, by rule P: they work on colours weighted by their alphas, the base's by ba and the
// top's by a, and divide the result by the output's alpha.
#pragma once

#include "image/filters/blend/BlendMath.h"
#include "image/filters/blend/BlendRules.h"

namespace Tw::Image {

// The output is 1 - r / A: a burn of the weighted base by the top's weighted darkness.
struct ClassicColorBurn : PremultipliedRule<ClassicColorBurn> {
    static constexpr const char* name = "ClassicColorBurn";
    template <class F>
    [[gnu::always_inline]] static F premultiplied(F b, F t, F ba, F a) {
        const F u = (1.0f - t) * a;
        return u >= 1.0f ? u : BlendMath::lower(F{} + 1.0f, (1.0f - b) * ba / (1.0f - u));
    }
    template <class F>
    [[gnu::always_inline]] static F finish(F q) {
        return 1.0f - q;
    }
};

struct ClassicColorDodge : PremultipliedRule<ClassicColorDodge> {
    static constexpr const char* name = "ClassicColorDodge";
    template <class F>
    [[gnu::always_inline]] static F premultiplied(F b, F t, F ba, F a) {
        const F p = b * ba;
        const F q = t * a;
        return q >= 1.0f ? q : BlendMath::lower(F{} + 1.0f, p / (1.0f - q));
    }
    template <class F>
    [[gnu::always_inline]] static F finish(F q) {
        return q;
    }
};

struct ClassicDifference : PremultipliedRule<ClassicDifference> {
    static constexpr const char* name = "ClassicDifference";
    template <class F>
    [[gnu::always_inline]] static F premultiplied(F b, F t, F ba, F a) {
        return BlendMath::magnitude(b * ba - t * a);
    }
    template <class F>
    [[gnu::always_inline]] static F finish(F q) {
        return q;
    }
};

}  // namespace Tw::Image
