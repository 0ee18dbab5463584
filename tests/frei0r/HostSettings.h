// Parameter settings written three ways: as ffmpeg's filter_params, as melt's properties, and as the twfx
// --set options that give the effect the same values. Each host turns its text into the frei0r value the
// plug-in receives; the settings keep those values, so that the three texts meet in the same parameter
// values.
#pragma once

#include <string>
#include <vector>

#include "host/frei0r/ParamMapping.h"
#include "host/frei0r/PluginDescription.h"

namespace Tw::Host::Frei0r {

enum class HostProgram { Ffmpeg, Melt };

class HostSettings {
public:
    // No parameter set: the hosts leave each at the plug-in's default, twfx at the effect's.
    explicit HostSettings(const PluginDescription& plugin);
    // The values of `wanted`, the effect's parameter list, as near as the host's text carries them. melt
    // sets no positions, and gives colours in steps of 1/255.
    HostSettings(const PluginDescription& plugin, HostProgram host, const Param::Parameters& wanted);
    // A value for every parameter `host` can set, none of them the default.
    static HostSettings varied(const PluginDescription& plugin, HostProgram host);

    // "0.35|0.6|y|0.125/0.25/0.5" for ffmpeg's filter_params; empty when nothing is set.
    std::string ffmpegParams() const;
    // "Gamma=0.45", one per parameter set, for melt.
    std::vector<std::string> meltProperties() const;
    // "--set", "Gamma=2.25", ... in the effect's own units, for twfx.
    std::vector<std::string> twfxOptions() const;

private:
    // `values` has one value per host parameter, or none.
    HostSettings(const PluginDescription& plugin, HostProgram host, std::vector<HostValue> values);

    const PluginDescription& plugin_;
    std::vector<HostValue> values_;  // one per host parameter set; kept as the host passes it
    Param::Parameters params_;
};

}  // namespace Tw::Host::Frei0r
