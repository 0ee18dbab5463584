// A frei0r plug-in module: the entry points a host looks up, each passing its call to the shared library
// of the effects, naming the module's effect (TW_FREI0R_ENTRY, set by the build) where the call has no
// instance to tell it. The module holds nothing else.
#include "host/frei0r/EntryPoints.h"

#ifndef TW_FREI0R_ENTRY
#error "the build names the module's effect in TW_FREI0R_ENTRY"
#endif

namespace Entry = Tw::Host::Frei0r::Entry;

extern "C" {

int f0r_init() {
    return Entry::init(TW_FREI0R_ENTRY);
}

void f0r_deinit() {}

void f0r_get_plugin_info(f0r_plugin_info_t* info) {
    Entry::pluginInfo(TW_FREI0R_ENTRY, info);
}

void f0r_get_param_info(f0r_param_info_t* info, int param_index) {
    Entry::paramInfo(TW_FREI0R_ENTRY, info, param_index);
}

f0r_instance_t f0r_construct(unsigned int width, unsigned int height) {
    return Entry::construct(TW_FREI0R_ENTRY, width, height);
}

void f0r_destruct(f0r_instance_t instance) {
    Entry::destruct(instance);
}

void f0r_set_param_value(f0r_instance_t instance, f0r_param_t param, int param_index) {
    Entry::setParamValue(instance, param, param_index);
}

void f0r_get_param_value(f0r_instance_t instance, f0r_param_t param, int param_index) {
    Entry::getParamValue(instance, param, param_index);
}

void f0r_update(f0r_instance_t instance, double /*time*/, const uint32_t* inframe, uint32_t* outframe) {
    Entry::update(instance, inframe, nullptr, nullptr, outframe);
}

void f0r_update2(f0r_instance_t instance, double /*time*/, const uint32_t* inframe1, const uint32_t* inframe2,
                 const uint32_t* inframe3, uint32_t* outframe) {
    Entry::update(instance, inframe1, inframe2, inframe3, outframe);
}

}  // extern "C"
