#include <fstream>
#include <ostream>
#include <string>

#include "host/param/Parameters.h"

namespace Tw::Host::Param {

namespace {

// A null text fails the stream, so that nothing after it reaches the file.
void writeHeaderLine(std::ostream& out, const char* name, const char* text) {
    out << name << ": ";
    if (text == nullptr) {
        out.setstate(std::ios::badbit);
        return;
    }
    out << text << '\n';
}

// Quotes and backslashes are escaped so that restore can find the closing quote.
void writeQuoted(std::ostream& out, const std::string& text) {
    out << '"';
    for (char c : text) {
        if (c == '"' || c == '\\') out << '\\';
        out << c;
    }
    out << '"';
}

bool isWritten(const ParamRecord& record) {
    const auto kind = static_cast<std::int32_t>(record.kind);
    const bool hasTextForm = kind >= static_cast<std::int32_t>(ParamKind::IntSlider) &&
                             kind <= static_cast<std::int32_t>(ParamKind::Layer);
    return hasTextForm && !record.hasFlag(ParamFlag::NotInTextFile);
}

// Colours and points end each number with a blank, the last one included.
void writeValue(std::ostream& out, const ParamRecord& record) {
    const ParamValue& value = record.value;
    switch (record.kind) {
        case ParamKind::IntSlider:
        case ParamKind::Popup:
        case ParamKind::Layer:
            out << value.asInt();
            break;
        case ParamKind::FloatSlider:
            out << value.asFloat();
            break;
        case ParamKind::Checkbox:
            out << (value.asBool() ? "true" : "false");
            break;
        case ParamKind::String:
        case ParamKind::StringPopup:
            writeQuoted(out, value.text);
            break;
        case ParamKind::Color:
            out << value.numbers[0] << ' ' << value.numbers[1] << ' ' << value.numbers[2] << ' ';
            break;
        case ParamKind::Point:
            out << value.numbers[0] << ' ' << value.numbers[1] << ' ';
            break;
        default:  // group start and end: the label alone
            break;
    }
}

}  // namespace

void Parameters::dump(const std::filesystem::path& path, const char* pluginName, const char* version) const {
    std::ofstream out(path, std::ios::out | std::ios::trunc);
    writeHeaderLine(out, "Plugin Name", pluginName);
    writeHeaderLine(out, "Version Number", version);
    for (const ParamRecord& record : records) {
        if (!isWritten(record)) continue;
        out << record.label << ": ";
        writeValue(out, record);
        out << '\n';
    }
}

}  // namespace Tw::Host::Param
