// Groups of a parameter list as a host shows them: a record is inside a group from the group's start
// record to its end record, and groups may hold groups. Records after a group's end stand outside it.
#pragma once

#include <string>
#include <vector>

#include "host/param/ParamRecord.h"

namespace Tw::Host::Param {

// The labels of the groups that hold record `index`, the outermost first; empty for a record outside
// every group.
std::vector<std::string> groupsOf(const std::vector<ParamRecord>& records, int index);

// The label of the innermost group that holds record `index`; empty for a record outside every group.
std::string groupOf(const std::vector<ParamRecord>& records, int index);

}  // namespace Tw::Host::Param
