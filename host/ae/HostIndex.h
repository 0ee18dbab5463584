// Where a record of an effect's list sits among the host's parameters. The host's parameter 0 is the
// effect's own layer; a string popup takes two host parameters (its stored text, then the popup), and a
// record without a control takes none unless it is supervised.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "host/param/ParamRecord.h"

namespace Tw::Host::AE {

// Host parameters a record takes.
inline int32_t hostParameterCount(const Param::ParamRecord& record) {
    using Param::ParamKind;
    switch (record.kind) {
        case ParamKind::StringPopup:
            return 2;
        case ParamKind::None:
        case ParamKind::Unused:
            return record.hasFlag(Param::ParamFlag::Supervised) ? 1 : 0;
        default:
            return 1;
    }
}

// The host index of list index `index`: a string popup is reached at its popup, one past its text.
// Indices past the list count one host parameter each.
inline int32_t hostIndexOf(const std::vector<Param::ParamRecord>& records, int index) {
    int32_t hostIndex = 1;
    for (int i = 0; i < index; ++i) {
        const auto position = static_cast<std::size_t>(i);
        hostIndex += position < records.size() ? hostParameterCount(records[position]) : 1;
    }
    const auto position = static_cast<std::size_t>(index);
    if (index >= 0 && position < records.size() && records[position].kind == Param::ParamKind::StringPopup)
        ++hostIndex;
    return hostIndex;
}

// The list record that host parameter `hostIndex` belongs to, a string popup's text included: the
// inverse of hostIndexOf.
inline int listIndexOf(const std::vector<Param::ParamRecord>& records, int32_t hostIndex) {
    const int count = static_cast<int>(records.size());
    int32_t first = 1;  // the first host index of record `index`
    int index = 0;
    for (; index < count; ++index) {
        const int32_t width = hostParameterCount(records[index]);
        if (hostIndex < first + width) return index;
        first += width;
    }
    return index + (hostIndex - first);
}

}  // namespace Tw::Host::AE
