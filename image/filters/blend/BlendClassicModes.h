// The classic modes, by rule P: they work on colours weighted by their alphas, the base's by ba and the
// top's by a, and divide the result by the output's alpha.
#pragma once

#include "image/filters/blend/BlendMath.h"
#include "image/filters/blend/BlendRules.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

// The output is 1 - r / A: a burn of the weighted base by the top's weighted darkness.
struct ClassicColorBurn : PremultipliedRule<ClassicColorBurn> {
    static constexpr const char* name = "ClassicColorBurn";
    template <class F>
    [[gnu::always_inline]] static F premultiplied(F b, F t, F ba, F a) {
        return BlendMath::dodge((1.0f - b) * ba, (1.0f - t) * a);
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
        return BlendMath::dodge(b * ba, t * a);
    }
};

struct ClassicDifference : PremultipliedRule<ClassicDifference> {
    static constexpr const char* name = "ClassicDifference";
    template <class F>
    [[gnu::always_inline]] static F premultiplied(F b, F t, F ba, F a) {
        return absolute<BlendMath::kLanes<F>>(b * ba - t * a);
    }
};

}  // namespace Tw::Image
