// One frei0r instance: the frame size it was made for, the parameter values its host set, and the
// effect that renders its frames. The effect is made once, with the instance, and renders frame after
// frame, so that the pixel blocks one frame releases serve the next; it renders in 8-bit BGRA straight
// into the host's output frame, and carries nothing else from one frame to the next.
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
    // "threads"): the instance's effect renders one of them, and each other call makes an effect of its
    // own for its frame.
    void update(const uint32_t* in, std::span<const uint32_t* const> layers, uint32_t* out) noexcept;

    const PluginDescription& description() const { return plugin_; }
    // The parameter list as the effect reads it.
    const Param::Parameters& parameters() const { return params_; }
    // Pixel blocks the instance's effect has taken from the system, over all its frames.
    std::size_t pixelAllocations() const { return effect_->allocationCount(); }

private:
    int32_t render(StandaloneHost& effect, const uint32_t* in, std::span<const uint32_t* const> layers,
                   uint32_t* out);
    void leaveAsInput(const uint32_t* in, uint32_t* out) const noexcept;

    const PluginDescription& plugin_;
    unsigned width_;
    unsigned height_;
    Param::Parameters params_;
    // One per host parameter: what the host reads back.
    std::vector<HostValue> hostValues_;
    const std::unique_ptr<StandaloneHost> effect_;
    // Held while `effect_` renders.
    std::mutex effectBusy_;
};

}  // namespace Tw::Host::Frei0r
