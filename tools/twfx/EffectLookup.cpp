#include "tools/twfx/EffectLookup.h"

#include <string>
#include <vector>

#include "tools/common/ToolError.h"
#include "tools/common/UserText.h"
#include "tools/twfx/SkinRetouchEntry.h"

namespace Tw::Tools::Twfx {

std::span<const EffectEntry> renderableEffects() {
    static const std::vector<EffectEntry> effects = [] {
        const auto bundle = Plugins::effectRegistry<StandaloneHost>();
        std::vector<EffectEntry> all(bundle.begin(), bundle.end());
        all.push_back(skinRetouchEntry());
        return all;
    }();
    return effects;
}

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
