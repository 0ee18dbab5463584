// The commands that tell about effects rather than render them: `twfx list` and `twfx params`.
#pragma once

#include <ostream>

#include "tools/twfx/CommandLine.h"

namespace Tw::Tools::Twfx {

// One line per effect of the registry: display name, short name, and what it takes as input.
void listEffects(std::ostream& out);

// The effect's parameter table on `out`, and the preset of its defaults when one is asked for.
void describeEffect(const ParamsRequest& request, std::ostream& out);

}  // namespace Tw::Tools::Twfx
