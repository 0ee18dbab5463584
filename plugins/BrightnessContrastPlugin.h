// "Brightness & Contrast": one linear map of red, green and blue. It changes the picture only with
// "Clamp" on (BrightnessContrastFilter.h says why); unclamped, it passes its input on unchanged.
#pragma once

#include <array>

#include "host/param/Parameters.h"
#include "image/filters/tone/BrightnessContrastFilter.h"
#include "plugins/BalancePlugin.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"

namespace Tw::Plugins {

template <class Host>
struct BrightnessContrastPluginFilters {
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        return chain.template add<Image::BrightnessContrastFilter<Host>>(
            chain.source(), fraction(params, 0), fraction(params, 1), params.getBool(2));
    }
};

template <class Host>
class BrightnessContrastPlugin final : public FilterPlugin<Host, BrightnessContrastPluginFilters<Host>> {
public:
    static constexpr const char* displayName = "Brightness & Contrast";
    static constexpr bool pixelIndependent = true;
    static constexpr EffectInputs inputs = EffectInputs::Filter;
    static constexpr std::array<const char*, 3> busySettings{"Brightness=20", "Contrast=35", "Clamp=on"};
    static constexpr std::array<const char*, 0> neutralSettings{};

    using FilterPlugin<Host, BrightnessContrastPluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        list.records.push_back(Param::ParamRecord::floatSlider("Brightness", 0, -100, 100));
        list.records.push_back(Param::ParamRecord::floatSlider("Contrast", 0, -100, 100));
        list.records.push_back(Param::ParamRecord::checkbox("Clamp", false));
    }
};

}  // namespace Tw::Plugins
