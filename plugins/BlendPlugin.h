// "Blend": lays the layer chosen in "Layer" over the effect's own layer, with a blend mode and an
// opacity. The two layers keep their places: neither is moved or scaled to fit the other.
#pragma once

#include <array>

#include <cstdint>
#include <string>
#include <vector>

#include "host/param/Parameters.h"
#include "image/filters/blend/BlendFilter.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

// Parameter indices, in host order.
namespace BlendParam {
enum : int { Layer, Mode, Opacity };
}

// The popup's items, in the order of the filter's mode numbers; the last mode, "Behind", has no item.
inline std::vector<std::string> blendModeLabels() {
    return {"Normal",
            "Darken",
            "Multiply",
            "Color Burn",
            "Classic Color Burn",
            "Linear Burn",
            "Darker Color",
            "Add",
            "Lighten",
            "Screen",
            "Color Dodge",
            "Classic Color Dodge",
            "Linear Dodge",
            "Lighter Color",
            "Overlay",
            "Soft Light",
            "Hard Light",
            "Linear Light",
            "Vivid Light",
            "Pin Light",
            "Hard Mix",
            "Difference",
            "Classic Difference",
            "Exclusion",
            "Subtract",
            "Divide",
            "Hue",
            "Saturation",
            "Color",
            "Luminosity",
            "Stencil Alpha",
            "Stencil Luma",
            "Silhouette Alpha",
            "Silhouette Luma",
            "Alpha Add",
            "Luminescent Premul",
            "Average",
            "Negation",
            "Reflect",
            "Glow",
            "Phoenix"};
}

template <class Host>
struct BlendPluginFilters {
    // Without a second layer, or with one that has no pixels, the effect's own layer passes through,
    // whatever the mode.
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        Image::FilterBase<Host>* top = chain.layer(1);
        if (!top || top->bounds().isEmpty()) return chain.source();
        const int32_t mode = params.getInt(BlendParam::Mode);
        const auto opacity = static_cast<float>(params.getFloat(BlendParam::Opacity) / 100.0);
        return chain.template add<Image::BlendFilter<Host>>(chain.source(), *top, mode, opacity);
    }
};

template <class Host>
class BlendPlugin final : public FilterPlugin<Host, BlendPluginFilters<Host>> {
public:
    static constexpr const char* displayName = "Blend";
    static constexpr bool pixelIndependent = true;
    static constexpr EffectInputs inputs = EffectInputs::Layers;
    static constexpr std::array<const char*, 2> busySettings{"Blend Mode=Soft Light", "Opacity=70"};
    static constexpr std::array<const char*, 0> neutralSettings{};

    using FilterPlugin<Host, BlendPluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        list.records.push_back(Param::ParamRecord::layer("Layer"));
        list.records.push_back(Param::ParamRecord::popup("Blend Mode", blendModeLabels(), 0));
        list.records.push_back(
            Param::ParamRecord::floatSlider("Opacity", 100, 0, 100, Param::ParamFlag::Percent));
    }
};

}  // namespace Tw::Plugins
