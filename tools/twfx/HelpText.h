#pragma once

#include <ostream>

namespace Tw::Tools::Twfx {

// The usage, the options and the exit codes, for `twfx --help`.
void writeHelp(std::ostream& out);

}  // namespace Tw::Tools::Twfx
