// How the tools fail: every failure is a ToolError carrying the exit code that tells a script what went
// wrong and a message for the user. Each tool catches it at the top, prints it and returns the code.
#pragma once

#include <exception>
#include <new>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Tw::Tools {

// Stable across versions, since scripts branch on them; each tool's --help documents the ones it uses.
enum class ExitCode : int {
    Success = 0,
    RenderFailed = 1,  // the render, or memory for an image ran out
    Usage = 2,
    UnreadableInput = 3,   // the input image, a layer image or a preset
    UnwritableOutput = 4,  // the output image or a saved preset
    UnknownName = 5,       // an effect or parameter label that names nothing, or more than one effect
    BadValue = 6,          // a parameter value that is not a number or not one of the items
    BundleNotLoaded = 7,   // aehost: a plug-in bundle that can't be loaded
    ProtocolFault = 8,     // aehost: the effect broke the host's protocol
    Cancelled = 130,       // as a shell reports a program ended by Ctrl-C
};

class ToolError : public std::runtime_error {
public:
    ToolError(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}
    ExitCode code() const { return code_; }

private:
    ExitCode code_;
};

// Runs one command line of `program`: the exit code of the ToolError `command` throws, with its message on
// `err` as "program: message", or success. Nothing but a ToolError is expected to leave a command; anything
// else is told all the same, as a failed render.
template <class Command>
int runCommand(std::string_view program, std::ostream& err, Command&& command) {
    try {
        command();
        return static_cast<int>(ExitCode::Success);
    } catch (const ToolError& error) {
        err << program << ": " << error.what() << "\n";
        return static_cast<int>(error.code());
    } catch (const std::bad_alloc&) {
        // A frame or buffer that memory can't hold, outside the render which says so itself.
        err << program << ": out of memory\n";
        return static_cast<int>(ExitCode::RenderFailed);
    } catch (const std::exception& error) {
        err << program << ": " << error.what() << "\n";
        return static_cast<int>(ExitCode::RenderFailed);
    }
}

}  // namespace Tw::Tools
