// A preset as text: the parameter list's text file, read line by line so that every line can be checked
// and named in a message. The file begins with two header lines, "Plugin Name: EFFECT" and
// "Version Number: VERSION"; each further line is "LABEL: VALUE", with the value as the list writes it:
// numbers in the record's own units, checkboxes true or false, text in double quotes with `"` and `\`
// escaped by a `\`, colours and points as numbers separated by blanks. Blank lines are ignored, and so
// is a carriage return before a line's end; a line of more than 65536 characters is refused.
#pragma once

#include <istream>
#include <string>
#include <string_view>
#include <vector>

#include "host/param/ParamRecord.h"

namespace Tw::Tools::Twfx {

struct PresetLine {
    int number = 0;  // from 1, as an editor counts
    std::string label;
    std::string value;
};

struct PresetText {
    std::string effectName;  // of the "Plugin Name" line
    std::vector<PresetLine> lines;
};

// Throws ToolError with ExitCode::UnreadableInput, naming `path` and the line, for a file without the
// two header lines, with a line that has no colon or with one too long.
PresetText readPresetText(std::istream& in, const std::string& path);

// The value of a line as --set takes it for `record`: text without its quotes and escapes, the numbers
// of colours and points separated by commas, anything else as written. Throws ToolError with
// ExitCode::BadValue, headed by `origin`, for text that is not in quotes.
std::string settingText(const Host::Param::ParamRecord& record, std::string_view value,
                        std::string_view origin);

}  // namespace Tw::Tools::Twfx
