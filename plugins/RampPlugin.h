// "Ramp": paints the frame with a linear ramp of four colours along the line from "Point 1" to "Point 4",
// the two inner colours at the fractions "Point 2" and "Point 3" of the way.
#pragma once

#include <array>

#include "host/param/Parameters.h"
#include "image/filters/tone/RampFilter.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"
#include "plugins/PercentSlider.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

// Parameter indices, in host order: the line's two ends are the first and the fourth point; the two
// between are fractions of the way along it.
namespace RampParam {
enum : int { Point1, Point2, Point3, Point4, Color1, Color2, Color3, Color4 };
}

template <class Host>
struct RampPluginFilters {
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        const auto point = [&](int index) {
            const Param::ParamPoint p = params.getPoint(index);
            return Image::LinearRamp::Point{static_cast<float>(p.x), static_cast<float>(p.y)};
        };
        // A fraction is divided in double and only then narrowed.
        const auto amount = [&](int index) { return static_cast<float>(params.getFloat(index) / 100.0); };
        const auto colour = [&](int index) {
            const Param::ParamColor c = params.getColor(index);
            return Image::LinearRamp::Colour{static_cast<float>(c.red), static_cast<float>(c.green),
                                             static_cast<float>(c.blue)};
        };
        const Image::LinearRamp ramp{amount(RampParam::Point2),
                                     amount(RampParam::Point3),
                                     {colour(RampParam::Color1), colour(RampParam::Color2),
                                      colour(RampParam::Color3), colour(RampParam::Color4)},
                                     point(RampParam::Point1),
                                     point(RampParam::Point4)};
        return chain.template add<Image::RampFilter<Host>>(ramp);
    }
};

template <class Host>
class RampPlugin final : public FilterPlugin<Host, RampPluginFilters<Host>> {
public:
    static constexpr const char* displayName = "Ramp";
    static constexpr bool pixelIndependent = true;
    static constexpr EffectInputs inputs = EffectInputs::Generator;
    // A slanting line that starts and ends inside the frame, so that every piece of the ramp and both
    // ends show. Its ends are quarters of the frame: whole or quarter pixels in every test frame, which a
    // host's fixed-point coordinates hold exactly.
    static constexpr std::array<const char*, 8> busySettings{
        "Point 1=0.25,0.25",    "Point 2=30",          "Point 3=55",          "Point 4=0.75,0.75",
        "Color 1=0.1,0.05,0.3", "Color 2=0.8,0.2,0.1", "Color 3=0.2,0.7,0.4", "Color 4=1,0.9,0.6"};
    // A generator has no input to give back.
    static constexpr bool hasNeutralSettings = false;
    static constexpr std::array<const char*, 0> neutralSettings{};

    using FilterPlugin<Host, RampPluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        list.records.push_back(Param::ParamRecord::point("Point 1", {0, 0.5}));
        list.records.push_back(percentSlider("Point 2", 25));
        list.records.push_back(percentSlider("Point 3", 75));
        list.records.push_back(Param::ParamRecord::point("Point 4", {1, 0.5}));
        list.records.push_back(Param::ParamRecord::color("Color 1", {1, 1, 0}));
        list.records.push_back(Param::ParamRecord::color("Color 2", {0, 1, 0}));
        list.records.push_back(Param::ParamRecord::color("Color 3", {1, 0, 1}));
        list.records.push_back(Param::ParamRecord::color("Color 4", {0, 0, 1}));
    }
};

}  // namespace Tw::Plugins
