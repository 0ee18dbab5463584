// Parameter settings away from an effect's defaults, written three ways: as ffmpeg's filter_params, as
// melt's properties, and as the twfx --set options that give the effect the same values. Each host
// turns its text into the frei0r value the plug-in receives; the settings keep those values, so that
// the three texts meet in the same parameter values.
#pragma once

#include <string>
#include <vector>

#include "host/frei0r/ParamMapping.h"
#include "host/frei0r/PluginDescription.h"

namespace Tw::Host::Frei0r {

enum class HostProgram { Ffmpeg, Melt };

class HostSettings {
public:
    // A value for every parameter `host` can set, none of them the default. melt sets no positions.
    HostSettings(const PluginDescription& plugin, HostProgram host);

    // "0.35|0.6|y|0.125/0.25/0.5" for ffmpeg's filter_params.
    std::string ffmpegParams() const;
    // "Gamma=0.45", one per parameter set, for melt.
    std::vector<std::string> meltProperties() const;
    // "--set", "Gamma=2.25", ... in the effect's own units, for twfx.
    std::vector<std::string> twfxOptions() const;

private:
    const PluginDescription& plugin_;
    std::vector<HostValue> values_;  // one per host parameter; kept as the host passes it
    Param::Parameters params_;
};

}  // namespace Tw::Host::Frei0r
