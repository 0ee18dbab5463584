#include "tools/common/ParameterLabels.h"

#include <algorithm>
#include <span>
#include <string>
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

// Whether the innermost of `groups` are `wanted`, in order.
bool endsWithGroups(const std::vector<std::string>& groups, std::span<const std::string_view> wanted) {
    if (wanted.size() > groups.size()) return false;
    return std::equal(wanted.begin(), wanted.end(), groups.end() - static_cast<std::ptrdiff_t>(wanted.size()),
                      [](std::string_view a, const std::string& b) { return equalsIgnoringCase(a, b); });
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

std::string parameterKey(const Param::Parameters& params, int index) {
    std::string path;
    for (const std::string& group : Param::groupsOf(params.records, index))
        path += group + "/";
    return path + params.records[index].label;
}

int findParameter(const Param::Parameters& params, std::string_view key, std::string_view effectName) {
    std::vector<int> matches =
        recordsWhere(params, [&](int i) { return equalsIgnoringCase(params.records[i].label, key); });
    // Only a key that names no label as a whole is read as "Group/Label", so labels may hold a slash.
    if (matches.empty() && key.find('/') != std::string_view::npos) {
        const std::vector<std::string_view> path = splitAt(key, '/');
        const std::string_view label = path.back();
        const std::span<const std::string_view> groups(path.data(), path.size() - 1);
        matches = recordsWhere(params, [&](int i) {
            return equalsIgnoringCase(params.records[i].label, label) &&
                   endsWithGroups(Param::groupsOf(params.records, i), groups);
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
        choices.push_back(parameterKey(params, i));
    throw ToolError(ExitCode::UnknownName, quoted + " names " + std::to_string(matches.size()) +
                                               " parameters of " + effect + "; write one as " +
                                               joinedWithCommas(choices));
}

}  // namespace Tw::Tools
