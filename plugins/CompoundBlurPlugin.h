// "Compound Blur": blurs the effect's layer by as much as the luminance of the "Blur Layer" says, pixel
// by pixel: sharp where the map is black, by a box of "Maximum Radius" where it is white, or the reverse
// with "Invert Blur". The map keeps its place: pixel (x, y) of the map sets the blur at (x, y).
#pragma once

#include <array>

#include "host/param/Parameters.h"
#include "image/filters/spatial/CompoundBlurFilter.h"
#include "plugins/Downsample.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

// Parameter indices, in host order.
namespace CompoundBlurParam {
enum : int { BlurLayer, MaximumRadius, InvertBlur };
}

template <class Host>
struct CompoundBlurPluginFilters {
    // No radius, or no map with pixels, no node: the layer passes unchanged. A downsampled render blurs by
    // fewer of its pixels.
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        const double radius = params.getFloat(CompoundBlurParam::MaximumRadius);
        Image::FilterBase<Host>* map = chain.layer(1);
        if (!(radius > 0) || !map || map->bounds().isEmpty()) return chain.source();
        const Host& host = chain.host();
        return chain.template add<Image::CompoundBlurFilter<Host>>(
            chain.source(), *map, static_cast<float>(radius * downsampleFactor(host.downsampleX)),
            static_cast<float>(radius * downsampleFactor(host.downsampleY)),
            params.getBool(CompoundBlurParam::InvertBlur));
    }
};

template <class Host>
class CompoundBlurPlugin final : public FilterPlugin<Host, CompoundBlurPluginFilters<Host>> {
public:
    static constexpr const char* displayName = "Compound Blur";
    static constexpr bool pixelIndependent = false;
    static constexpr EffectInputs inputs = EffectInputs::Layers;
    // Inverted, so that where the test layer does not reach the blur is widest.
    static constexpr std::array<const char*, 2> busySettings{"Maximum Radius=7", "Invert Blur=on"};
    static constexpr std::array<const char*, 1> neutralSettings{"Maximum Radius=0"};

    using FilterPlugin<Host, CompoundBlurPluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        list.records.push_back(Param::ParamRecord::layer("Blur Layer"));
        list.records.push_back(
            Param::ParamRecord::floatSlider("Maximum Radius", 20, 0, 100).withSliderRange(0, 30));
        list.records.push_back(Param::ParamRecord::checkbox("Invert Blur", false));
    }
};

}  // namespace Tw::Plugins
