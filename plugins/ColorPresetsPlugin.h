// "Color Presets": passes on one of several layers, chosen by comparing the current pair of colours,
// "Dark Color" and "Light Color", with the pairs stored in four preset groups. Preset 0 stands for the
// effect's own layer; presets 1 to 3 each name a layer of their own. The effect makes no pixels itself:
// its result is its own layer or the chosen preset's.
//
// The choice tests the presets from the last down and takes the first whose distance from the current
// pair is below a limit far beyond any colour. The limit is the same for every preset, so the last preset
// wins whenever its colours are finite numbers; the others come in only when its colours are not.
#pragma once

#include <array>
#include <cmath>
#include <string>

#include "host/param/Parameters.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

// The presets, and the colours as the effect counts them: among the colour parameters alone, in list
// order, the current pair first, then each preset's pair.
namespace ColorPresetsParam {
inline constexpr int kPresetCount = 4;
inline constexpr int kColorCount = 2 + 2 * kPresetCount;
}  // namespace ColorPresetsParam

// The preset the colours in `params` choose, 0 to 3.
inline int chosenColorPreset(const Param::Parameters& params) {
    namespace P = ColorPresetsParam;
    std::array<Param::ParamColor, P::kColorCount> colors;
    std::size_t found = 0;
    for (std::size_t i = 0; i < params.records.size() && found < colors.size(); ++i) {
        if (params.records[i].kind == Param::ParamKind::Color)
            colors[found++] = params.getColor(static_cast<int>(i));
    }
    const auto distance = [&](int preset) {
        double sum = 0.0;
        for (int k = 0; k < 2; ++k) {
            const Param::ParamColor& current = colors[static_cast<std::size_t>(k)];
            const Param::ParamColor& stored = colors[static_cast<std::size_t>(2 + 2 * preset + k)];
            sum += std::fabs(current.red - stored.red) + std::fabs(current.green - stored.green) +
                   std::fabs(current.blue - stored.blue);
        }
        return sum;
    };
    // A distance that is not a number, or infinite, fails the test: only such colours let a preset lose.
    constexpr double kLimit = 1e38;
    for (int preset = P::kPresetCount - 1; preset >= 1; --preset) {
        if (distance(preset) < kLimit) return preset;
    }
    return 0;
}

template <class Host>
struct ColorPresetsPluginFilters {
    // The chosen preset's layer is the layer parameter of the same number. Without one, or with one that
    // has no pixels, the effect's own layer passes.
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        const int preset = chosenColorPreset(params);
        Image::FilterBase<Host>* layer = preset > 0 ? chain.layer(preset) : nullptr;
        if (!layer || layer->bounds().isEmpty()) return chain.source();
        return *layer;
    }
};

template <class Host>
class ColorPresetsPlugin final : public FilterPlugin<Host, ColorPresetsPluginFilters<Host>> {
public:
    static constexpr const char* displayName = "Color Presets";
    static constexpr bool pixelIndependent = false;
    static constexpr EffectInputs inputs = EffectInputs::Layers;
    // A current pair apart from every preset's: the choice still falls on preset 3, the one that counts.
    static constexpr std::array<const char*, 2> busySettings{"Dark Color=0.4,0.25,0.2",
                                                             "Light Color=0.9,0.8,0.7"};
    static constexpr std::array<const char*, 0> neutralSettings{};
    // A two-input mixer in frei0r, the only kind MLT loads. No frame mixer reaches the layer it shows,
    // preset 3's, the third layer parameter; the README says so.
    static constexpr int mixerLayers = 1;

    using FilterPlugin<Host, ColorPresetsPluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        using Record = Param::ParamRecord;
        // A skin tone; the current pair starts at preset 0's.
        const Param::ParamColor skin{1.0, 0.73, 0.6};
        auto& r = list.records;
        r.push_back(Record::color("Dark Color", skin));
        r.push_back(Record::color("Light Color", skin));
        for (int preset = 0; preset < ColorPresetsParam::kPresetCount; ++preset) {
            const Param::ParamColor stored = preset == 0 ? skin : Param::ParamColor{};
            r.push_back(
                Record::groupStart("Preset " + std::to_string(preset), Param::ParamFlag::StartCollapsed));
            r.push_back(Record::color("Dark Color", stored));
            r.push_back(Record::color("Light Color", stored));
            if (preset > 0) r.push_back(Record::layer("Layer"));
            r.push_back(Record::groupEnd());
        }
    }
};

}  // namespace Tw::Plugins
