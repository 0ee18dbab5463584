// The commands that tell about a bundle rather than render: `aehost list` and `aehost params`.
#pragma once

#include <ostream>

#include "tools/aehost/Aehost.h"
#include "tools/aehost/CommandLine.h"

namespace Tw::Tools::AeHost {

// One line per exported entry: entry name, the short name a user may type, and the display name where
// the registry knows it.
void listEffects(const ListRequest& request, std::ostream& out);

// The parameters the effect added at PF_Cmd_PARAMS_SETUP, in the table twfx prints for its effects.
// Faults the effect commits on the way are reported as a render's are.
void listParameters(const ParamsRequest& request, const Console& console);

}  // namespace Tw::Tools::AeHost
