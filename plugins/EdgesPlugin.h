// "Edges": an edge picture. Two second derivatives of a Gaussian, one across the rows and one down the
// columns, each smoothed along the other axis, are combined per pixel into the strength of an edge.
#pragma once

#include <array>

#include "host/param/Parameters.h"
#include "image/filters/spatial/EdgesFilter.h"
#include "image/filters/spatial/GaussianBlurFilter.h"
#include "plugins/Downsample.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"
#include "plugins/PercentSlider.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

// Parameter indices, in host order.
namespace EdgesParam {
enum : int { Radius, Invert, Threshold };
}

template <class Host>
struct EdgesPluginFilters {
    // A "Radius" of 0 builds the nodes all the same: the blurs then reach no neighbour.
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        const double radius = params.getFloat(EdgesParam::Radius);
        const Host& host = chain.host();
        const auto radiusX = static_cast<float>(radius * downsampleFactor(host.downsampleX));
        const auto radiusY = static_cast<float>(radius * downsampleFactor(host.downsampleY));
        auto& across = chain.template add<Image::GaussianBlurFilter<Host>>(
            chain.source(), radiusX, radiusY, 0.0f, Image::SecondDerivative, Image::Smoothing);
        auto& along = chain.template add<Image::GaussianBlurFilter<Host>>(
            chain.source(), radiusX, radiusY, 0.0f, Image::Smoothing, Image::SecondDerivative);
        const auto thresh = static_cast<float>(params.getFloat(EdgesParam::Threshold) / 100.0);
        return chain.template add<Image::EdgesFilter<Host>>(across, along, thresh,
                                                            params.getBool(EdgesParam::Invert));
    }
};

template <class Host>
class EdgesPlugin final : public FilterPlugin<Host, EdgesPluginFilters<Host>> {
public:
    static constexpr const char* displayName = "Edges";
    static constexpr bool pixelIndependent = false;
    static constexpr EffectInputs inputs = EffectInputs::Filter;
    // "Threshold" stays at 0 here: a strength lying at the threshold flips between black and its value
    // at the least difference, such as a region's recursion starting a few radii out gives.
    static constexpr std::array<const char*, 2> busySettings{"Radius=3", "Invert=on"};
    // The picture is always opaque: no setting gives the frame back.
    static constexpr bool hasNeutralSettings = false;
    static constexpr std::array<const char*, 0> neutralSettings{};

    using FilterPlugin<Host, EdgesPluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        list.records.push_back(Param::ParamRecord::floatSlider("Radius", 10, 0, 100).withSliderRange(0, 30));
        list.records.push_back(Param::ParamRecord::checkbox("Invert", false));
        list.records.push_back(percentSlider("Threshold", 0));
    }
};

}  // namespace Tw::Plugins
