#include "tools/common/ParameterValues.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "tools/common/ToolError.h"
#include "tools/common/UserText.h"

namespace Tw::Tools {
namespace {

using Param::ParamKind;
using Param::ParamRecord;

[[noreturn]] void badValue(const ParamRecord& record, std::string_view text, std::string_view expected) {
    throw ToolError(ExitCode::BadValue,
                    inQuotes(record.label) + " takes " + std::string(expected) + ", not " + inQuotes(text));
}

void warnIfChanged(std::ostream& warnings, const ParamRecord& record, double asked, double set) {
    if (asked == set) return;
    warnings << "warning: " << record.label << " " << formatNumber(asked) << " is outside its range; using "
             << formatNumber(set) << "\n";
}

// The numbers of "a,b,c", exactly `count` of them.
std::vector<double> numbersOf(const ParamRecord& record, std::string_view text, std::size_t count,
                              std::string_view expected) {
    const auto parts = splitAtCommas(text);
    if (parts.size() != count) badValue(record, text, expected);
    std::vector<double> numbers;
    for (const std::string_view part : parts) {
        const auto number = parseNumber(part);
        if (!number) badValue(record, text, expected);
        numbers.push_back(*number);
    }
    return numbers;
}

// The index of the item that `text` names, by its name in any case or by its 0-based number.
int itemIndex(const ParamRecord& record, std::string_view text) {
    const auto named = std::find_if(record.items.begin(), record.items.end(), [&](const std::string& item) {
        return equalsIgnoringCase(item, trimmed(text));
    });
    if (named != record.items.end()) return static_cast<int>(named - record.items.begin());
    const auto number = parseInteger(text);
    if (number && *number >= 0 && *number < static_cast<long long>(record.items.size())) {
        return static_cast<int>(*number);
    }
    badValue(record, text, "one of " + joinedWithCommas(record.items) + " (or its number from 0)");
}

void setFloatSlider(Param::Parameters& params, int index, std::string_view text, std::ostream& warnings) {
    const ParamRecord& record = params.records[index];
    const bool percent = record.hasFlag(Param::ParamFlag::Percent);
    std::string_view number = trimmed(text);
    if (percent && number.ends_with('%')) number.remove_suffix(1);
    const auto value = parseNumber(number);
    if (!value) badValue(record, text, percent ? "a number in percent" : "a number");
    params.setFloat(index, *value);
    warnIfChanged(warnings, record, *value, params.getFloat(index));
}

void setIntSlider(Param::Parameters& params, int index, std::string_view text, std::ostream& warnings) {
    const ParamRecord& record = params.records[index];
    const auto value = parseInteger(text);
    if (!value) badValue(record, text, "a whole number");
    // Narrowed to the stored width first, so that a huge number clamps rather than wraps.
    const long long narrowed = std::clamp<long long>(*value, std::numeric_limits<std::int32_t>::min(),
                                                     std::numeric_limits<std::int32_t>::max());
    params.setInt(static_cast<std::int32_t>(narrowed), index);
    warnIfChanged(warnings, record, static_cast<double>(*value), params.getInt(index));
}

void setCheckbox(Param::Parameters& params, int index, std::string_view text) {
    const std::string word = lowercase(trimmed(text));
    if (word == "on" || word == "true" || word == "1") {
        params.setBool(true, index);
    } else if (word == "off" || word == "false" || word == "0") {
        params.setBool(false, index);
    } else {
        badValue(params.records[index], text, "on or off");
    }
}

void setColor(Param::Parameters& params, int index, std::string_view text, std::ostream& warnings) {
    const ParamRecord& record = params.records[index];
    std::vector<double> rgb = numbersOf(record, text, 3, "r,g,b with each from 0 to 1");
    for (double& component : rgb) {
        const double clamped = std::clamp(component, 0.0, 1.0);
        warnIfChanged(warnings, record, component, clamped);
        component = clamped;
    }
    params.setColor({rgb[0], rgb[1], rgb[2]}, index);
}

// A point is kept as a fraction of the frame, which is how the user gives it. The unscaled flag only
// exempts it from resolution scaling, and the base list's scale is 1, so setPoint stores it as given.
void setPoint(Param::Parameters& params, int index, std::string_view text) {
    const std::vector<double> xy = numbersOf(params.records[index], text, 2, "x,y as fractions of the frame");
    params.setPoint({xy[0], xy[1]}, index);
}

}  // namespace

void setParameterFromText(Param::Parameters& params, int index, std::string_view text,
                          std::ostream& warnings) {
    const ParamRecord& record = params.records.at(static_cast<std::size_t>(index));
    switch (record.kind) {
        case ParamKind::IntSlider:
            return setIntSlider(params, index, text, warnings);
        case ParamKind::FloatSlider:
            return setFloatSlider(params, index, text, warnings);
        case ParamKind::Checkbox:
            return setCheckbox(params, index, text);
        case ParamKind::String:
            return params.setString(std::string(text), index);
        case ParamKind::Popup:
            return params.setInt(itemIndex(record, text), index);
        case ParamKind::StringPopup:
            return params.setString(record.items[itemIndex(record, text)], index);
        case ParamKind::Color:
            return setColor(params, index, text, warnings);
        case ParamKind::Point:
            return setPoint(params, index, text);
        case ParamKind::Layer:
            throw ToolError(ExitCode::Usage, inQuotes(record.label) +
                                                 " is a layer; give its image with --layer \"LABEL=FILE\"");
        default:
            throw ToolError(ExitCode::Usage, inQuotes(record.label) + " can't be set from the command line");
    }
}

}  // namespace Tw::Tools
