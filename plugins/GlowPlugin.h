// "Glow": the second derivative of a Gaussian across the rows, smoothed down the columns, over the whole
// pixel, alpha included. Its "Radius" is in the pixels of the frame being rendered, so that the glow keeps
// its size in pixels at any render resolution.
#pragma once

#include <array>

#include "host/param/Parameters.h"
#include "image/filters/spatial/GaussianBlurFilter.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

template <class Host>
struct GlowPluginFilters {
    // A "Radius" of 0 builds the node as well; it then reaches no neighbour and gives the frame back.
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        const auto radius = static_cast<float>(params.getFloat(0));
        return chain.template add<Image::GaussianBlurFilter<Host>>(chain.source(), radius, radius, 0.0f,
                                                                   Image::SecondDerivative, Image::Smoothing);
    }
};

template <class Host>
class GlowPlugin final : public FilterPlugin<Host, GlowPluginFilters<Host>> {
public:
    static constexpr const char* displayName = "Glow";
    static constexpr bool pixelIndependent = false;
    static constexpr EffectInputs inputs = EffectInputs::Filter;
    static constexpr std::array<const char*, 1> busySettings{"Radius=4"};
    static constexpr std::array<const char*, 1> neutralSettings{"Radius=0"};

    using FilterPlugin<Host, GlowPluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        list.records.push_back(Param::ParamRecord::floatSlider("Radius", 10, 0, 100).withSliderRange(0, 30));
    }
};

}  // namespace Tw::Plugins
