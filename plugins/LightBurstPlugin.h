// "Light Burst": streaks the bright parts of a picture away from a centre, as light bursting through.
#pragma once

#include <array>

#include "host/param/Parameters.h"
#include "image/filters/tone/LightBurstFilter.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"
#include "plugins/PercentSlider.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

// Parameter indices, in host order.
namespace LightBurstParam {
enum : int { Radius, Center, Amount };
}

template <class Host>
struct LightBurstPluginFilters {
    // "Radius" counts pixels of the frame as rendered, so that it is not scaled by the downsampling; the
    // centre comes in those pixels too. The node stays at every setting, "Amount" 0 included.
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        const Param::ParamPoint center = params.getPoint(LightBurstParam::Center);
        return chain.template add<Image::LightBurstFilter<Host>>(
            chain.source(), static_cast<float>(params.getFloat(LightBurstParam::Radius)),
            static_cast<float>(center.x), static_cast<float>(center.y),
            static_cast<float>(params.getFloat(LightBurstParam::Amount) / 100.0));
    }
};

template <class Host>
class LightBurstPlugin final : public FilterPlugin<Host, LightBurstPluginFilters<Host>> {
public:
    static constexpr const char* displayName = "Light Burst";
    static constexpr bool pixelIndependent = false;
    static constexpr EffectInputs inputs = EffectInputs::Filter;
    // Rays long enough to leave pixels that only the straight kernel reads, from a centre off the middle
    // whose pixel position is exact in every host.
    static constexpr std::array<const char*, 3> busySettings{"Radius=12", "Center=0.25,0.75", "Amount=80"};
    static constexpr std::array<const char*, 1> neutralSettings{"Amount=0"};

    using FilterPlugin<Host, LightBurstPluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        list.records.push_back(
            Param::ParamRecord::floatSlider("Radius", 10, 0, 1000).withSliderRange(0, 200));
        list.records.push_back(Param::ParamRecord::point("Center", {0.5, 0.5}));
        list.records.push_back(percentSlider("Amount", 25));
    }
};

}  // namespace Tw::Plugins
