// The command line of aehost, read into one request per command. What can be checked without loading the
// bundle or opening a file is checked here, so that a typing error fails at once with a usage error.
#pragma once

#include <span>
#include <string>
#include <variant>
#include <vector>

#include "tools/aehost/HostSettings.h"

namespace Tw::Tools::AeHost {

// "LABEL=VALUE" of --set, and "LABEL=FILE" of --layer.
struct Assignment {
    std::string label;
    std::string value;
};

struct HelpRequest {};

struct ListRequest {
    std::string bundle;
};

struct ParamsRequest {
    std::string bundle;
    std::string effect;
};

// PF_Cmd_SMART_PRE_RENDER and PF_Cmd_SMART_RENDER, or PF_Cmd_RENDER with the parameter array.
enum class RenderMode { Smart, Plain };

struct RenderRequest {
    std::string bundle;
    std::string effect;
    std::string input;
    std::string output;
    std::vector<Assignment> settings;  // in command-line order
    std::vector<Assignment> layers;
    // The host: its application, worlds, workers and the failures it provokes. `depth` is taken from
    // the input file unless given.
    HostSettings host;
    bool depthGiven = false;
    RenderMode mode = RenderMode::Smart;
    // Save the project and open it again between setting the parameters and rendering.
    bool reopen = false;
};

using Request = std::variant<HelpRequest, ListRequest, ParamsRequest, RenderRequest>;

// Throws ToolError with ExitCode::Usage for anything it can't read.
Request parseCommandLine(std::span<const std::string> arguments);

}  // namespace Tw::Tools::AeHost
