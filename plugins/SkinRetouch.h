// The whole skin retouch as an editor sets it up in a host: "Smoothing" on a copy of the frame, and
// "Presets" on the frame with that copy as its "Key Source", made one graph, so that one render runs both
// and the smoothed copy lives only as long as the mix needs it. Its parameters are the two effects' lists,
// each inside a group named after its effect, so that a label both have ("Locked") is told apart as
// "Smoothing/Locked" and "Presets/Locked". It is no effect of the bundle, but what the command-line tool
// and the benchmarks run as the retouch.
#pragma once

#include <array>
#include <cstddef>

#include "host/param/Parameters.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"
#include "plugins/PresetsPlugin.h"
#include "plugins/SmoothingPlugin.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

// The records of one effect's list inside the combined list: they follow its group start record.
template <class Plugin>
struct RetouchPart {
    static std::size_t recordCount() {
        static const std::size_t count = [] {
            Param::Parameters list;
            Plugin().defineParameters(list);
            return list.records.size();
        }();
        return count;
    }
    // Fills `part` with the part's own records, values included, from record `first` of `combined`. The
    // retouch runs where values live in the records (the standalone host), never in an adapter that
    // reads them from a host.
    static void copy(const Param::Parameters& combined, std::size_t first, Param::Parameters& part) {
        const auto begin = combined.records.begin() + static_cast<std::ptrdiff_t>(first);
        part.records.assign(begin, begin + static_cast<std::ptrdiff_t>(recordCount()));
    }
    static void define(Param::Parameters& combined) {
        combined.records.push_back(Param::ParamRecord::groupStart(Plugin::displayName));
        Plugin().defineParameters(combined);
        combined.records.push_back(Param::ParamRecord::groupEnd());
    }
};

template <class Host>
struct SkinRetouchFilters {
    using Smoothing = RetouchPart<SmoothingPlugin<Host>>;
    using Presets = RetouchPart<PresetsPlugin<Host>>;

    // Where each part's records begin in the combined list: after its group start, and for "Presets"
    // after "Smoothing"'s records and group end too.
    static std::size_t smoothingFirst() { return 1; }
    static std::size_t presetsFirst() { return smoothingFirst() + Smoothing::recordCount() + 2; }

    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        Param::Parameters smoothing, presets;
        Smoothing::copy(params, smoothingFirst(), smoothing);
        Presets::copy(params, presetsFirst(), presets);
        // "Key Source" is the smoothed copy; "Foreground", the combined list's second layer, is the user's.
        const std::array<Image::FilterBase<Host>*, 2> layers{
            &SmoothingPluginFilters<Host>::makeFilters(chain, smoothing), chain.layer(2)};
        FilterChain<Host> presetsChain(chain, layers);
        return PresetsPluginFilters<Host>::makeFilters(presetsChain, presets);
    }
};

template <class Host>
class SkinRetouch final : public FilterPlugin<Host, SkinRetouchFilters<Host>> {
public:
    static constexpr const char* displayName = "Skin Retouch";
    static constexpr bool pixelIndependent = false;
    static constexpr EffectInputs inputs = EffectInputs::Layers;
    static constexpr std::array<const char*, 4> busySettings{
        "Smoothing Amount=12", "Preserve Small Detail=40", "Sharpen/Amount=60", "Shine Removal/Amount=70"};
    static constexpr std::array<const char*, 1> neutralSettings{"Smoothing Amount=0"};

    using FilterPlugin<Host, SkinRetouchFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        RetouchPart<SmoothingPlugin<Host>>::define(list);
        RetouchPart<PresetsPlugin<Host>>::define(list);
    }
};

}  // namespace Tw::Plugins
