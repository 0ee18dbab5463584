// The plug-in's description is made at the first call that needs it and kept while the library is
// loaded, one per effect whose module calls here, since hosts ask for it in any order: MLT reads the
// plug-in info without calling f0r_init, and calls f0r_deinit before it destroys its last instances.
//
// frei0r's time argument plays no part: an effect's frame depends on its input and parameters alone.
#include "host/frei0r/EntryPoints.h"

#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "host/frei0r/PluginDescription.h"
#include "host/frei0r/PluginInstance.h"

namespace Tw::Host::Frei0r {
namespace {

// Null when the effect can't be described (unknown, or no memory); a later call tries again.
const PluginDescription* plugin(const char* entryName) noexcept {
    try {
        static std::mutex mutex;
        static std::map<std::string, std::unique_ptr<const PluginDescription>, std::less<>> descriptions;
        const std::lock_guard lock(mutex);
        std::unique_ptr<const PluginDescription>& description = descriptions[entryName];
        if (!description) {
            description = std::make_unique<const PluginDescription>(effectNamed(entryName));
        }
        return description.get();
    } catch (...) {
        return nullptr;
    }
}

PluginInstance* instanceOf(f0r_instance_t instance) {
    return static_cast<PluginInstance*>(instance);
}

// The instance's parameter `index`, or null.
const HostParameter* parameterOf(f0r_instance_t instance, int index) {
    const auto parameters = instanceOf(instance)->description().parameters();
    if (index < 0 || index >= static_cast<int>(parameters.size())) return nullptr;
    return &parameters[static_cast<std::size_t>(index)];
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

namespace Entry {

int init(const char* entryName) noexcept {
    return plugin(entryName) ? 1 : 0;
}

void pluginInfo(const char* entryName, f0r_plugin_info_t* info) noexcept {
    if (!info) return;
    if (const PluginDescription* description = plugin(entryName)) {
        description->fillInfo(*info);
        return;
    }
    *info = {entryName,
             "Tesselworks",
             F0R_PLUGIN_TYPE_FILTER,
             F0R_COLOR_MODEL_BGRA8888,
             FREI0R_MAJOR_VERSION,
             0,
             0,
             0,
             "out of memory"};
}

void paramInfo(const char* entryName, f0r_param_info_t* info, int index) noexcept {
    const PluginDescription* description = plugin(entryName);
    if (info && description) description->fillParamInfo(*info, index);
}

f0r_instance_t construct(const char* entryName, unsigned width, unsigned height) noexcept {
    const PluginDescription* description = plugin(entryName);
    if (!description) return nullptr;
    try {
        return new PluginInstance(*description, width, height);
    } catch (...) {
        return nullptr;
    }
}

void destruct(f0r_instance_t instance) noexcept {
    delete instanceOf(instance);
}

void setParamValue(f0r_instance_t instance, f0r_param_t param, int index) noexcept {
    if (!instance || !param) return;
    const auto* parameter = parameterOf(instance, index);
    if (!parameter) return;
    try {
        instanceOf(instance)->setParameter(index, readValue(parameter->kind, param));
    } catch (...) {
        // The parameter keeps its value.
    }
}

void getParamValue(f0r_instance_t instance, f0r_param_t param, int index) noexcept {
    if (!instance || !param) return;
    const auto* parameter = parameterOf(instance, index);
    if (!parameter) return;
    if (const HostValue* value = instanceOf(instance)->parameter(index)) {
        writeValue(parameter->kind, *value, param);
    }
}

void update(f0r_instance_t instance, const uint32_t* inframe1, const uint32_t* inframe2,
            const uint32_t* inframe3, uint32_t* outframe) noexcept {
    const uint32_t* const layers[] = {inframe2, inframe3};
    if (instance) instanceOf(instance)->update(inframe1, layers, outframe);
}

}  // namespace Entry
}  // namespace Tw::Host::Frei0r
