// The definitions an effect added at PF_Cmd_PARAMS_SETUP read back as the parameter model's records, so
// that the tools' value syntax (tools/common/ParameterValues.h) and parameter table work on any effect of
// any bundle as they work on an effect's own list. One record stands for each host parameter after the
// input layer, in host order: list index i is host index i + 1. Each takes the kind, label, default, ranges
// and items its definition shows, and the value the host holds now. A parameter a user can't type a value
// for (arbitrary data, paths) becomes a record of no kind.
#pragma once

#include "host/param/Parameters.h"
#include "tools/aehost/ParameterStore.h"

namespace Tw::Tools::AeHost {

namespace Param = ::Tw::Host::Param;

void describeParameters(const ParameterStore& store, Param::Parameters& list);

// Stores the value of record `index`, as set through the list, in the host parameter it stands for.
void storeValue(const Param::Parameters& list, int index, ParameterStore& store);

}  // namespace Tw::Tools::AeHost
