#include "tools/common/ParameterLabels.h"

#include <algorithm>
#include <vector>

#include "host/param/ParamGroups.h"

#include "tools/common/ToolError.h"
#include "tools/common/UserText.h"

namespace Tw::Tools {
namespace {

using Param::ParamKind;

template <class Accept>
std::vector<int> recordsWhere(const Param::Parameters& params, Accept accept) {
    std::vector<int> indices;
    for (int i = 0; i < static_cast<int>(params.records.size()); ++i) {
        if (isValueRecord(params.records[i]) && accept(i)) indices.push_back(i);
    }
    return indices;
}

}  // namespace

bool isValueRecord(const Param::ParamRecord& record) {
    switch (record.kind) {
        case ParamKind::None:
        case ParamKind::Unused:
        case ParamKind::GroupStart:
        case ParamKind::GroupEnd:
            return false;
        default:
            return true;
    }
}

int findParameter(const Param::Parameters& params, std::string_view key, std::string_view effectName) {
    std::vector<int> matches =
        recordsWhere(params, [&](int i) { return equalsIgnoringCase(params.records[i].label, key); });
    // Only a key that names no label as a whole is read as "Group/Label", so labels may hold a slash.
    const std::size_t slash = key.find('/');
    if (matches.empty() && slash != std::string_view::npos) {
        const std::string_view group = key.substr(0, slash);
        const std::string_view label = key.substr(slash + 1);
        matches = recordsWhere(params, [&](int i) {
            return equalsIgnoringCase(params.records[i].label, label) &&
                   equalsIgnoringCase(Param::groupOf(params.records, i), group);
        });
    }
    // A label that stands outside every group as well as inside some is the bare one's.
    if (matches.size() > 1) {
        const auto outside = [&](int i) { return Param::groupOf(params.records, i).empty(); };
        if (std::count_if(matches.begin(), matches.end(), outside) == 1)
            return *std::find_if(matches.begin(), matches.end(), outside);
    }
    if (matches.size() == 1) return matches.front();

    const std::string quoted = inQuotes(key);
    const std::string effect = inQuotes(effectName);
    if (matches.empty()) {
        throw ToolError(ExitCode::UnknownName,
                        effect + " has no parameter " + quoted + " (the params command lists them)");
    }
    std::vector<std::string> choices;
    for (const int i : matches)
        choices.push_back(Param::groupOf(params.records, i) + "/" + params.records[i].label);
    throw ToolError(ExitCode::UnknownName, quoted + " names " + std::to_string(matches.size()) +
                                               " parameters of " + effect + "; write one as " +
                                               joinedWithCommas(choices));
}

}  // namespace Tw::Tools
