// The blend modes that are told by what they do with alpha: plain laying over (and under), the
// stencils and silhouettes that cut the base's alpha by the top, and the two with their own mix of
// alphas.
#pragma once

#include "image/filters/blend/BlendColourMath.h"
#include "image/filters/blend/BlendMath.h"
#include "image/filters/blend/BlendRules.h"

namespace Tw::Image {

struct Normal : NormalRule {
    static constexpr const char* name = "Normal";
};

// "Normal" with the inputs exchanged: the second input lies under the first, and the opacity applies to
// the first.
struct Behind : NormalRule {
    static constexpr const char* name = "Behind";
    static constexpr bool exchangesInputs = true;
};

struct StencilAlpha : StencilRule<StencilAlpha> {
    static constexpr const char* name = "StencilAlpha";
    template <class F>
    [[gnu::always_inline]] static F alpha(const BlendColour<F>& /*t*/, F ba, F a) {
        return ba * a;
    }
};

struct StencilLuma : StencilRule<StencilLuma> {
    static constexpr const char* name = "StencilLuma";
    template <class F>
    [[gnu::always_inline]] static F alpha(const BlendColour<F>& t, F ba, F a) {
        return ba * (luminanceByFractions(t) * a);
    }
};

struct SilhouetteAlpha : StencilRule<SilhouetteAlpha> {
    static constexpr const char* name = "SilhouetteAlpha";
    template <class F>
    [[gnu::always_inline]] static F alpha(const BlendColour<F>& /*t*/, F ba, F a) {
        return ba * (1.0f - a);
    }
};

struct SilhouetteLuma : StencilRule<SilhouetteLuma> {
    static constexpr const char* name = "SilhouetteLuma";
    template <class F>
    [[gnu::always_inline]] static F alpha(const BlendColour<F>& t, F ba, F a) {
        return ba * (1.0f - luminanceByFractions(t) * a);
    }
};

// The alphas add up, limited to 1, and the top's share is its alpha over that sum.
struct AlphaAdd {
    static constexpr const char* name = "AlphaAdd";
    template <class F, class Scale>
    [[gnu::always_inline]] static BlendPixel<F> compose(const BlendPixel<F>& /*b*/, const BlendPixel<F>& t,
                                                        const BlendWeights<F>& w, const Scale& scale) {
        const F alpha = BlendMath::minimum(F{} + 1.0f, w.ba + w.a);
        const F share = alpha > 0.0f ? w.a / alpha : w.a;
        const auto composed = [&](F bn, F tn) { return (share * (tn - bn) + bn) * scale.white; };
        return {eachComponent(composed, w.bn, scale.normalised(t.colour)), alpha * scale.white};
    }
};

// The top counts as premultiplied: it is added as it is, divided by the output's alpha, and the base is
// weighted by what the top leaves.
struct LuminescentPremul {
    static constexpr const char* name = "LuminescentPremul";
    template <class F, class Scale>
    [[gnu::always_inline]] static BlendPixel<F> compose(const BlendPixel<F>& /*b*/, const BlendPixel<F>& t,
                                                        const BlendWeights<F>& w, const Scale& scale) {
        const F k = w.A > 0.0f ? 1.0f / w.A : F{};
        const F e = w.A > 0.0f ? w.a * k : w.a;
        const auto composed = [&](F bn, F tn) { return (k * tn + (1.0f - e) * bn) * scale.white; };
        return {eachComponent(composed, w.bn, scale.normalised(t.colour)), w.A * scale.white};
    }
};

}  // namespace Tw::Image
