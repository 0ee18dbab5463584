#include "host/frei0r/ParamMapping.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace Tw::Host::Frei0r {
namespace {

using Param::ParamKind;
using Param::ParamRecord;

// Numbers in explanations, the same whatever locale the host has set.
std::string formatNumber(double value) {
    char text[32];
    const auto result = std::to_chars(text, text + sizeof text, value, std::chars_format::general, 6);
    return std::string(text, result.ptr);
}

// A range of a slider as doubles, whatever width the record's kind stores it at.
struct Span {
    double low;
    double high;
};

Span spanOf(const ParamRecord& record, const Param::ParamValue& low, const Param::ParamValue& high) {
    if (record.kind == ParamKind::IntSlider) {
        return {static_cast<double>(low.asInt()), static_cast<double>(high.asInt())};
    }
    return {low.asFloat(), high.asFloat()};
}

Span sliderSpan(const ParamRecord& record) {
    return spanOf(record, record.sliderMin, record.sliderMax);
}

double fromUnit(const Span& span, double unit) {
    return span.low + unit * (span.high - span.low);
}

double toUnit(const Span& span, double value) {
    return span.high == span.low ? 0.0 : (value - span.low) / (span.high - span.low);
}

int itemCount(const ParamRecord& record) {
    return static_cast<int>(record.items.size());
}

double itemToUnit(int item, int count) {
    return count > 1 ? static_cast<double>(item) / (count - 1) : 0.0;
}

// The item a host's number selects, before any limit to the items there are.
double unitToItem(double unit, int count) {
    return std::round(unit * std::max(count - 1, 0));
}

int itemOfText(const ParamRecord& record) {
    const auto found = std::find(record.items.begin(), record.items.end(), record.value.text);
    return found == record.items.end() ? 0 : static_cast<int>(found - record.items.begin());
}

std::string sliderExplanation(const ParamRecord& record) {
    const Span slider = sliderSpan(record);
    const Span valid = spanOf(record, record.validMin, record.validMax);
    std::string text = formatNumber(slider.low) + ".." + formatNumber(slider.high);
    if (record.kind == ParamKind::IntSlider) {
        text += " in whole steps";
    } else if (record.hasFlag(Param::ParamFlag::Percent)) {
        text += " %";
    } else if (record.hasFlag(Param::ParamFlag::Angle)) {
        text += " degrees";
    }
    text += " over 0..1";
    if (valid.low != slider.low || valid.high != slider.high) {
        text += ", valid " + formatNumber(valid.low) + ".." + formatNumber(valid.high);
    }
    return text;
}

std::string popupExplanation(const ParamRecord& record) {
    std::string text = "item by number:";
    for (int i = 0; i < itemCount(record); ++i) {
        text +=
            (i == 0 ? " " : ", ") + formatNumber(itemToUnit(i, itemCount(record))) + " " + record.items[i];
    }
    return text;
}

bool setSlider(Param::Parameters& params, int index, double unit) {
    const ParamRecord& record = params.records[index];
    const double value = fromUnit(sliderSpan(record), unit);
    if (record.kind == ParamKind::FloatSlider) {
        params.setFloat(index, value);
        return params.getFloat(index) == value;
    }
    // Limited in double first, so that a far value clamps rather than overflows on its way to 32 bits.
    const double rounded = std::round(value);
    const double limited = std::clamp(rounded, static_cast<double>(std::numeric_limits<std::int32_t>::min()),
                                      static_cast<double>(std::numeric_limits<std::int32_t>::max()));
    params.setInt(static_cast<std::int32_t>(limited), index);
    return params.getInt(index) == rounded;
}

bool setItem(Param::Parameters& params, int index, double unit) {
    const ParamRecord& record = params.records[index];
    const double item = unitToItem(unit, itemCount(record));
    const int chosen = static_cast<int>(std::clamp(item, 0.0, static_cast<double>(itemCount(record) - 1)));
    if (record.kind == ParamKind::Popup) {
        params.setInt(chosen, index);
    } else {
        params.setString(record.items[chosen], index);
    }
    return chosen == item;
}

bool setColor(Param::Parameters& params, int index, const f0r_param_color_t& color) {
    const double components[] = {color.r, color.g, color.b};
    bool inRange = true;
    double limited[3];
    for (int c = 0; c < 3; ++c) {
        limited[c] = std::clamp(components[c], 0.0, 1.0);
        inRange = inRange && limited[c] == components[c];
    }
    params.setColor({limited[0], limited[1], limited[2]}, index);
    return inRange;
}

bool isFinite(const HostValue& value, ParamKind kind) {
    switch (kind) {
        case ParamKind::Color:
            return std::isfinite(value.color.r) && std::isfinite(value.color.g) &&
                   std::isfinite(value.color.b);
        case ParamKind::Point:
            return std::isfinite(value.position.x) && std::isfinite(value.position.y);
        case ParamKind::String:
            return true;
        default:
            return std::isfinite(value.number);
    }
}

}  // namespace

