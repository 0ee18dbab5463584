#include "tools/twfx/Presets.h"

#include <filesystem>
#include <fstream>

#include "tools/common/PendingOutputFile.h"
#include "tools/common/ToolError.h"
#include "tools/common/UserText.h"

namespace Tw::Tools::Twfx {

void savePreset(const Param::Parameters& params, const std::string& path, const std::string& effectName) {
    checkOutputDirectory(path);
    PendingOutputFile file(path);
    params.dump(file.temporaryPath(), effectName.c_str(), TW_VERSION);
    std::error_code error;
    if (!std::filesystem::is_regular_file(file.temporaryPath(), error)) {
        throw ToolError(ExitCode::UnwritableOutput, "cannot write " + path);
    }
    file.commit();
}

void loadPreset(Param::Parameters& params, const std::string& path, const std::string& effectName,
                std::ostream& warnings) {
    std::ifstream file(path);
    std::error_code error;
    if (!file || std::filesystem::is_directory(path, error)) {
        throw ToolError(ExitCode::UnreadableInput, "cannot read preset " + path);
    }
    // The first line names the effect the preset was saved from: "Plugin Name: Balance".
    std::string firstLine;
    std::getline(file, firstLine);
    const std::size_t colon = firstLine.find(':');
    const std::string_view savedFrom = colon == std::string::npos
                                           ? std::string_view()
                                           : trimmed(std::string_view(firstLine).substr(colon + 1));
    if (savedFrom != effectName) {
        warnings << "twfx: warning: preset " << path << " is for " << inQuotes(savedFrom) << ", not "
                 << inQuotes(effectName) << "; only labels the two share take effect\n";
    }
    params.restore(path);
}

}  // namespace Tw::Tools::Twfx
