#include "tests/frei0r/HostSettings.h"

#include <charconv>
#include <cmath>
#include <cstdio>

#include "host/frei0r/ParamMapping.h"

namespace Tw::Host::Frei0r {
namespace {

using Param::ParamKind;
using Param::ParamRecord;

// The shortest text that reads back as the same number, which every host and twfx parse exactly.
template <class Number>
std::string shortest(Number value) {
    char text[64];
    return std::string(text, std::to_chars(text, text + sizeof text, value).ptr);
}

// Slider positions, taken in turn; each effect gets a spread of them.
constexpr double kSliderChoices[] = {0.35, 0.6, 0.15, 0.8, 0.45};
// Colours in steps of 1/255, the only ones melt's colour text can carry.
constexpr int kColourChoices[][3] = {{32, 64, 96}, {224, 192, 160}, {64, 32, 16}, {192, 224, 255}};

bool changesTheDefault(const ParamRecord& record, const HostValue& value) {
    Param::Parameters scratch;
    scratch.records = {record};
    setFromHost(scratch, 0, value);
    return scratch.records[0].value.numbers != record.defaultValue.numbers ||
           scratch.records[0].value.text != record.defaultValue.text;
}

HostValue nonDefaultValue(const ParamRecord& record, int kind, int& sliders, int& colours) {
    HostValue value = hostValueOf(record);
    switch (kind) {
        case F0R_PARAM_BOOL:
            value.number = value.number >= 0.5 ? 0.0 : 1.0;
            break;
        case F0R_PARAM_DOUBLE:
            if (record.kind == ParamKind::Popup || record.kind == ParamKind::StringPopup) {
                const auto last = static_cast<double>(record.items.size() - 1);
                value.number =
                    last > 0 ? std::fmod(std::round(value.number * last) + 1, last + 1) / last : 0.0;
            } else {
                for (int tried = 0; tried < 5; ++tried) {
                    value.number = kSliderChoices[(sliders + tried) % 5];
                    if (changesTheDefault(record, value)) break;
                }
                ++sliders;
            }
            break;
        case F0R_PARAM_COLOR: {
            const int* steps = kColourChoices[colours++ % 4];
            value.color = {steps[0] / 255.0f, steps[1] / 255.0f, steps[2] / 255.0f};
            break;
        }
        case F0R_PARAM_POSITION:
            value.position = {0.375, 0.625};
            break;
        default:
            break;
    }
    return value;
}

// The value as twfx takes it: in the record's own units.
std::string userText(const ParamRecord& record) {
    switch (record.kind) {
        case ParamKind::FloatSlider:
            return shortest(record.value.asFloat());
        case ParamKind::IntSlider:
        case ParamKind::Popup:
            return std::to_string(record.value.asInt());
        case ParamKind::Checkbox:
            return record.value.asBool() ? "on" : "off";
        case ParamKind::Color: {
            const Param::ParamColor color = record.value.asColor();
            return shortest(color.red) + "," + shortest(color.green) + "," + shortest(color.blue);
        }
        case ParamKind::Point: {
            const Param::ParamPoint point = record.value.asPoint();
            return shortest(point.x) + "," + shortest(point.y);
        }
        default:
            return record.value.text;
    }
}

int colourStep(float component) {
    return static_cast<int>(std::lround(component * 255.0f));
}

std::string colourByte(float component) {
    char text[3];
    std::snprintf(text, sizeof text, "%02x", colourStep(component));
    return text;
}

std::vector<HostValue> hostValuesOf(const PluginDescription& plugin, const Param::Parameters& params) {
    std::vector<HostValue> values;
    for (const HostParameter& parameter : plugin.parameters())
        values.push_back(hostValueOf(params.records[parameter.recordIndex]));
    return values;
}

}  // namespace

HostSettings::HostSettings(const PluginDescription& plugin) : plugin_(plugin) {
    params_.records = plugin.defaultRecords();
}

HostSettings::HostSettings(const PluginDescription& plugin, HostProgram host, std::vector<HostValue> values)
    : HostSettings(plugin) {
    values_ = std::move(values);
    for (std::size_t i = 0; i < values_.size(); ++i) {
        const HostParameter& parameter = plugin.parameters()[i];
        HostValue& value = values_[i];
        if (host == HostProgram::Melt && parameter.kind == F0R_PARAM_POSITION) continue;
        if (host == HostProgram::Melt && parameter.kind == F0R_PARAM_COLOR) {
            value.color = {colourStep(value.color.r) / 255.0f, colourStep(value.color.g) / 255.0f,
                           colourStep(value.color.b) / 255.0f};
        }
        setFromHost(params_, parameter.recordIndex, value);
    }
}

HostSettings::HostSettings(const PluginDescription& plugin, HostProgram host, const Param::Parameters& wanted)
    : HostSettings(plugin, host, hostValuesOf(plugin, wanted)) {}

HostSettings HostSettings::varied(const PluginDescription& plugin, HostProgram host) {
    int sliders = 0;
    int colours = 0;
    std::vector<HostValue> values;
    for (const HostParameter& parameter : plugin.parameters()) {
        values.push_back(nonDefaultValue(plugin.defaultRecords()[parameter.recordIndex], parameter.kind,
                                         sliders, colours));
    }
    return HostSettings(plugin, host, std::move(values));
}

std::string HostSettings::ffmpegParams() const {
    std::string text;
    for (std::size_t i = 0; i < values_.size(); ++i) {
        const HostValue& value = values_[i];
        if (i > 0) text += '|';
        switch (plugin_.parameters()[i].kind) {
            case F0R_PARAM_BOOL:
                text += value.number >= 0.5 ? "y" : "n";
                break;
            case F0R_PARAM_COLOR:
                text +=
                    shortest(value.color.r) + "/" + shortest(value.color.g) + "/" + shortest(value.color.b);
                break;
            case F0R_PARAM_POSITION:
                text += shortest(value.position.x) + "/" + shortest(value.position.y);
                break;
            case F0R_PARAM_STRING:
                text += value.text;
                break;
            default:
                text += shortest(value.number);
                break;
        }
    }
    return text;
}

std::vector<std::string> HostSettings::meltProperties() const {
    std::vector<std::string> properties;
    for (std::size_t i = 0; i < values_.size(); ++i) {
        const HostValue& value = values_[i];
        const HostParameter& parameter = plugin_.parameters()[i];
        switch (parameter.kind) {
            case F0R_PARAM_POSITION:
                break;
            case F0R_PARAM_COLOR:
                properties.push_back(parameter.name + "=#" + colourByte(value.color.r) +
                                     colourByte(value.color.g) + colourByte(value.color.b));
                break;
            case F0R_PARAM_STRING:
                properties.push_back(parameter.name + "=" + value.text);
                break;
            default:
                properties.push_back(parameter.name + "=" + shortest(value.number));
                break;
        }
    }
    return properties;
}

std::vector<std::string> HostSettings::twfxOptions() const {
    std::vector<std::string> options;
    if (values_.empty()) return options;
    for (const HostParameter& parameter : plugin_.parameters()) {
        options.push_back("--set");
        options.push_back(parameter.name + "=" + userText(params_.records[parameter.recordIndex]));
    }
    return options;
}

}  // namespace Tw::Host::Frei0r
