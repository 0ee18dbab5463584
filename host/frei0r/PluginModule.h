// Each plug-in module carries one effect of the registry, named by the build in the module's own file
// (PluginModule.cpp, compiled with TW_FREI0R_ENTRY); the entry points, compiled once, ask it here.
#pragma once

namespace Tw::Host::Frei0r {

// The registry's entry name of the module's effect: "SmoothingEntry".
const char* moduleEntryName();

}  // namespace Tw::Host::Frei0r
