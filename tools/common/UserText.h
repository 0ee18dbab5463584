// Numbers and words as a user types and reads them on the command line: surrounding blanks are ignored,
// the whole text must be the number, and names compare without regard to case.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tw::Tools {

std::string_view trimmed(std::string_view text);
std::string lowercase(std::string_view text);
bool equalsIgnoringCase(std::string_view a, std::string_view b);

// A finite decimal number ("0.5", "-2", "1e3", "+4"); nothing for anything else, "nan" and "inf" included.
std::optional<double> parseNumber(std::string_view text);
// A whole number in decimal; "2.0" is not one.
std::optional<long long> parseInteger(std::string_view text);
// The parts of "a,b,c" between commas, each trimmed.
std::vector<std::string_view> splitAtCommas(std::string_view text);
// The same at any separator.
std::vector<std::string_view> splitAt(std::string_view text, char separator);

// "a, b, c": how messages and listings name several things.
std::string joinedWithCommas(const std::vector<std::string>& texts);

// `text` in double quotes, as messages cite what a user typed.
std::string inQuotes(std::string_view text);

// The shortest text that reads back as `value` ("0.5", "100", "1e-07").
std::string formatNumber(double value);

}  // namespace Tw::Tools