std::optional<int> hostKindOf(const ParamRecord& record) {
    if (record.hasFlag(Param::ParamFlag::Hidden)) return std::nullopt;
    switch (record.kind) {
        case ParamKind::Checkbox:
            return F0R_PARAM_BOOL;
        case ParamKind::IntSlider:
        case ParamKind::FloatSlider:
            return F0R_PARAM_DOUBLE;
        case ParamKind::Popup:
        case ParamKind::StringPopup:
            // A popup without items has nothing to choose.
            if (record.items.empty()) return std::nullopt;
            return F0R_PARAM_DOUBLE;
        case ParamKind::Color:
            return F0R_PARAM_COLOR;
        case ParamKind::Point:
            return F0R_PARAM_POSITION;
        case ParamKind::String:
            return F0R_PARAM_STRING;
        default:
            return std::nullopt;
    }
}

std::string explanationOf(const ParamRecord& record) {
    switch (record.kind) {
        case ParamKind::Checkbox:
            return "on or off";
        case ParamKind::IntSlider:
        case ParamKind::FloatSlider:
            return sliderExplanation(record);
        case ParamKind::Popup:
        case ParamKind::StringPopup:
            return popupExplanation(record);
        case ParamKind::Color:
            return "red, green, blue in 0..1";
        case ParamKind::Point:
            return "x, y as fractions of the frame";
        default:
            return "text";
    }
}

HostValue hostValueOf(const ParamRecord& record) {
    HostValue value;
    switch (record.kind) {
        case ParamKind::Checkbox:
            value.number = record.value.asBool() ? 1.0 : 0.0;
            break;
        case ParamKind::IntSlider:
            value.number = toUnit(sliderSpan(record), record.value.asInt());
            break;
        case ParamKind::FloatSlider:
            value.number = toUnit(sliderSpan(record), record.value.asFloat());
            break;
        case ParamKind::Popup:
            value.number = itemToUnit(record.value.asInt(), itemCount(record));
            break;
        case ParamKind::StringPopup:
            value.number = itemToUnit(itemOfText(record), itemCount(record));
            break;
        case ParamKind::Color: {
            const Param::ParamColor color = record.value.asColor();
            value.color = {static_cast<float>(color.red), static_cast<float>(color.green),
                           static_cast<float>(color.blue)};
            break;
        }
        case ParamKind::Point: {
            const Param::ParamPoint point = record.value.asPoint();
            value.position = {point.x, point.y};
            break;
        }
        default:
            value.text = record.value.text;
            break;
    }
    return value;
}

bool setFromHost(Param::Parameters& params, int index, const HostValue& value) {
    const ParamRecord& record = params.records.at(static_cast<std::size_t>(index));
    if (!hostKindOf(record) || !isFinite(value, record.kind)) return false;
    switch (record.kind) {
        case ParamKind::Checkbox:
            params.setBool(value.number >= 0.5, index);
            return true;
        case ParamKind::IntSlider:
        case ParamKind::FloatSlider:
            return setSlider(params, index, value.number);
        case ParamKind::Popup:
        case ParamKind::StringPopup:
            return setItem(params, index, value.number);
        case ParamKind::Color:
            return setColor(params, index, value.color);
        case ParamKind::Point:
            params.setPoint({value.position.x, value.position.y}, index);
            return true;
        default:
            params.setString(value.text, index);
            return true;
    }
}

}  // namespace Tw::Host::Frei0r
