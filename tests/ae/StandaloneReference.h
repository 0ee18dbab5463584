// The same effect rendered by the standalone host, for the integration tests to compare the bundle with:
// the parameters are given once, as a user sets them in After Effects, and applied to both hosts.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "tests/ae/SimulatedHost.h"
#include "tests/ae/TestFrame.h"

namespace Tw::Test::AE {

// A popup choice counted from 1, as After Effects shows it.
struct PopupChoice {
    int choice = 1;
};

// A colour in 8-bit units, as After Effects keeps it.
struct Color8 {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
};

struct Setting {
    std::string label;
    // A slider's value in its own units, a checkbox, a popup choice or a colour.
    std::variant<double, bool, PopupChoice, Color8> value;
};

// A further layer for the standalone render: its frame and where its top left pixel lies in the input.
struct PlacedLayer {
    TestFrame frame;
    int32_t left = 0;
    int32_t top = 0;
};

void applySettings(SimulatedHost& host, const std::vector<Setting>& settings);

struct StandaloneRender {
    // The whole input at full resolution with no further layer.
    static StandaloneRender of(std::string entryName, TestFrame input, std::vector<Setting> settings) {
        StandaloneRender render;
        render.entryName = std::move(entryName);
        render.input = std::move(input);
        render.settings = std::move(settings);
        return render;
    }

    std::string entryName;
    TestFrame input;
    std::vector<Setting> settings;
    // By layer parameter, in list order; none where no layer is chosen.
    std::vector<std::optional<PlacedLayer>> layers;
    double downsampleX = 1.0;
    double downsampleY = 1.0;
    // The part of the frame to render, in the input's coordinates; the whole input when absent.
    std::optional<PF_LRect> part;
};

// The output, in the input's depth and order; its pixels start as HostWorld::kUnwritten, like the output
// worlds of the simulated host.
TestFrame renderStandalone(const StandaloneRender& render);

}  // namespace Tw::Test::AE
