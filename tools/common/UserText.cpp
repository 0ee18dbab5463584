#include "tools/common/UserText.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>

namespace Tw::Tools {
namespace {

bool isBlank(char c) {
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

// from_chars takes no leading plus, though people write one; "+-1" stays wrong.
std::string_view withoutPlus(std::string_view text) {
    return text.starts_with('+') && !text.starts_with("+-") ? text.substr(1) : text;
}

template <class Number>
std::optional<Number> parseEntireText(std::string_view text) {
    text = withoutPlus(trimmed(text));
    Number value{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || error != std::errc() || stop != end) return std::nullopt;
    return value;
}

}  // namespace

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string lowercase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return lowercase(a) == lowercase(b);
}

std::optional<double> parseNumber(std::string_view text) {
    const auto value = parseEntireText<double>(text);
    if (!value || !std::isfinite(*value)) return std::nullopt;
    return value;
}

std::optional<long long> parseInteger(std::string_view text) {
    return parseEntireText<long long>(text);
}

std::vector<std::string_view> splitAt(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.push_back(trimmed(text.substr(0, end)));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

std::vector<std::string_view> splitAtCommas(std::string_view text) {
    return splitAt(text, ',');
}

std::string joinedWithCommas(const std::vector<std::string>& texts) {
    std::string joined;
    for (const std::string& text : texts)
        joined.append(joined.empty() ? "" : ", ").append(text);
    return joined;
}

std::string inQuotes(std::string_view text) {
    return std::string("\"").append(text).append("\"");
}

std::string formatNumber(double value) {
    char digits[32];
    const auto result = std::to_chars(digits, digits + sizeof digits, value);
    return std::string(digits, result.ptr);
}

}  // namespace Tw::Tools
