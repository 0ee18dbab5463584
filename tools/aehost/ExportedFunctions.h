// The functions a shared object exports, read from the dynamic symbol table of its ELF file: defined,
// global or weak, of default visibility. Only files of the program's own class (32 or 64 bits) are read,
// since no other could be loaded into it.
#pragma once

#include <string>
#include <vector>

namespace Tw::Tools::AeHost {

// Empty for a file that is not such an object or whose table doesn't hold together.
std::vector<std::string> exportedFunctions(const std::string& path);

}  // namespace Tw::Tools::AeHost
