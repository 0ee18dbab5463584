#include "tools/twfx/EffectLookup.h"

#include <string>
#include <vector>

#include "tools/common/ToolError.h"
#include "tools/common/UserText.h"

namespace Tw::Tools::Twfx {

const EffectEntry& findEffect(std::string_view name, std::span<const EffectEntry> effects) {
    std::vector<const EffectEntry*> matches;
    for (const EffectEntry& effect : effects) {
        if (equalsIgnoringCase(name, effect.displayName) || equalsIgnoringCase(name, effect.shortName())) {
            matches.push_back(&effect);
        }
    }
    if (matches.size() == 1) return *matches.front();
    const std::string quoted = inQuotes(name);
    if (matches.empty()) {
        throw ToolError(ExitCode::UnknownName, "unknown effect " + quoted + " (twfx list shows the effects)");
    }
    std::vector<std::string> names;
    for (const EffectEntry* effect : matches)
        names.emplace_back(effect->shortName());
    throw ToolError(ExitCode::UnknownName, quoted + " names " + std::to_string(matches.size()) +
                                               " effects: " + joinedWithCommas(names) +
                                               "; use one of these names");
}

void defineParameters(const EffectEntry& effect, Host::Param::Parameters& params) {
    effect.create()->defineParameters(params);
}

}  // namespace Tw::Tools::Twfx
