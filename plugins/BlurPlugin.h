// "Blur": a Gaussian blur whose "Radius" is the standard deviation in full-resolution pixels.
#pragma once

#include <array>

#include "host/param/Parameters.h"
#include "image/filters/spatial/GaussianBlurFilter.h"
#include "plugins/Downsample.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

template <class Host>
struct BlurPluginFilters {
    // No radius, no node: the input is the result. A downsampled render blurs by fewer of its pixels.
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        const double radius = params.getFloat(0);
        if (!(radius > 0)) return chain.source();
        const Host& host = chain.host();
        return chain.template add<Image::GaussianBlurFilter<Host>>(
            chain.source(), static_cast<float>(radius * downsampleFactor(host.downsampleX)),
            static_cast<float>(radius * downsampleFactor(host.downsampleY)), 0.0f, Image::Smoothing,
            Image::Smoothing);
    }
};

template <class Host>
class BlurPlugin final : public FilterPlugin<Host, BlurPluginFilters<Host>> {
public:
    static constexpr const char* displayName = "Blur";
    static constexpr bool pixelIndependent = false;
    static constexpr EffectInputs inputs = EffectInputs::Filter;
    static constexpr std::array<const char*, 1> busySettings{"Radius=3.5"};
    static constexpr std::array<const char*, 1> neutralSettings{"Radius=0"};

    using FilterPlugin<Host, BlurPluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        list.records.push_back(Param::ParamRecord::floatSlider("Radius", 10, 0, 200).withSliderRange(0, 30));
    }
};

}  // namespace Tw::Plugins
