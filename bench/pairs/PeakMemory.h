// The memory one call of a side takes.
#pragma once

#include "bench/pairs/Comparison.h"

namespace Tw::Bench {

// The growth of the process's resident memory at its highest during one call of `side`, in bytes. Free
// memory is handed back to the system first, so pages the call takes count whether they are fresh or
// reused; what the caller made resident before (the setup's frames) does not count.
double residentGrowthOfCall(const Side& side);

}  // namespace Tw::Bench
