// "CIE CC": turns the hue, and scales chroma and lightness, in CIE L*a*b*.
#pragma once

#include <array>

#include "host/param/Parameters.h"
#include "image/filters/tone/CCFilter.h"
#include "plugins/ColorAdjustParams.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

// Parameter indices, in host order.
namespace CIECCParam = ColorAdjustParam;

template <class Host>
struct CIECCPluginFilters {
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        const ColorAdjustment adjust(params);
        if (adjust.isNone()) return chain.source();
        return chain.template add<Image::CCFilter<Host>>(chain.source(), adjust.hue, adjust.saturation,
                                                         adjust.brightness);
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
    void defineParameters(Param::Parameters& list) override { addColorAdjustSliders(list); }
};

}  // namespace Tw::Plugins
