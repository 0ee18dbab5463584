#include "host/frei0r/PluginDescription.h"

#include <algorithm>
#include <string>

#include "host/frei0r/ParamMapping.h"
#include "host/param/ParamGroups.h"
#include "image/core/Exception.h"

#ifndef TW_VERSION_MAJOR
#error "the build defines TW_VERSION_MAJOR and TW_VERSION_MINOR"
#endif

namespace Tw::Host::Frei0r {
namespace {

using Param::ParamKind;
using Param::ParamRecord;

// Two effects share the display name "MinMax"; a host that lists plug-ins by title must still tell them
// apart.
std::string titleOf(const EffectEntry& entry, std::span<const EffectEntry> registry) {
    const auto sameName = std::count_if(registry.begin(), registry.end(), [&](const EffectEntry& other) {
        return std::string_view(other.displayName) == entry.displayName;
    });
    std::string title = entry.displayName;
    if (sameName > 1) title += " (" + std::string(entry.shortName()) + ")";
    return title;
}

// A label that occurs twice among the controls is written with its group, "Sharpen/Amount", so that a
// host that sets parameters by name reaches each; one of them outside every group keeps its bare label.
std::vector<HostParameter> hostParametersOf(const std::vector<ParamRecord>& records) {
    std::vector<HostParameter> parameters;
    for (int i = 0; i < static_cast<int>(records.size()); ++i) {
        if (const auto kind = hostKindOf(records[i])) {
            parameters.push_back({i, *kind, records[i].label, explanationOf(records[i])});
        }
    }
    for (HostParameter& parameter : parameters) {
        const auto sameLabel =
            std::count_if(parameters.begin(), parameters.end(), [&](const HostParameter& p) {
                return records[p.recordIndex].label == records[parameter.recordIndex].label;
            });
        const std::string group = Param::groupOf(records, parameter.recordIndex);
        if (sameLabel > 1 && !group.empty()) parameter.name = group + "/" + parameter.name;
    }
    return parameters;
}

}  // namespace

const EffectEntry& effectNamed(std::string_view entryName, std::span<const EffectEntry> registry) {
    const auto found = std::find_if(registry.begin(), registry.end(),
                                    [&](const EffectEntry& entry) { return entryName == entry.entryName; });
    if (found == registry.end()) {
        throw Exception("frei0r plug-in", "the effect registry has no " + std::string(entryName));
    }
    return *found;
}

PluginDescription::PluginDescription(const EffectEntry& entry, std::span<const EffectEntry> registry)
    : entry_(entry), title_(titleOf(entry, registry)) {
    Param::Parameters list;
    entry.create()->defineParameters(list);
    defaults_ = std::move(list.records);
    parameters_ = hostParametersOf(defaults_);

    explanation_ = "Tesselworks Effects: " + std::string(entry.displayName);
    std::vector<std::string> layers;
    for (const ParamRecord& record : defaults_) {
        if (record.kind == ParamKind::Layer) layers.push_back(record.label);
    }
    if (entry.inputs == Plugins::EffectInputs::Generator) {
        pluginType_ = F0R_PLUGIN_TYPE_SOURCE;
    } else {
        layerInputs_ = std::min<int>(static_cast<int>(layers.size()), entry.mixerLayers);
    }
    if (layerInputs_ > 0) {
        pluginType_ = layerInputs_ == 1 ? F0R_PLUGIN_TYPE_MIXER2 : F0R_PLUGIN_TYPE_MIXER3;
        explanation_ += "; input 2 is its \"" + layers[0] + "\"";
        if (layerInputs_ == 2) explanation_ += ", input 3 its \"" + layers[1] + "\"";
    } else if (!layers.empty()) {
        explanation_ += "; its layer parameters stay without a layer";
    }
}

void PluginDescription::fillInfo(f0r_plugin_info_t& info) const {
    info.name = title_.c_str();
    info.author = "Tesselworks";
    info.plugin_type = pluginType_;
    info.color_model = F0R_COLOR_MODEL_BGRA8888;
    info.frei0r_version = FREI0R_MAJOR_VERSION;
    info.major_version = TW_VERSION_MAJOR;
    info.minor_version = TW_VERSION_MINOR;
    info.num_params = static_cast<int>(parameters_.size());
    info.explanation = explanation_.c_str();
}

void PluginDescription::fillParamInfo(f0r_param_info_t& info, int index) const {
    if (index < 0 || index >= static_cast<int>(parameters_.size())) return;
    const HostParameter& parameter = parameters_[static_cast<std::size_t>(index)];
    info.name = parameter.name.c_str();
    info.type = parameter.kind;
    info.explanation = parameter.explanation.c_str();
}

}  // namespace Tw::Host::Frei0r
