#include <cctype>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <span>
#include <string>

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

// Numbers separated by white space, stored in order until one fails to parse.
void readNumbers(const char* text, std::span<double> numbers) {
    for (double& number : numbers) {
        char* end;
        const double parsed = std::strtod(text, &end);
        if (end == text) return;
        number = parsed;
        text = end;
    }
}

void storeText(ParamRecord& record, const char* value) {
    ParamValue& target = record.value;
    switch (record.kind) {
        case ParamKind::IntSlider:
        case ParamKind::Popup:
        case ParamKind::Layer:
            target.setInt(std::atoi(value));
            break;
        case ParamKind::FloatSlider:
            target.setFloat(std::atof(value));
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
