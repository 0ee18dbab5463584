// The twfx executable: the library's command with the process's own streams, and Ctrl-C as its cancel.
#include <unistd.h>

#include <iostream>
#include <string>
#include <vector>

#include "tools/twfx/InterruptSignal.h"
#include "tools/twfx/Twfx.h"

int main(int argc, char** argv) {
    namespace Twfx = Tw::Tools::Twfx;
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const Twfx::Console console{std::cout, std::cerr, ::isatty(STDERR_FILENO) == 1, &Twfx::catchInterrupts()};
    return Twfx::runTwfx(arguments, console);
}
