// "Color Correction": turns the hue, and scales saturation and value, in HSV.
#pragma once

#include <array>

#include "host/param/Parameters.h"
#include "image/filters/tone/HSVCCFilter.h"
#include "plugins/ColorAdjustParams.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

template <class Host>
struct ColorCorrectionPluginFilters {
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        const ColorAdjustment adjust(params);
        if (adjust.isNone()) return chain.source();
        return chain.template add<Image::HSVCCFilter<Host>>(chain.source(), adjust.hue, adjust.saturation,
                                                            adjust.brightness);
    }
};

template <class Host>
class ColorCorrectionPlugin final : public FilterPlugin<Host, ColorCorrectionPluginFilters<Host>> {
public:
    static constexpr const char* displayName = "Color Correction";
    static constexpr bool pixelIndependent = true;
    static constexpr EffectInputs inputs = EffectInputs::Filter;
    static constexpr std::array<const char*, 3> busySettings{"Adjust Hue=130", "Adjust Saturation=40",
                                                             "Adjust Brightness=-20"};
    static constexpr std::array<const char*, 0> neutralSettings{};

    using FilterPlugin<Host, ColorCorrectionPluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override { addColorAdjustSliders(list); }
};

}  // namespace Tw::Plugins
