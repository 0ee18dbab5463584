#include "tools/common/ParameterListing.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include "tools/common/ParameterLabels.h"
#include "tools/common/UserText.h"

namespace Tw::Tools {
namespace {

using Param::ParamKind;
using Param::ParamRecord;
using Param::ParamFlag::Angle;
using Param::ParamFlag::Percent;

using Row = std::array<std::string, 4>;  // label, kind, default, range

std::string fixed(double value, int decimals) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

// A slider value in the units of its control, with the precision a host shows: percent sliders with
// one decimal and "%", angles in degrees and other float sliders with two decimals, integer sliders whole.
std::string formatSliderValue(const ParamRecord& record, const Param::ParamValue& value) {
    if (record.kind == ParamKind::IntSlider) return std::to_string(value.asInt());
    if (record.hasFlag(Percent)) return fixed(value.asFloat(), 1) + "%";
    if (record.hasFlag(Angle)) return fixed(value.asFloat(), 2) + " deg";
    return fixed(value.asFloat(), 2);
}

std::string kindName(const ParamRecord& record) {
    switch (record.kind) {
        case ParamKind::IntSlider:
            return "integer slider";
        case ParamKind::FloatSlider:
            return record.hasFlag(Angle) ? "angle" : "slider";
        case ParamKind::Checkbox:
            return "checkbox";
        case ParamKind::String:
            return "text";
        case ParamKind::Popup:
        case ParamKind::StringPopup:
            return "popup";
        case ParamKind::Color:
            return "colour";
        case ParamKind::Point:
            return "point";
        case ParamKind::Layer:
            return "layer";
        case ParamKind::Path:
            return "path";
        default:
            return "";
    }
}

std::string defaultText(const ParamRecord& record) {
    const Param::ParamValue& value = record.defaultValue;
    switch (record.kind) {
        case ParamKind::IntSlider:
        case ParamKind::FloatSlider:
            return formatSliderValue(record, value);
        case ParamKind::Checkbox:
            return value.asBool() ? "on" : "off";
        case ParamKind::String:
        case ParamKind::StringPopup:
            return inQuotes(value.text);
        case ParamKind::Popup: {
            const auto item = static_cast<std::size_t>(value.asInt());
            return item < record.items.size() ? record.items[item] : std::to_string(value.asInt());
        }
        case ParamKind::Color: {
            const Param::ParamColor c = value.asColor();
            return formatNumber(c.red) + "," + formatNumber(c.green) + "," + formatNumber(c.blue);
        }
        case ParamKind::Point: {
            const Param::ParamPoint p = value.asPoint();
            return formatNumber(p.x) + "," + formatNumber(p.y);
        }
        case ParamKind::Layer:
            return record.hasFlag(Param::ParamFlag::DefaultToOwnLayer) ? "this layer" : "none";
        default:
            return "";
    }
}

std::string rangeText(const ParamRecord& record) {
    switch (record.kind) {
        case ParamKind::IntSlider:
        case ParamKind::FloatSlider: {
            std::string text = formatSliderValue(record, record.validMin) + " to " +
                               formatSliderValue(record, record.validMax);
            // Typed values may go beyond a narrower slider, up to the accepted range.
            const std::string slider = formatSliderValue(record, record.sliderMin) + " to " +
                                       formatSliderValue(record, record.sliderMax);
            if (slider != text) text += " (slider " + slider + ")";
            return text;
        }
        case ParamKind::Popup:
        case ParamKind::StringPopup:
            return joinedWithCommas(record.items);
        case ParamKind::Color:
            return "r,g,b from 0 to 1";
        case ParamKind::Point:
            return "x,y in fractions of the frame";
        case ParamKind::Layer:
            return "an image, with --layer";
        default:
            return "";
    }
}

std::vector<Row> rowsOf(const Param::Parameters& params) {
    std::vector<Row> rows;
    std::string indent;
    for (const ParamRecord& record : params.records) {
        if (record.kind == ParamKind::GroupStart) {
            rows.push_back({indent + record.label, "group", "", ""});
            indent += "  ";
        } else if (record.kind == ParamKind::GroupEnd) {
            if (!indent.empty()) indent.resize(indent.size() - 2);
        } else if (isValueRecord(record)) {
            rows.push_back({indent + record.label, kindName(record), defaultText(record), rangeText(record)});
        }
    }
    return rows;
}

}  // namespace

void writeParameterTable(std::ostream& out, const Param::Parameters& params) {
    std::vector<Row> rows = rowsOf(params);
    rows.insert(rows.begin(), Row{"LABEL", "KIND", "DEFAULT", "RANGE"});
    std::array<std::size_t, 3> widths{};
    for (const Row& row : rows)
        for (std::size_t column = 0; column < widths.size(); ++column)
            widths[column] = std::max(widths[column], row[column].size());
    for (const Row& row : rows) {
        std::string line;
        for (std::size_t column = 0; column < widths.size(); ++column)
            line += row[column] + std::string(widths[column] - row[column].size() + 2, ' ');
        line += row[3];
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << "\n";
    }
}

}  // namespace Tw::Tools
