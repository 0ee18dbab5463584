// "Balance": one range map, gamma and clamp for red, green and blue.
#pragma once

#include <array>

#include "host/param/Parameters.h"
#include "image/filters/tone/BalanceFilter.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"
#include "plugins/PercentSlider.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

// The four range sliders that open the lists of Balance, Balance RGB and Auto-Balance, in percent, with
// their defaults in that order.
inline void addRangeSliders(Param::Parameters& list,
                            const std::array<double, 4>& defaults = {0, 100, 0, 100}) {
    list.records.push_back(percentSlider("From Low", defaults[0]));
    list.records.push_back(percentSlider("From High", defaults[1]));
    list.records.push_back(percentSlider("To Low", defaults[2]));
    list.records.push_back(percentSlider("To High", defaults[3]));
}
inline Param::ParamRecord gammaSlider() {
    return Param::ParamRecord::floatSlider("Gamma", 1, 0, 5);
}

// A percent slider as the filters take it: a fraction, narrowed to single precision first.
inline float fraction(const Param::Parameters& params, int index) {
    return static_cast<float>(params.getFloat(index)) / 100.0f;
}

template <class Host>
struct BalancePluginFilters {
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        return chain.template add<Image::BalanceFilter<Host>>(
            chain.source(), fraction(params, 0), fraction(params, 1), fraction(params, 2),
            fraction(params, 3), static_cast<float>(params.getFloat(4)), params.getBool(5));
    }
};

template <class Host>
class BalancePlugin final : public FilterPlugin<Host, BalancePluginFilters<Host>> {
public:
    static constexpr const char* displayName = "Balance";
    static constexpr bool pixelIndependent = true;
    static constexpr EffectInputs inputs = EffectInputs::Filter;
    static constexpr std::array<const char*, 6> busySettings{"From Low=10", "From High=90", "To Low=5",
                                                             "To High=95",  "Gamma=1.8",    "Clamp=on"};
    static constexpr std::array<const char*, 0> neutralSettings{};

    using FilterPlugin<Host, BalancePluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        addRangeSliders(list);
        list.records.push_back(gammaSlider());
        list.records.push_back(Param::ParamRecord::checkbox("Clamp", false));
    }
};

}  // namespace Tw::Plugins
