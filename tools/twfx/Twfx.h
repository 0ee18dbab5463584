// twfx, the command-line renderer: runs one command line and returns the exit code. It lives in a
// library so that tests run the tool in-process, with their own streams and cancel flag.
#pragma once

#include <atomic>
#include <ostream>
#include <span>
#include <string>

namespace Tw::Tools::Twfx {

// What the tool talks to and what can stop it.
struct Console {
    std::ostream& out;                              // what a command produces: listings
    std::ostream& err;                              // messages, warnings and the progress bar
    bool progressBar = false;                       // whether `err` is a terminal that can show one
    const std::atomic<bool>* cancelFlag = nullptr;  // set, a render stops and the tool ends cancelled
};

// `arguments` are those after the program name. Failures are reported on `console.err` as "twfx: "
// and a message; the exit codes are those of ExitCode.
int runTwfx(std::span<const std::string> arguments, const Console& console);

}  // namespace Tw::Tools::Twfx
