// Finding an effect's parameter by the label a user types. Labels compare without regard to case. A
// label that occurs more than once in an effect is told apart by its group, written "Group/Label", the
// group being the one whose start and end records hold the parameter, or by as many of the groups around
// it as it takes, the innermost last ("Presets/Sharpen/Amount"); where one of them stands outside every
// group, the bare label names that one.
#pragma once

#include <string>
#include <string_view>

#include "host/param/Parameters.h"

namespace Tw::Tools {

namespace Param = ::Tw::Host::Param;

// Whether a user sees the record as a parameter of its own: not the records without a control, and not
// the group starts and ends that only arrange the others.
bool isValueRecord(const Param::ParamRecord& record);

// "Outer/Inner/Label": every group around record `index`, and its label; a key that names the record
// whatever other labels the effect has.
std::string parameterKey(const Param::Parameters& params, int index);

// The list index of the value record that `key` names. Throws ToolError with ExitCode::UnknownName when
// none does, or when several do and the key doesn't tell them apart; `effectName` goes into the message.
int findParameter(const Param::Parameters& params, std::string_view key, std::string_view effectName);

}  // namespace Tw::Tools
