// "MinMax": the maximum or the minimum over a square of "Radius" pixels around each pixel. Two effects,
// one for each operation, share this template and also the display name.
#pragma once

#include <array>

#include <cstdint>

#include "host/param/Parameters.h"
#include "image/filters/spatial/MinMaxFilter.h"
#include "plugins/Downsample.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

template <class Host, class Op>
struct MinMaxPluginFilters {
    // "Radius" is in full-resolution pixels; at a strong downsampling an axis may come down to 0.
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        const int32_t radius = params.getInt(0);
        if (radius < 1) return chain.source();
        const Host& host = chain.host();
        const auto xRadius = static_cast<int32_t>(radius * downsampleFactor(host.downsampleX));
        const auto yRadius = static_cast<int32_t>(radius * downsampleFactor(host.downsampleY));
        return chain.template add<Image::MinMaxFilter<Host, Op>>(chain.source(), xRadius, yRadius);
    }
};

template <class Host, class Op>
class MinMaxPlugin final : public FilterPlugin<Host, MinMaxPluginFilters<Host, Op>> {
public:
    static constexpr const char* displayName = "MinMax";
    static constexpr bool pixelIndependent = false;
    static constexpr EffectInputs inputs = EffectInputs::Filter;
    static constexpr std::array<const char*, 1> busySettings{"Radius=3"};
    static constexpr std::array<const char*, 1> neutralSettings{"Radius=0"};

    using FilterPlugin<Host, MinMaxPluginFilters<Host, Op>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        list.records.push_back(Param::ParamRecord::intSlider("Radius", 10, 0, 100).withSliderRange(0, 30));
    }
};

template <class Host>
using MaxPlugin = MinMaxPlugin<Host, Image::MaxOp>;
template <class Host>
using MinPlugin = MinMaxPlugin<Host, Image::MinOp>;

}  // namespace Tw::Plugins
