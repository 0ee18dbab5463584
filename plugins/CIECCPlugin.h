// "CIE CC": turns the hue, and scales chroma and lightness, in CIE L*a*b*.
#pragma once

#include <array>

#include "host/param/Parameters.h"
#include "image/filters/tone/CCFilter.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

// Parameter indices, in host order.
namespace CIECCParam {
enum : int { Hue, Saturation, Brightness };
}

template <class Host>
struct CIECCPluginFilters {
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        const float hue = static_cast<float>(params.getFloat(CIECCParam::Hue)) / 360.0f;
        const float saturation = static_cast<float>(params.getFloat(CIECCParam::Saturation)) / 100.0f;
        const float brightness = static_cast<float>(params.getFloat(CIECCParam::Brightness)) / 100.0f;
        if (hue == 0.0f && saturation == 0.0f && brightness == 0.0f) return chain.source();
        return chain.template add<Image::CCFilter<Host>>(chain.source(), hue, saturation, brightness);
    }
};

template <class Host>
class CIE_CC_Plugin final : public FilterPlugin<Host, CIECCPluginFilters<Host>> {
public:
    static constexpr const char* displayName = "CIE CC";
    static constexpr bool pixelIndependent = true;
    static constexpr EffectInputs inputs = EffectInputs::Filter;
    static constexpr std::array<const char*, 3> busySettings{"Adjust Hue=40", "Adjust Saturation=-30",
                                                             "Adjust Brightness=15"};
    static constexpr std::array<const char*, 0> neutralSettings{};

    using FilterPlugin<Host, CIECCPluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        // A slider in degrees. The host's own fixed-point slider is no kind of the parameter list; a float
        // slider over the same range stands for it.
        list.records.push_back(Param::ParamRecord::floatSlider("Adjust Hue", 0, -360, 360));
        list.records.push_back(Param::ParamRecord::floatSlider("Adjust Saturation", 0, -100, 100));
        list.records.push_back(Param::ParamRecord::floatSlider("Adjust Brightness", 0, -100, 100));
    }
};

}  // namespace Tw::Plugins
