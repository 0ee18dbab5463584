#include "host/param/ParamGroups.h"

#include <algorithm>

namespace Tw::Host::Param {

std::vector<std::string> groupsOf(const std::vector<ParamRecord>& records, int index) {
    // Walking back, each end passed is a group closed before the record; its start is not the record's.
    std::vector<std::string> groups;
    int closed = 0;
    for (int i = index - 1; i >= 0; --i) {
        if (records[i].kind == ParamKind::GroupEnd) {
            ++closed;
        } else if (records[i].kind == ParamKind::GroupStart) {
            if (closed == 0) {
                groups.push_back(records[i].label);
            } else {
                --closed;
            }
        }
    }
    std::reverse(groups.begin(), groups.end());
    return groups;
}

std::string groupOf(const std::vector<ParamRecord>& records, int index) {
    const std::vector<std::string> groups = groupsOf(records, index);
    return groups.empty() ? std::string() : groups.back();
}

}  // namespace Tw::Host::Param
