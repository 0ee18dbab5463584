// Presets: an effect's parameter values in the parameter list's text file, the same file a host-side
// user would keep. The list itself writes the file but reports no failure, so the checks a user needs (a
// directory that isn't there) are made here. The list's own reader stores what it reads as it is, so
// presets are read here instead, every line checked as a --set value is.
#pragma once

#include <istream>
#include <ostream>
#include <string>

#include "host/param/Parameters.h"

namespace Tw::Tools::Twfx {

namespace Param = ::Tw::Host::Param;

// Writes every value of `params`, headed by the effect's name and the bundle's version. Throws ToolError
// with ExitCode::UnwritableOutput.
void savePreset(const Param::Parameters& params, const std::string& path, const std::string& effectName);

// Resets `params` and sets the values the file holds, each checked as --set checks it: numbers beyond
// their range take the nearest bound with a warning, and any other fault is an error naming the file and
// line (ExitCode::UnknownName for a label the effect lacks, ExitCode::BadValue for a value that doesn't
// read, ExitCode::UnreadableInput for a file that is no preset). A preset saved for another effect loads
// too, with a warning on `warnings`; its labels that this effect lacks are skipped, each with a warning.
void loadPreset(Param::Parameters& params, const std::string& path, const std::string& effectName,
                std::ostream& warnings);

// As loadPreset, for a preset that `in` reads; `path` names it in messages.
void applyPreset(Param::Parameters& params, std::istream& in, const std::string& path,
                 const std::string& effectName, std::ostream& warnings);

}  // namespace Tw::Tools::Twfx
