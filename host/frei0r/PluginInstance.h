// One frei0r instance: the frame size it was made for, the parameter values its host set, and the
// effect that renders its frames. The effect is made with the instance and renders frame after frame, so
// that the pixel blocks one frame releases serve the next; it renders in 8-bit BGRA straight into the
// host's output frame, and carries nothing else from one frame to the next.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
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
    // A host may call it on several threads at once to render slices of one frame (MLT does, given
    // "threads"): each call then renders with an effect of its own, which the instance keeps for the
    // slices of the next frame.
    void update(const uint32_t* in, std::span<const uint32_t* const> layers, uint32_t* out) noexcept;

    const PluginDescription& description() const { return plugin_; }
    // The parameter list as the effect reads it.
    const Param::Parameters& parameters() const { return params_; }
    // Pixel blocks the instance's effects have taken from the system, over all its frames; between
    // updates.
    std::size_t pixelAllocations() const;

private:
    // An idle effect, or a new one when every effect is rendering, lent to one update.
    class EffectLoan;

    int32_t render(StandaloneHost& effect, const uint32_t* in, std::span<const uint32_t* const> layers,
                   uint32_t* out);
    void leaveAsInput(const uint32_t* in, uint32_t* out) const noexcept;

    const PluginDescription& plugin_;
    unsigned width_;
    unsigned height_;
    Param::Parameters params_;
    // One per host parameter: what the host reads back.
    std::vector<HostValue> hostValues_;
    // As many as the host has had updates running at once, less those running now.
    std::vector<std::unique_ptr<StandaloneHost>> idleEffects_;
    mutable std::mutex idleEffectsMutex_;
};

}  // namespace Tw::Host::Frei0r
