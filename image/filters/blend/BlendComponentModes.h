// The blend modes whose colour function works component by component, on normalised base b and top t.
// Most go by rule S (`component` gives B); Darken, Lighten and Soft Light by rule D (`direct` gives C from
// the base's alpha as well). Tests are written as the comparisons they are, `0.5 > t` and `t >= 1` alike:
// where a value lies exactly on a boundary, which side it takes is part of the result.
#pragma once

#include "image/filters/blend/BlendMath.h"
#include "image/filters/blend/BlendRules.h"
#include "image/graph/StoredVectors.h"
#include "image/graph/VectorMath.h"

namespace Tw::Image {

struct Darken : DirectRule<Darken> {
    static constexpr const char* name = "Darken";
    template <class F>
    [[gnu::always_inline]] static F direct(F b, F t, F ba) {
        return BlendMath::minimum((b - 1.0f) * ba + 1.0f, t);
    }
};

struct Multiply : StandardRule<Multiply> {
    static constexpr const char* name = "Multiply";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return b * t;
    }
};

struct ColorBurn : StandardRule<ColorBurn> {
    static constexpr const char* name = "ColorBurn";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return BlendMath::burn(b, t);
    }
};

struct LinearBurn : StandardRule<LinearBurn> {
    static constexpr const char* name = "LinearBurn";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return BlendMath::maximum(F{}, b + t - 1.0f);
    }
};

struct Add : StandardRule<Add, BlendRange::Limited> {
    static constexpr const char* name = "Add";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return b + t;
    }
};

struct Lighten : DirectRule<Lighten> {
    static constexpr const char* name = "Lighten";
    template <class F>
    [[gnu::always_inline]] static F direct(F b, F t, F ba) {
        return BlendMath::maximum(ba * b, t);
    }
};

struct Screen : StandardRule<Screen> {
    static constexpr const char* name = "Screen";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return 1.0f - (1.0f - t) * (1.0f - b);
    }
};

struct ColorDodge : StandardRule<ColorDodge> {
    static constexpr const char* name = "ColorDodge";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return BlendMath::dodge(b, t);
    }
};

struct LinearDodge : StandardRule<LinearDodge> {
    static constexpr const char* name = "LinearDodge";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return BlendMath::minimum(F{} + 1.0f, b + t);
    }
};

struct Overlay : StandardRule<Overlay> {
    static constexpr const char* name = "Overlay";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return 0.5f > b ? 2.0f * b * t : 1.0f - 2.0f * (1.0f - t) * (1.0f - b);
    }
};

// The base, moved toward transparent grey as its alpha falls, is darkened below a top of a half and
// lightened toward its square root (a cubic below a quarter) above.
struct SoftLight : DirectRule<SoftLight> {
    static constexpr const char* name = "SoftLight";
    template <class F>
    [[gnu::always_inline]] static F direct(F b, F t, F ba) {
        const F d = (b - 0.5f) * ba + 0.5f;
        const F g = 0.25f > d ? ((16.0f * d - 12.0f) * d + 4.0f) * d : squareRoot<BlendMath::kLanes<F>>(d);
        return 0.5f > t ? d - (1.0f - d) * (1.0f - 2.0f * t) * d : d + (g - d) * (2.0f * t - 1.0f);
    }
};

struct HardLight : StandardRule<HardLight> {
    static constexpr const char* name = "HardLight";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return 0.5f > t ? 2.0f * t * b : 1.0f - 2.0f * (1.0f - b) * (1.0f - t);
    }
};

struct LinearLight : StandardRule<LinearLight> {
    static constexpr const char* name = "LinearLight";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return 0.5f > t ? BlendMath::maximum(F{}, 2.0f * t + b - 1.0f)
                        : BlendMath::minimum(F{} + 1.0f, 2.0f * (t - 0.5f) + b);
    }
};

struct VividLight : StandardRule<VividLight> {
    static constexpr const char* name = "VividLight";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return BlendMath::vividLight(b, t);
    }
};

struct PinLight : StandardRule<PinLight> {
    static constexpr const char* name = "PinLight";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return 0.5f > t ? BlendMath::minimum(b, 2.0f * t) : BlendMath::maximum(b, 2.0f * (t - 0.5f));
    }
};

struct HardMix : StandardRule<HardMix> {
    static constexpr const char* name = "HardMix";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return BlendMath::vividLight(b, t) < 0.5f ? F{} : F{} + 1.0f;
    }
};

struct Difference : StandardRule<Difference> {
    static constexpr const char* name = "Difference";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return absolute<BlendMath::kLanes<F>>(b - t);
    }
};

struct Exclusion : StandardRule<Exclusion> {
    static constexpr const char* name = "Exclusion";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return b + t - 2.0f * b * t;
    }
};

struct Subtract : StandardRule<Subtract, BlendRange::Limited> {
    static constexpr const char* name = "Subtract";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return b - t;
    }
};

struct Divide : StandardRule<Divide, BlendRange::Limited> {
    static constexpr const char* name = "Divide";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return t == 0.0f ? t : b / t;
    }
};

struct Average : StandardRule<Average> {
    static constexpr const char* name = "Average";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return (b + t) * 0.5f;
    }
};

struct Negation : StandardRule<Negation> {
    static constexpr const char* name = "Negation";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return 1.0f - absolute<BlendMath::kLanes<F>>(1.0f - b - t);
    }
};

struct Reflect : StandardRule<Reflect> {
    static constexpr const char* name = "Reflect";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return BlendMath::dodge(b * b, t);
    }
};

struct Glow : StandardRule<Glow> {
    static constexpr const char* name = "Glow";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return BlendMath::dodge(t * t, b);
    }
};

struct Phoenix : StandardRule<Phoenix> {
    static constexpr const char* name = "Phoenix";
    template <class F>
    [[gnu::always_inline]] static F component(F b, F t) {
        return BlendMath::minimum(t, b) - BlendMath::maximum(t, b) + 1.0f;
    }
};

}  // namespace Tw::Image
