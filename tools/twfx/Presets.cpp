#include "tools/twfx/Presets.h"

#include <filesystem>
#include <fstream>
#include <vector>

#include "tools/common/ParameterLabels.h"
#include "tools/common/ParameterValues.h"
#include "tools/common/PendingOutputFile.h"
#include "tools/common/ToolError.h"
#include "tools/common/UserText.h"
#include "tools/twfx/PresetText.h"

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

namespace {

// The records that a line's label names: every record with that label exactly, as the list itself reads
// the file, or else the one that --set would take for it.
std::vector<int> recordsNamed(const Param::Parameters& params, const std::string& label,
                              const std::string& effectName, const std::string& where) {
    std::vector<int> named;
    for (int i = 0; i < static_cast<int>(params.records.size()); ++i) {
        if (params.records[i].label == label) named.push_back(i);
    }
    if (!named.empty()) return named;
    try {
        return {findParameter(params, label, effectName)};
    } catch (const ToolError& error) {
        throw ToolError(error.code(), where + ": " + error.what());
    }
}

// Sets what one line says; every error names the line. Group lines hold the label alone. A layer's
// number chooses a layer of a host's project; here a layer's image comes from --layer, so the number is
// only checked.
void applyLine(Param::Parameters& params, const PresetLine& line, const std::string& where,
               const std::string& effectName, std::ostream& warnings) {
    for (const int index : recordsNamed(params, line.label, effectName, where)) {
        const Param::ParamRecord& record = params.records[index];
        if (record.kind == Param::ParamKind::Layer) {
            if (!parseInteger(line.value)) {
                throw ToolError(ExitCode::BadValue, where + ": " + inQuotes(record.label) +
                                                        " takes a whole number, not " + inQuotes(line.value));
            }
        } else if (isValueRecord(record)) {
            setParameterFromText(params, index, settingText(record, line.value, where), warnings, where);
        }
    }
}

}  // namespace

void applyPreset(Param::Parameters& params, std::istream& in, const std::string& path,
                 const std::string& effectName, std::ostream& warnings) {
    const PresetText preset = readPresetText(in, path);
    const bool forThisEffect = preset.effectName == effectName;
    if (!forThisEffect) {
        warnings << "twfx: warning: preset " << path << " is for " << inQuotes(preset.effectName) << ", not "
                 << inQuotes(effectName) << "; only labels the two share take effect\n";
    }
    params.reset();
    for (const PresetLine& line : preset.lines) {
        try {
            applyLine(params, line, path + ":" + std::to_string(line.number), effectName, warnings);
        } catch (const ToolError& error) {
            // Labels of another effect are expected in its preset; every other fault stops the run.
            if (forThisEffect || error.code() != ExitCode::UnknownName) throw;
            warnings << "twfx: warning: " << error.what() << "; skipped\n";
        }
    }
}

void loadPreset(Param::Parameters& params, const std::string& path, const std::string& effectName,
                std::ostream& warnings) {
    std::ifstream file(path);
    std::error_code error;
    if (!file || std::filesystem::is_directory(path, error)) {
        throw ToolError(ExitCode::UnreadableInput, "cannot read preset " + path);
    }
    applyPreset(params, file, path, effectName, warnings);
}

}  // namespace Tw::Tools::Twfx
