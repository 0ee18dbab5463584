// "Tint": maps each pixel's luminance through a ramp of four colours at four points.
#pragma once

#include <array>

#include "host/param/Parameters.h"
#include "image/filters/tone/TintFilter.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"
#include "plugins/PercentSlider.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

// Parameter indices, in host order: the four points, then their four colours.
namespace TintParam {
enum : int { Point1, Point2, Point3, Point4, Color1, Color2, Color3, Color4 };
}

template <class Host>
struct TintPluginFilters {
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        // A point is divided in double and only then narrowed.
        const auto amount = [&](int index) { return static_cast<float>(params.getFloat(index) / 100.0); };
        const auto colour = [&](int index) {
            const Param::ParamColor c = params.getColor(index);
            return Image::TintRamp::Colour{static_cast<float>(c.red), static_cast<float>(c.green),
                                           static_cast<float>(c.blue)};
        };
        const Image::TintRamp ramp{amount(TintParam::Point1), amount(TintParam::Point2),
                                   amount(TintParam::Point3), amount(TintParam::Point4),
                                   colour(TintParam::Color1), colour(TintParam::Color2),
                                   colour(TintParam::Color3), colour(TintParam::Color4)};
        return chain.template add<Image::TintFilter<Host>>(chain.source(), ramp);
    }
};

template <class Host>
class TintPlugin final : public FilterPlugin<Host, TintPluginFilters<Host>> {
public:
    static constexpr const char* displayName = "Tint";
    static constexpr bool pixelIndependent = true;
    static constexpr EffectInputs inputs = EffectInputs::Filter;
    // The points out of order: the second above the third, which it shadows in part.
    static constexpr std::array<const char*, 8> busySettings{
        "Point 1=10",           "Point 2=70",          "Point 3=40",          "Point 4=90",
        "Color 1=0.1,0.05,0.3", "Color 2=0.8,0.2,0.1", "Color 3=0.2,0.7,0.4", "Color 4=1,0.9,0.6"};
    // Every setting recolours the frame: there is no way to switch it off but to remove it.
    static constexpr bool hasNeutralSettings = false;
    static constexpr std::array<const char*, 0> neutralSettings{};

    using FilterPlugin<Host, TintPluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        list.records.push_back(percentSlider("Point 1", 0));
        list.records.push_back(percentSlider("Point 2", 33));
        list.records.push_back(percentSlider("Point 3", 66));
        list.records.push_back(percentSlider("Point 4", 100));
        list.records.push_back(Param::ParamRecord::color("Color 1", {0, 0, 0}));
        // After Effects keeps a colour's default in 8 bits, where 0.33 and 0.66 of white become the whole
        // levels 84 and 168; every host starts from those, so that all render the defaults alike.
        list.records.push_back(Param::ParamRecord::color("Color 2", {84 / 255.0, 84 / 255.0, 84 / 255.0}));
        list.records.push_back(Param::ParamRecord::color("Color 3", {168 / 255.0, 168 / 255.0, 168 / 255.0}));
        list.records.push_back(Param::ParamRecord::color("Color 4", {1, 1, 1}));
    }
};

}  // namespace Tw::Plugins
