#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <limits>
#include <span>
#include <string>
#include <string_view>

#include "host/param/Parameters.h"

namespace Tw::Host::Param {

namespace {

// Lines are read into fixed buffers: a part longer than 255 characters fails the stream, which
// ends the reading and keeps what came before.
constexpr std::streamsize lineBufferSize = 256;

bool isSpace(char c) {
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

void stripTrailingSpace(char* text) {
    std::size_t length = std::strlen(text);
    while (length > 0 && isSpace(text[length - 1]))
        text[--length] = '\0';
}

const char* skipLeadingSpace(const char* text) {
    while (isSpace(*text))
        ++text;
    return text;
}

// The inverse of the writer's quoting; anything without an opening quote reads as empty.
std::string unquote(const char* value) {
    std::string text;
    if (*value != '"') return text;
    for (const char* c = value + 1; *c != '\0' && *c != '"'; ++c) {
        if (*c == '\\') {
            ++c;  // the escaped character is taken as it is
            if (*c == '\0') break;
        }
        text += *c;
    }
    return text;
}

// A leading plus, which the file's writer never puts but a person may; a plus before a minus stays, so
// that it reads as no number.
const char* skipPlus(const char* text) {
    return text[0] == '+' && text[1] != '-' ? text + 1 : text;
}

// The integer `text` starts with, limited to the 32-bit range so that no text overflows it; 0 when it
// starts with none. What follows the number is not looked at.
std::int32_t leadingInteger(const char* text) {
    using Limits = std::numeric_limits<std::int32_t>;
    text = skipPlus(text);
    std::int64_t value = 0;
    const auto error = std::from_chars(text, text + std::strlen(text), value).ec;
    if (error == std::errc::result_out_of_range) return text[0] == '-' ? Limits::min() : Limits::max();
    if (error != std::errc()) return 0;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

// The decimal number `text` starts with, and where it ends; null when it starts with none. A number
// beyond the range of a double reads as an infinity, or as zero when its exponent is that far below.
const char* leadingNumber(const char* text, double& number) {
    text = skipPlus(text);
    const auto [end, error] = std::from_chars(text, text + std::strlen(text), number);
    if (error == std::errc::result_out_of_range) {
        const std::string_view written(text, static_cast<std::size_t>(end - text));
        const bool tiny =
            written.find("e-") != std::string_view::npos || written.find("E-") != std::string_view::npos;
        number = std::copysign(tiny ? 0.0 : HUGE_VAL, text[0] == '-' ? -1.0 : 1.0);
        return end;
    }
    return error == std::errc() ? end : nullptr;
}

// Numbers separated by white space, stored in order until one fails to parse.
void readNumbers(const char* text, std::span<double> numbers) {
    for (double& number : numbers) {
        double parsed;
        const char* end = leadingNumber(skipLeadingSpace(text), parsed);
        if (!end) return;
        number = parsed;
        text = end;
    }
}

// A number alone, as a float slider holds it; 0 when the text starts with none.
double leadingFloat(const char* text) {
    double number = 0;
    return leadingNumber(text, number) ? number : 0.0;
}

void storeText(ParamRecord& record, const char* value) {
    ParamValue& target = record.value;
    switch (record.kind) {
        case ParamKind::IntSlider:
        case ParamKind::Popup:
        case ParamKind::Layer:
            target.setInt(leadingInteger(value));
            break;
        case ParamKind::FloatSlider:
            target.setFloat(leadingFloat(value));
            break;
        case ParamKind::Checkbox:
            target.setBool(std::strcmp(value, "true") == 0);
            break;
        case ParamKind::String:
        case ParamKind::StringPopup:
            target.text = unquote(value);
            break;
        case ParamKind::Color:
            readNumbers(value, std::span(target.numbers).first<3>());
            break;
        case ParamKind::Point:
            readNumbers(value, std::span(target.numbers).first<2>());
            break;
        default:  // groups and kinds with no value
            break;
    }
}

}  // namespace

void Parameters::restore(const std::filesystem::path& path) {
    std::ifstream in(path);
    char key[lineBufferSize];
    char value[lineBufferSize];
    // The plug-in name and version lines only identify the file.
    for (int headerLine = 0; headerLine < 2; ++headerLine) {
        in.getline(key, lineBufferSize, ':');
        in.getline(value, lineBufferSize);
    }
    reset();
    while (in.getline(key, lineBufferSize, ':') && in.getline(value, lineBufferSize)) {
        stripTrailingSpace(key);
        stripTrailingSpace(value);
        const char* text = skipLeadingSpace(value);
        for (ParamRecord& record : records) {
            if (std::strcmp(record.label.c_str(), key) == 0) storeText(record, text);
        }
    }
}

}  // namespace Tw::Host::Param
