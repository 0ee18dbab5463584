// The same effect rendered by the standalone host, for the integration tests to compare the bundle with:
// the parameters are given once, as a user types them ("Radius=3"), and applied to both hosts through the
// tools' value syntax.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tools/aehost/Frame.h"
#include "tools/aehost/SimulatedHost.h"

namespace Tw::Tools::AeHost {

using Settings = std::span<const char* const>;

// Each "LABEL=VALUE" through SimulatedHost::set.
void applySettings(SimulatedHost& host, Settings settings);

// The settings an effect of the registry declares to put its kernels to work.
Settings busySettingsOf(const std::string& entryName);

// A further layer for the standalone render: its frame and where its top left pixel lies in the input.
struct PlacedLayer {
    Frame frame;
    int32_t left = 0;
    int32_t top = 0;
};

struct StandaloneRender {
    std::string entryName;
    Frame input;
    Settings settings;
    // By layer parameter, in list order; none where no layer is chosen.
    std::vector<std::optional<PlacedLayer>> layers{};
    double downsampleX = 1.0;
    double downsampleY = 1.0;
    // The part of the frame to render, in the input's coordinates; the whole input when absent.
    std::optional<PF_LRect> part{};
    // The input is the host's picture upside down, as a world of negative row bytes holds it: points
    // turn over with it, row y to row height - 1 - y, as the host's adapter turns them.
    bool upsideDown = false;
};

// The output, in the input's depth and order; its pixels start as HostWorld::kUnwritten, like the output
// worlds of the simulated host.
Frame renderStandalone(const StandaloneRender& render);

}  // namespace Tw::Tools::AeHost
