// What a frei0r plug-in tells its host before any frame: the effect's title, its frei0r type, and its
// parameters as frei0r controls, made once from the effect's registry entry and its parameter list.
//
// The type follows the effect's inputs: a generator is a source, an effect over one layer a filter, and
// an effect with layer parameters a mixer whose second input is its first layer parameter and whose
// third input, for a mixer3, its second. frei0r has no mixer of more inputs, and an effect may ask for
// fewer (EffectEntry::mixerLayers), or for none, which keeps it a filter; further layer parameters stay
// without a layer.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/frei0r/Frei0rApi.h"
#include "host/param/Parameters.h"
#include "host/standalone/Host.h"
#include "plugins/EffectRegistry.h"

namespace Tw::Host::Frei0r {

namespace Param = ::Tw::Host::Param;
using StandaloneHost = ::Tw::Host::Standalone::Host;
using EffectEntry = ::Tw::Plugins::EffectEntry<StandaloneHost>;

// The registry's entry named `entryName` ("SmoothingEntry"). Throws Tw::Exception when there is none.
const EffectEntry& effectNamed(std::string_view entryName, std::span<const EffectEntry> registry =
                                                               Plugins::effectRegistry<StandaloneHost>());

// One parameter as the host sees it: the record it sets, its frei0r kind, name and explanation.
struct HostParameter {
    int recordIndex = 0;
    int kind = F0R_PARAM_DOUBLE;
    std::string name;
    std::string explanation;
};

class PluginDescription {
public:
    // `registry` tells whether another effect has the same display name, which the title then tells apart.
    explicit PluginDescription(const EffectEntry& entry, std::span<const EffectEntry> registry =
                                                             Plugins::effectRegistry<StandaloneHost>());

    const EffectEntry& entry() const { return entry_; }
    int pluginType() const { return pluginType_; }
    // How many further layers the frames of f0r_update2 give: 0, 1 or 2.
    int layerInputs() const { return layerInputs_; }
    std::span<const HostParameter> parameters() const { return parameters_; }
    // The effect's parameter list at its defaults.
    const std::vector<Param::ParamRecord>& defaultRecords() const { return defaults_; }

    // The strings filled in live as long as the description.
    void fillInfo(f0r_plugin_info_t& info) const;
    // An index outside the parameters leaves `info` as it was.
    void fillParamInfo(f0r_param_info_t& info, int index) const;

private:
    const EffectEntry& entry_;
    std::vector<Param::ParamRecord> defaults_;
    std::vector<HostParameter> parameters_;
    std::string title_;
    std::string explanation_;
    int pluginType_ = F0R_PLUGIN_TYPE_FILTER;
    int layerInputs_ = 0;
};

}  // namespace Tw::Host::Frei0r
