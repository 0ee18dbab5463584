// "Balance RGB": the master range map of "Balance", then one range map per channel.
#pragma once

#include <array>

#include "image/filters/tone/BalanceRGBFilter.h"
#include "plugins/BalancePlugin.h"

namespace Tw::Plugins {

template <class Host>
struct BalanceRGBPluginFilters {
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        const auto channels = [&](int index) {
            const Param::ParamColor c = params.getColor(index);
            return std::array<float, 3>{static_cast<float>(c.red), static_cast<float>(c.green),
                                        static_cast<float>(c.blue)};
        };
        return chain.template add<Image::BalanceRGBFilter<Host>>(
            chain.source(), fraction(params, 0), fraction(params, 1), fraction(params, 2),
            fraction(params, 3), static_cast<float>(params.getFloat(8)), channels(4), channels(5),
            channels(6), channels(7), params.getBool(9));
    }
};

template <class Host>
class BalanceRGBPlugin final : public FilterPlugin<Host, BalanceRGBPluginFilters<Host>> {
public:
    static constexpr const char* displayName = "Balance RGB";
    static constexpr bool pixelIndependent = true;
    static constexpr EffectInputs inputs = EffectInputs::Filter;
    static constexpr std::array<const char*, 5> busySettings{
        "From Low=5", "From Low RGB=0.1,0.05,0", "To High RGB=0.9,1,0.95", "Gamma=0.7", "Clamp=on"};
    static constexpr std::array<const char*, 0> neutralSettings{};

    using FilterPlugin<Host, BalanceRGBPluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        addRangeSliders(list);
        list.records.push_back(Param::ParamRecord::color("From Low RGB", {0, 0, 0}));
        list.records.push_back(Param::ParamRecord::color("From High RGB", {1, 1, 1}));
        list.records.push_back(Param::ParamRecord::color("To Low RGB", {0, 0, 0}));
        list.records.push_back(Param::ParamRecord::color("To High RGB", {1, 1, 1}));
        list.records.push_back(gammaSlider());
        list.records.push_back(Param::ParamRecord::checkbox("Clamp", false));
    }
};

}  // namespace Tw::Plugins
