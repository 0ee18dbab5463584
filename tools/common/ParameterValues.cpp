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

// Sets one record from one text, and says what is wrong with the text, naming where it came from.
class TextSetter {
public:
    TextSetter(Param::Parameters& params, int index, std::string_view text, std::ostream& warnings,
               std::string_view origin)
        : params_(params),
          index_(index),
          record_(params.records.at(static_cast<std::size_t>(index))),
          text_(text),
          warnings_(warnings),
          prefix_(origin.empty() ? std::string() : std::string(origin) + ": ") {}

    void set() {
        switch (record_.kind) {
            case ParamKind::IntSlider:
                return setIntSlider();
            case ParamKind::FloatSlider:
                return setFloatSlider();
            case ParamKind::Checkbox:
                return setCheckbox();
            case ParamKind::String:
                return params_.setString(std::string(text_), index_);
            case ParamKind::Popup:
                return params_.setInt(itemIndex(), index_);
            case ParamKind::StringPopup:
                return params_.setString(record_.items[itemIndex()], index_);
            case ParamKind::Color:
                return setColor();
            case ParamKind::Point:
                return setPoint();
            case ParamKind::Layer:
                throw ToolError(ExitCode::Usage,
                                prefix_ + inQuotes(record_.label) +
                                    " is a layer; give its image with --layer \"LABEL=FILE\"");
            default:
                throw ToolError(ExitCode::Usage,
                                prefix_ + inQuotes(record_.label) + " can't be set from the command line");
        }
    }

private:
    [[noreturn]] void badValue(std::string_view expected) const {
        throw ToolError(ExitCode::BadValue, prefix_ + inQuotes(record_.label) + " takes " +
                                                std::string(expected) + ", not " + inQuotes(text_));
    }

    void warnIfChanged(double asked, double set) const {
        if (asked == set) return;
        warnings_ << "warning: " << prefix_ << record_.label << " " << formatNumber(asked)
                  << " is outside its range; using " << formatNumber(set) << "\n";
    }

    // The numbers of "a,b,c", exactly `count` of them.
    std::vector<double> numbers(std::size_t count, std::string_view expected) const {
        const auto parts = splitAtCommas(text_);
        if (parts.size() != count) badValue(expected);
        std::vector<double> numbers;
        for (const std::string_view part : parts) {
            const auto number = parseNumber(part);
            if (!number) badValue(expected);
            numbers.push_back(*number);
        }
        return numbers;
    }

    // The index of the item that the text names, by its name in any case or by its 0-based number.
    int itemIndex() const {
        const auto& items = record_.items;
        const auto named = std::find_if(items.begin(), items.end(), [&](const std::string& item) {
            return equalsIgnoringCase(item, trimmed(text_));
        });
        if (named != items.end()) return static_cast<int>(named - items.begin());
        const auto number = parseInteger(text_);
        if (number && *number >= 0 && *number < static_cast<long long>(items.size())) {
            return static_cast<int>(*number);
        }
        badValue("one of " + joinedWithCommas(items) + " (or its number from 0)");
    }

    void setFloatSlider() {
        const bool percent = record_.hasFlag(Param::ParamFlag::Percent);
        std::string_view number = trimmed(text_);
        if (percent && number.ends_with('%')) number.remove_suffix(1);
        const auto value = parseNumber(number);
        if (!value) badValue(percent ? "a number in percent" : "a number");
        params_.setFloat(index_, *value);
        warnIfChanged(*value, params_.getFloat(index_));
    }

    void setIntSlider() {
        const auto value = parseInteger(text_);
        if (!value) badValue("a whole number");
        // Narrowed to the stored width first, so that a huge number clamps rather than wraps.
        const long long narrowed = std::clamp<long long>(*value, std::numeric_limits<std::int32_t>::min(),
                                                         std::numeric_limits<std::int32_t>::max());
        params_.setInt(static_cast<std::int32_t>(narrowed), index_);
        warnIfChanged(static_cast<double>(*value), params_.getInt(index_));
    }

    void setCheckbox() {
        const std::string word = lowercase(trimmed(text_));
        if (word == "on" || word == "true" || word == "1") {
            params_.setBool(true, index_);
        } else if (word == "off" || word == "false" || word == "0") {
            params_.setBool(false, index_);
        } else {
            badValue("on or off");
        }
    }

    void setColor() {
        std::vector<double> rgb = numbers(3, "r,g,b with each from 0 to 1");
        for (double& component : rgb) {
            const double clamped = std::clamp(component, 0.0, 1.0);
            warnIfChanged(component, clamped);
            component = clamped;
        }
        params_.setColor({rgb[0], rgb[1], rgb[2]}, index_);
    }

    // A point is kept as a fraction of the frame, which is how the user gives it. The unscaled flag only
    // exempts it from resolution scaling, and the base list's scale is 1, so setPoint stores it as given.
    void setPoint() {
        const std::vector<double> xy = numbers(2, "x,y as fractions of the frame");
        params_.setPoint({xy[0], xy[1]}, index_);
    }

    Param::Parameters& params_;
    int index_;
    const ParamRecord& record_;
    std::string_view text_;
    std::ostream& warnings_;
    std::string prefix_;
};

}  // namespace

void setParameterFromText(Param::Parameters& params, int index, std::string_view text, std::ostream& warnings,
                          std::string_view origin) {
    TextSetter(params, index, text, warnings, origin).set();
}

}  // namespace Tw::Tools
