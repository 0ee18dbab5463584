// aehost, the simulated After Effects host as a command: loads an effect bundle built for Linux and runs
// one command line against it, returning the exit code. It lives in a library so that tests run it
// in-process with their own streams.
#pragma once

#include <ostream>
#include <span>
#include <string>

namespace Tw::Tools::AeHost {

struct Console {
    std::ostream& out;  // what a command produces: listings
    std::ostream& err;  // messages, warnings and the protocol faults the host saw
};

// `arguments` are those after the program name. Failures are reported on `console.err` as "aehost: "
// and a message; the exit codes are those of ExitCode.
int runAehost(std::span<const std::string> arguments, const Console& console);

}  // namespace Tw::Tools::AeHost
