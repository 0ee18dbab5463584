// One frei0r instance: the frame size it was made for and the parameter values its host set, nothing
// else. Every frame makes the effect afresh from the registry entry and renders it in 8-bit BGRA
// straight into the host's output frame, so no state passes from one frame to the next.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "host/frei0r/ParamMapping.h"
#include "host/frei0r/PluginDescription.h"
#include "host/param/Parameters.h"

namespace Tw::Host::Frei0r {

class PluginInstance {
public:
    PluginInstance(const PluginDescription& plugin, unsigned width, unsigned height);

    // `index` counts the host's parameters; an index outside them is ignored.
    void setParameter(int index, const HostValue& value);
    // The value as the host set it, or as the effect's range limited it. Null outside the parameters.
    const HostValue* parameter(int index) const;

    // Renders `in` and the further layers (as many as the description's layerInputs) into `out`. A null
    // `in` is a transparent frame, a null layer a layer parameter with no layer chosen. Never throws: a
    // render that fails leaves `out` a copy of `in`.
    // It only reads the instance, so a host may render slices of one frame at once.
    void update(const uint32_t* in, std::span<const uint32_t* const> layers, uint32_t* out) noexcept;

    const PluginDescription& description() const { return plugin_; }
    // The parameter list as the effect reads it.
    const Param::Parameters& parameters() const { return params_; }

private:
    int32_t render(const uint32_t* in, std::span<const uint32_t* const> layers, uint32_t* out);
    void leaveAsInput(const uint32_t* in, uint32_t* out) const noexcept;

    const PluginDescription& plugin_;
    unsigned width_;
    unsigned height_;
    Param::Parameters params_;
    // One per host parameter: what the host reads back.
    std::vector<HostValue> hostValues_;
};

}  // namespace Tw::Host::Frei0r
