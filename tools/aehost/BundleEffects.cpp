#include "tools/aehost/BundleEffects.h"

#include <algorithm>

#include "host/standalone/Host.h"
#include "plugins/EffectRegistry.h"
#include "tools/common/ToolError.h"
#include "tools/common/UserText.h"

namespace Tw::Tools::AeHost {
std::string_view shortNameOf(std::string_view entryName) {
    constexpr std::string_view kSuffix = "Entry";
    return entryName.ends_with(kSuffix) ? entryName.substr(0, entryName.size() - kSuffix.size()) : entryName;
}

std::vector<BundleEffect> effectsOf(const BundleLibrary& bundle) {
    const auto registry = Plugins::effectRegistry<Host::Standalone::Host>();
    std::vector<BundleEffect> effects;
    for (const std::string& name : bundle.exportedFunctions()) {
        BundleEffect& effect = effects.emplace_back(BundleEffect{name, {}});
        for (const auto& known : registry) {
            if (name == known.entryName) effect.displayName = known.displayName;
        }
    }
    std::sort(effects.begin(), effects.end(),
              [](const BundleEffect& a, const BundleEffect& b) { return a.entryName < b.entryName; });
    return effects;
}

const BundleEffect& findEffect(std::string_view name, const std::vector<BundleEffect>& effects) {
    std::vector<const BundleEffect*> matches;
    for (const BundleEffect& effect : effects) {
        if (equalsIgnoringCase(name, effect.entryName) ||
            equalsIgnoringCase(name, shortNameOf(effect.entryName)))
            return effect;
        if (!effect.displayName.empty() && equalsIgnoringCase(name, effect.displayName))
            matches.push_back(&effect);
    }
    if (matches.size() == 1) return *matches.front();
    const std::string quoted = inQuotes(name);
    if (matches.empty()) {
        throw ToolError(ExitCode::UnknownName,
                        "the bundle has no effect " + quoted + " (aehost list BUNDLE shows its effects)");
    }
    std::vector<std::string> names;
    for (const BundleEffect* effect : matches)
        names.emplace_back(effect->entryName);
    throw ToolError(ExitCode::UnknownName, quoted + " names " + std::to_string(matches.size()) +
                                               " effects: " + joinedWithCommas(names) +
                                               "; use one of these entry names");
}

}  // namespace Tw::Tools::AeHost
