#include "host/param/ParamGroups.h"

namespace Tw::Host::Param {

std::string groupOf(const std::vector<ParamRecord>& records, int index) {
    // Walking back, each end passed is a group closed before the record; its start is not the record's.
    int closed = 0;
    for (int i = index - 1; i >= 0; --i) {
        if (records[i].kind == ParamKind::GroupEnd) {
            ++closed;
        } else if (records[i].kind == ParamKind::GroupStart) {
            if (closed == 0) return records[i].label;
            --closed;
        }
    }
    return {};
}

}  // namespace Tw::Host::Param
