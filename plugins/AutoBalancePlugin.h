// "Auto-Balance": stretches the tones of each frame between levels measured on the frame itself. "From
// Low" and "From High" are shares of the pixels, darkest first; "To Low" and "To High" the tones that the
// levels at those shares become.
#pragma once

#include <array>

#include "host/param/Parameters.h"
#include "image/filters/tone/AutoBalanceFilter.h"
#include "plugins/BalancePlugin.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

// Parameter indices, in host order.
namespace AutoBalanceParam {
enum : int { FromLow, FromHigh, ToLow, ToHigh, Clamp };
}

template <class Host>
struct AutoBalancePluginFilters {
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        using namespace AutoBalanceParam;
        return chain.template add<Image::AutoBalanceFilter<Host>>(
            chain.source(), fraction(params, FromLow), fraction(params, FromHigh), fraction(params, ToLow),
            fraction(params, ToHigh), params.getBool(Clamp));
    }
};

template <class Host>
class AutoBalancePlugin final : public FilterPlugin<Host, AutoBalancePluginFilters<Host>> {
public:
    static constexpr const char* displayName = "Auto-Balance";
    // Every output pixel depends on the whole frame.
    static constexpr bool pixelIndependent = false;
    static constexpr EffectInputs inputs = EffectInputs::Filter;
    static constexpr std::array<const char*, 5> busySettings{"From Low=5", "From High=95", "To Low=0",
                                                             "To High=100", "Clamp=on"};
    static constexpr std::array<const char*, 0> neutralSettings{};

    using FilterPlugin<Host, AutoBalancePluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        addRangeSliders(list, {10, 90, 10, 90});
        list.records.push_back(Param::ParamRecord::checkbox("Clamp", false));
    }
};

}  // namespace Tw::Plugins
