// "Sharpen": boosts each pixel's difference from the median of its 3 x 3 neighbourhood, so that fine
// detail stands out without a halo along the edges.
#pragma once

#include <array>

#include "host/param/Parameters.h"
#include "image/filters/spatial/SharpenFilter.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

template <class Host>
struct SharpenPluginFilters {
    // "Amount" is in percent. The window is three pixels at any downsampling: a reduced frame's fine detail
    // is its own pixels.
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        const float strength = static_cast<float>(params.getFloat(0)) / 100.0f;
        if (!(strength > 0)) return chain.source();
        return chain.template add<Image::SharpenFilter<Host>>(chain.source(), strength);
    }
};

template <class Host>
class SharpenPlugin final : public FilterPlugin<Host, SharpenPluginFilters<Host>> {
public:
    static constexpr const char* displayName = "Sharpen";
    static constexpr bool pixelIndependent = false;
    static constexpr EffectInputs inputs = EffectInputs::Filter;
    static constexpr std::array<const char*, 1> busySettings{"Amount=80"};
    static constexpr std::array<const char*, 1> neutralSettings{"Amount=0"};

    using FilterPlugin<Host, SharpenPluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        list.records.push_back(Param::ParamRecord::floatSlider("Amount", 10, 0, 300));
    }
};

}  // namespace Tw::Plugins
