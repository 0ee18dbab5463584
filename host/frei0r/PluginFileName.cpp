#include "host/frei0r/PluginFileName.h"

#include <cctype>
#include <vector>

namespace Tw::Host::Frei0r {
namespace {

bool isUpper(char c) {
    return std::isupper(static_cast<unsigned char>(c)) != 0;
}
bool isLower(char c) {
    return std::islower(static_cast<unsigned char>(c)) != 0;
}
bool isLetterOrDigit(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0;
}

// The letters and digits of `text` in runs: a run ends at every other character.
std::vector<std::string_view> displayWords(std::string_view text) {
    std::vector<std::string_view> words;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i < text.size() && isLetterOrDigit(text[i])) continue;
        if (i > start) words.push_back(text.substr(start, i - start));
        start = i + 1;
    }
    return words;
}

// Word starts within a capitalised name: every capital after a small letter or a digit, and the last
// capital of a run when a small letter follows it.
std::vector<std::string_view> capitalWords(std::string_view name) {
    std::vector<std::string_view> words;
    std::size_t start = 0;
    for (std::size_t i = 1; i < name.size(); ++i) {
        const bool afterSmall = !isUpper(name[i - 1]);
        const bool endsCapitalRun = i + 1 < name.size() && isLower(name[i + 1]);
        if (isUpper(name[i]) && (afterSmall || endsCapitalRun)) {
            words.push_back(name.substr(start, i - start));
            start = i;
        }
    }
    if (start < name.size()) words.push_back(name.substr(start));
    return words;
}

}  // namespace

std::string pluginFileName(std::string_view entryName, std::string_view displayName) {
    std::string_view name = entryName;
    if (name.ends_with("Entry")) name.remove_suffix(std::string_view("Entry").size());

    std::vector<std::string_view> words = displayWords(displayName);
    std::string spelled;
    for (const std::string_view word : words)
        spelled += word;
    if (spelled != name) words = capitalWords(name);

    std::string fileName = "tw";
    for (const std::string_view word : words) {
        fileName += '_';
        for (const char c : word)
            fileName += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return fileName;
}

}  // namespace Tw::Host::Frei0r
