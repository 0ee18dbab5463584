#include "tools/twfx/PresetText.h"

#include <optional>

#include "tools/common/ToolError.h"
#include "tools/common/UserText.h"

namespace Tw::Tools::Twfx {
namespace {

using Host::Param::ParamKind;

[[noreturn]] void notAPreset(const std::string& path, int line, const std::string& reason) {
    throw ToolError(ExitCode::UnreadableInput, path + ":" + std::to_string(line) + ": " + reason);
}

// Longer lines are no preset's, and a file without line ends (a device, an image given by mistake) must
// not be read whole to find out.
constexpr std::size_t kLongestLine = 65536;

// The next line without its end, and without a carriage return before it; nothing at the end of the file.
std::optional<std::string> nextLine(std::istream& in, const std::string& path, int number) {
    std::string line;
    for (int c = in.get(); c != std::char_traits<char>::eof(); c = in.get()) {
        if (c == '\n') break;
        if (line.size() == kLongestLine) {
            notAPreset(
                path, number,
                "not a preset: the line is longer than " + std::to_string(kLongestLine) + " characters");
        }
        line += static_cast<char>(c);
    }
    if (line.empty() && in.eof()) return std::nullopt;
    if (line.ends_with('\r')) line.pop_back();
    return line;
}

// A header line: its name, a colon and the text that follows, trimmed.
std::string headerValue(std::istream& in, const std::string& path, int number, std::string_view name) {
    const std::string line = nextLine(in, path, number).value_or("");
    const std::string_view text = trimmed(line);
    if (!text.starts_with(name) || !trimmed(text.substr(name.size())).starts_with(':')) {
        notAPreset(path, number,
                   "not a preset: line " + std::to_string(number) + " must be " +
                       inQuotes(std::string(name) + ": ..."));
    }
    return std::string(trimmed(trimmed(text.substr(name.size())).substr(1)));
}

// The text between the opening quote and its closing one, `\` taking the next character as it is;
// nothing when the quotes are missing or anything follows the closing one.
std::optional<std::string> unquoted(std::string_view value) {
    if (!value.starts_with('"')) return std::nullopt;
    std::string text;
    for (std::size_t i = 1; i < value.size(); ++i) {
        if (value[i] == '"') {
            if (i + 1 != value.size()) return std::nullopt;
            return text;
        }
        if (value[i] == '\\' && ++i == value.size()) return std::nullopt;
        text += value[i];
    }
    return std::nullopt;
}

// "0.2 0.4 0.6" as "0.2,0.4,0.6".
std::string withCommas(std::string_view value) {
    std::string joined;
    bool blank = false;
    for (const char c : value) {
        if (c == ' ' || c == '\t') {
            blank = true;
            continue;
        }
        if (blank && !joined.empty()) joined += ',';
        blank = false;
        joined += c;
    }
    return joined;
}

}  // namespace

PresetText readPresetText(std::istream& in, const std::string& path) {
    PresetText preset;
    preset.effectName = headerValue(in, path, 1, "Plugin Name");
    headerValue(in, path, 2, "Version Number");
    for (int number = 3;; ++number) {
        const std::optional<std::string> read = nextLine(in, path, number);
        if (!read) break;
        const std::string& line = *read;
        if (trimmed(line).empty()) continue;
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos) notAPreset(path, number, "expected " + inQuotes("LABEL: VALUE"));
        const std::string_view text(line);
        preset.lines.push_back({number, std::string(trimmed(text.substr(0, colon))),
                                std::string(trimmed(text.substr(colon + 1)))});
    }
    return preset;
}

std::string settingText(const Host::Param::ParamRecord& record, std::string_view value,
                        std::string_view origin) {
    switch (record.kind) {
        case ParamKind::String:
        case ParamKind::StringPopup: {
            const std::optional<std::string> text = unquoted(value);
            if (!text) {
                throw ToolError(ExitCode::BadValue, std::string(origin) + ": " + inQuotes(record.label) +
                                                        " takes text in double quotes, not " +
                                                        inQuotes(value));
            }
            return *text;
        }
        case ParamKind::Color:
        case ParamKind::Point:
            return withCommas(value);
        default:
            return std::string(value);
    }
}

}  // namespace Tw::Tools::Twfx
