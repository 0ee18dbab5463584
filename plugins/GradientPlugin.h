// "Gradient": paints the frame with four coloured points blended smoothly into one another.
#pragma once

#include <array>

#include "host/param/Parameters.h"
#include "image/filters/tone/GradientFilter.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

// Parameter indices, in host order: each point followed by its colour.
namespace GradientParam {
enum : int { Point1, Color1, Point2, Color2, Point3, Color3, Point4, Color4 };
}

template <class Host>
struct GradientPluginFilters {
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        Image::GradientField field;
        for (int i = 0; i < 4; ++i) {
            const Param::ParamPoint p = params.getPoint(GradientParam::Point1 + 2 * i);
            const Param::ParamColor c = params.getColor(GradientParam::Color1 + 2 * i);
            field.points[i] = {static_cast<float>(p.x), static_cast<float>(p.y)};
            field.colors[i] = {static_cast<float>(c.red), static_cast<float>(c.green),
                               static_cast<float>(c.blue)};
        }
        return chain.template add<Image::GradientFilter<Host>>(field);
    }
};

template <class Host>
class GradientPlugin final : public FilterPlugin<Host, GradientPluginFilters<Host>> {
public:
    static constexpr const char* displayName = "Gradient";
    static constexpr bool pixelIndependent = true;
    static constexpr EffectInputs inputs = EffectInputs::Generator;
    // What a user gets at first: a frame whose rectangle starts at column 0 has an infinite falloff, and
    // paints no number at float depth and black at 8 and 16 bits, whatever the points and colours.
    static constexpr std::array<const char*, 0> busySettings{};
    // A generator has no input to give back.
    static constexpr bool hasNeutralSettings = false;
    static constexpr std::array<const char*, 0> neutralSettings{};

    using FilterPlugin<Host, GradientPluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        list.records.push_back(Param::ParamRecord::point("Point 1", {0, 0}));
        list.records.push_back(Param::ParamRecord::color("Color 1", {1, 1, 0}));
        list.records.push_back(Param::ParamRecord::point("Point 2", {1, 0}));
        list.records.push_back(Param::ParamRecord::color("Color 2", {0, 1, 0}));
        list.records.push_back(Param::ParamRecord::point("Point 3", {0, 1}));
        list.records.push_back(Param::ParamRecord::color("Color 3", {1, 0, 1}));
        list.records.push_back(Param::ParamRecord::point("Point 4", {1, 1}));
        list.records.push_back(Param::ParamRecord::color("Color 4", {0, 0, 1}));
    }
};

}  // namespace Tw::Plugins
