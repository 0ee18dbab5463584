// The table of the tools' `params` command: an effect's parameters in host order with kind, default and
// range, each value written as a host shows it and as --set takes it.
#pragma once

#include <ostream>

#include "host/param/Parameters.h"

namespace Tw::Tools {

namespace Param = ::Tw::Host::Param;

// One line per parameter; group starts become headings over their indented members, and the records
// with no control, like group ends, are left out.
void writeParameterTable(std::ostream& out, const Param::Parameters& params);

}  // namespace Tw::Tools
