// What `aehost --help` prints.
#pragma once

#include <ostream>

namespace Tw::Tools::AeHost {

void writeHelp(std::ostream& out);

}  // namespace Tw::Tools::AeHost
