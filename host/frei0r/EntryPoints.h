// The frei0r entry points as the shared library of the effects serves them to every plug-in module. A
// module's own f0r_* functions pass their calls straight through to these (PluginModule.cpp), naming
// their effect where the call has no instance to tell it; so a module holds no code of the effects, and
// these functions are all the library shows.
//
// Nothing thrown inside passes to the host: a call that fails leaves the host's records and frames as a
// failure would (no instance, the input frame unchanged).
#pragma once

#include <cstdint>

#include "host/frei0r/Frei0rApi.h"

namespace Tw::Host::Frei0r::Entry {

// `entryName` is the registry's name of the module's effect: "SmoothingEntry".
int init(const char* entryName) noexcept;
void pluginInfo(const char* entryName, f0r_plugin_info_t* info) noexcept;
void paramInfo(const char* entryName, f0r_param_info_t* info, int index) noexcept;
f0r_instance_t construct(const char* entryName, unsigned width, unsigned height) noexcept;

void destruct(f0r_instance_t instance) noexcept;
void setParamValue(f0r_instance_t instance, f0r_param_t param, int index) noexcept;
void getParamValue(f0r_instance_t instance, f0r_param_t param, int index) noexcept;
// f0r_update and f0r_update2 alike: a filter's or source's host gives no further inputs.
void update(f0r_instance_t instance, const uint32_t* inframe1, const uint32_t* inframe2,
            const uint32_t* inframe3, uint32_t* outframe) noexcept;

}  // namespace Tw::Host::Frei0r::Entry
