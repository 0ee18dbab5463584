// The command line, read into one request per command. Everything that can be checked without opening a
// file or looking at an effect is checked here, so that a typing error fails at once with a usage error.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "tools/common/AlphaMode.h"
#include "tools/common/ComponentOrder.h"

namespace Tw::Tools::Twfx {

// "LABEL=VALUE" of --set, and "LABEL=FILE" of --layer.
struct Assignment {
    std::string label;
    std::string value;
};

// Fractions of full resolution per axis, in (0, 1].
struct Downsample {
    double x = 1.0;
    double y = 1.0;
};

// The size of a frame a generator renders without an input image.
struct FrameSize {
    std::int32_t width = 0;
    std::int32_t height = 0;
};

struct FrameRange {
    int first = 0;
    int last = 0;
};

struct HelpRequest {};
struct VersionRequest {};
struct ListRequest {};

struct ParamsRequest {
    std::string effect;
    std::optional<std::string> presetToSave;
};

struct RenderRequest {
    std::string effect;
    std::string input;  // empty for a generator given a frame size instead
    std::string output;
    std::optional<FrameSize> size;     // a generator's frame when there is no input
    std::vector<Assignment> settings;  // applied in command-line order, after the preset
    std::optional<std::string> preset;
    std::vector<Assignment> layers;
    std::optional<int> depth;  // the input file's depth when not given
    ComponentOrder order = ComponentOrder::Argb;
    AlphaMode alpha = AlphaMode::Straight;
    Downsample downsample;
    std::uint32_t threads = 0;  // 0: every worker
    std::optional<FrameRange> frames;
};

using Request = std::variant<HelpRequest, VersionRequest, ListRequest, ParamsRequest, RenderRequest>;

// Throws ToolError with ExitCode::Usage for anything it can't read.
Request parseCommandLine(std::span<const std::string> arguments);

}  // namespace Tw::Tools::Twfx
