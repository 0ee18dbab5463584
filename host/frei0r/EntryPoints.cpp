// The frei0r entry points of a plug-in module. Nothing thrown inside passes to the host: a call that fails
// leaves the host's records and frames as a failure would (no instance, the input frame unchanged).
//
// The plug-in's description is made at the first call that needs it and kept until the module is
// unloaded, since hosts ask for it in any order: MLT reads the plug-in info without calling f0r_init,
// and calls f0r_deinit before it destroys its last instances.
//
// frei0r's time argument plays no part: an effect's frame depends on its input and parameters alone.
#include <cstring>
#include <memory>
#include <new>

#include "host/frei0r/Frei0rApi.h"
#include "host/frei0r/PluginDescription.h"
#include "host/frei0r/PluginInstance.h"
#include "host/frei0r/PluginModule.h"

namespace {

using Tw::Host::Frei0r::HostValue;
using Tw::Host::Frei0r::PluginDescription;
using Tw::Host::Frei0r::PluginInstance;

// Null when the effect can't be described (no memory); a later call tries again.
const PluginDescription* plugin() noexcept {
    try {
        static const PluginDescription description(
            Tw::Host::Frei0r::effectNamed(Tw::Host::Frei0r::moduleEntryName()));
        return &description;
    } catch (...) {
        return nullptr;
    }
}

PluginInstance* instanceOf(f0r_instance_t instance) {
    return static_cast<PluginInstance*>(instance);
}

// The host's parameter `index`, or null.
const Tw::Host::Frei0r::HostParameter* parameterOf(int index) {
    const PluginDescription* description = plugin();
    if (!description || index < 0 || index >= static_cast<int>(description->parameters().size()))
        return nullptr;
    return &description->parameters()[static_cast<std::size_t>(index)];
}

HostValue readValue(int kind, f0r_param_t param) {
    HostValue value;
    switch (kind) {
        case F0R_PARAM_COLOR:
            std::memcpy(&value.color, param, sizeof value.color);
            break;
        case F0R_PARAM_POSITION:
            std::memcpy(&value.position, param, sizeof value.position);
            break;
        case F0R_PARAM_STRING:
            if (const char* text = *static_cast<f0r_param_string*>(param)) value.text = text;
            break;
        default:
            std::memcpy(&value.number, param, sizeof value.number);
            break;
    }
    return value;
}

// A string is handed out as the instance's own text, valid until the parameter is set again.
void writeValue(int kind, const HostValue& value, f0r_param_t param) {
    switch (kind) {
        case F0R_PARAM_COLOR:
            std::memcpy(param, &value.color, sizeof value.color);
            break;
        case F0R_PARAM_POSITION:
            std::memcpy(param, &value.position, sizeof value.position);
            break;
        case F0R_PARAM_STRING:
            *static_cast<const char**>(param) = value.text.c_str();
            break;
        default:
            std::memcpy(param, &value.number, sizeof value.number);
            break;
    }
}

}  // namespace

extern "C" {

int f0r_init() {
    return plugin() ? 1 : 0;
}

void f0r_deinit() {}

void f0r_get_plugin_info(f0r_plugin_info_t* info) {
    if (!info) return;
    if (const PluginDescription* description = plugin()) {
        description->fillInfo(*info);
        return;
    }
    *info = {Tw::Host::Frei0r::moduleEntryName(),
             "Tesselworks",
             F0R_PLUGIN_TYPE_FILTER,
             F0R_COLOR_MODEL_BGRA8888,
             FREI0R_MAJOR_VERSION,
             0,
             0,
             0,
             "out of memory"};
}

void f0r_get_param_info(f0r_param_info_t* info, int param_index) {
    const PluginDescription* description = plugin();
    if (info && description) description->fillParamInfo(*info, param_index);
}

f0r_instance_t f0r_construct(unsigned int width, unsigned int height) {
    const PluginDescription* description = plugin();
    if (!description) return nullptr;
    try {
        return new PluginInstance(*description, width, height);
    } catch (...) {
        return nullptr;
    }
}

void f0r_destruct(f0r_instance_t instance) {
    delete instanceOf(instance);
}

void f0r_set_param_value(f0r_instance_t instance, f0r_param_t param, int param_index) {
    const auto* parameter = parameterOf(param_index);
    if (!instance || !param || !parameter) return;
    try {
        instanceOf(instance)->setParameter(param_index, readValue(parameter->kind, param));
    } catch (...) {
        // The parameter keeps its value.
    }
}

void f0r_get_param_value(f0r_instance_t instance, f0r_param_t param, int param_index) {
    const auto* parameter = parameterOf(param_index);
    if (!instance || !param || !parameter) return;
    if (const HostValue* value = instanceOf(instance)->parameter(param_index)) {
        writeValue(parameter->kind, *value, param);
    }
}

void f0r_update(f0r_instance_t instance, double /*time*/, const uint32_t* inframe, uint32_t* outframe) {
    if (instance) instanceOf(instance)->update(inframe, {}, outframe);
}

void f0r_update2(f0r_instance_t instance, double /*time*/, const uint32_t* inframe1, const uint32_t* inframe2,
                 const uint32_t* inframe3, uint32_t* outframe) {
    const uint32_t* const layers[] = {inframe2, inframe3};
    if (instance) instanceOf(instance)->update(inframe1, layers, outframe);
}

}  // extern "C"
