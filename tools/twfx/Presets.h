// Presets: an effect's parameter values in the parameter list's text file, the same file a host-side
// user would keep. The list itself reads and writes the file but reports no failure, so the checks a
// user needs (a file that can't be read, a directory that isn't there) are made here.
#pragma once

#include <ostream>
#include <string>

#include "host/param/Parameters.h"

namespace Tw::Tools::Twfx {

namespace Param = ::Tw::Host::Param;

// Writes every value of `params`, headed by the effect's name and the bundle's version. Throws ToolError
// with ExitCode::UnwritableOutput.
void savePreset(const Param::Parameters& params, const std::string& path, const std::string& effectName);

// Resets `params` and takes the values the file holds for its labels; unknown labels are skipped, so
// presets of other versions load. A preset saved for another effect loads too, with a warning on
// `warnings`. Throws ToolError with ExitCode::UnreadableInput.
void loadPreset(Param::Parameters& params, const std::string& path, const std::string& effectName,
                std::ostream& warnings);

}  // namespace Tw::Tools::Twfx
