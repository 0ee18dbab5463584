// How the tool fails: every failure is a ToolError carrying the exit code that tells a script what went
// wrong and a message for the user. `runTwfx` catches it at the top, prints it and returns the code.
#pragma once

#include <stdexcept>
#include <string>

namespace Tw::Tools::Twfx {

// Stable across versions, since scripts branch on them; `twfx --help` documents them.
enum class ExitCode : int {
    Success = 0,
    RenderFailed = 1,  // the render, or memory for an image ran out
    Usage = 2,
    UnreadableInput = 3,   // the input image, a layer image or a preset
    UnwritableOutput = 4,  // the output image or a saved preset
    UnknownName = 5,       // an effect or parameter label that names nothing, or more than one effect
    BadValue = 6,          // a parameter value that is not a number or not one of the items
    Cancelled = 130,       // as a shell reports a program ended by Ctrl-C
};

class ToolError : public std::runtime_error {
public:
    ToolError(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}
    ExitCode code() const { return code_; }

private:
    ExitCode code_;
};

}  // namespace Tw::Tools::Twfx
