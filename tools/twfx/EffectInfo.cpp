#include "tools/twfx/EffectInfo.h"

#include <algorithm>
#include <string>

#include "tools/common/ParameterListing.h"
#include "tools/twfx/EffectLookup.h"
#include "tools/twfx/Presets.h"

namespace Tw::Tools::Twfx {
namespace {

const char* inputsName(Plugins::EffectInputs inputs) {
    switch (inputs) {
        case Plugins::EffectInputs::Filter:
            return "filter";
        case Plugins::EffectInputs::Generator:
            return "generator";
        case Plugins::EffectInputs::Layers:
            return "layers";
    }
    return "";
}

std::string padded(std::string_view text, std::size_t width) {
    return std::string(text) + std::string(width - text.size() + 2, ' ');
}

}  // namespace

void listEffects(std::ostream& out) {
    const auto effects = Plugins::effectRegistry<StandaloneHost>();
    std::size_t displayWidth = std::string_view("EFFECT").size();
    std::size_t shortWidth = std::string_view("SHORT NAME").size();
    for (const EffectEntry& effect : effects) {
        displayWidth = std::max(displayWidth, std::string_view(effect.displayName).size());
        shortWidth = std::max(shortWidth, effect.shortName().size());
    }
    out << padded("EFFECT", displayWidth) << padded("SHORT NAME", shortWidth) << "INPUTS\n";
    for (const EffectEntry& effect : effects)
        out << padded(effect.displayName, displayWidth) << padded(effect.shortName(), shortWidth)
            << inputsName(effect.inputs) << "\n";
}

void describeEffect(const ParamsRequest& request, std::ostream& out) {
    const EffectEntry& effect = findEffect(request.effect);
    Host::Param::Parameters params;
    defineParameters(effect, params);
    out << effect.displayName << " (" << effect.shortName() << "), " << inputsName(effect.inputs)
        << "; parameters in host order:\n\n";
    writeParameterTable(out, params);
    if (request.presetToSave) savePreset(params, *request.presetToSave, effect.displayName);
}

}  // namespace Tw::Tools::Twfx
