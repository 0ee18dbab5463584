// The aehost executable: the library's command with the process's own streams. It exports its symbols
// (CMake's ENABLE_EXPORTS), since a bundle looks up the CoreFoundation calls in its host process.
#include <iostream>
#include <string>
#include <vector>

#include "tools/aehost/Aehost.h"

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    return Tw::Tools::AeHost::runAehost(arguments, {std::cout, std::cerr});
}
