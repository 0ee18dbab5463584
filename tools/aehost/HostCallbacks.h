// The tables of functions the simulated host hands an effect: the PICA basic suite and the suites behind
// it, the utility and interaction callbacks of PF_InData, and the callbacks of the smart pre-render and
// render. Each function finds its host as HostState.h tells, and records misuse as a fault.
#pragma once

#include "host/ae/sdk/AeSdk.h"

namespace Tw::Tools::AeHost {

const SPBasicSuite& basicSuite();
// Without iterate_generic for hosts older than interface version 12.
PF_UtilCallbacks utilityCallbacks(bool withIterateGeneric);
PF_InteractCallbacks interactCallbacks();
PF_PreRenderCallbacks preRenderCallbacks();
PF_SmartRenderCallbacks smartRenderCallbacks();

}  // namespace Tw::Tools::AeHost
