// Where a test hands an effect its further frame: to the first layer parameter that the effect reads at
// the test's settings, so that the frame shows wherever the settings let a layer show ("Blend" reads its
// one layer, "Presets" its "Key Source" first, "Color Presets" the layer of the preset it chooses).
#pragma once

#include <optional>
#include <span>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/standalone/Host.h"
#include "image/graph/LayerRequest.h"
#include "plugins/EffectRegistry.h"
#include "tools/common/ParameterLabels.h"
#include "tools/common/ParameterValues.h"

namespace Tw::Test {

namespace Param = ::Tw::Host::Param;

// Sets each "LABEL=VALUE" as a user types it. A value outside its range is a mistake of the declaration,
// not a user's, and throws.
inline void applySettings(Param::Parameters& params, std::span<const char* const> settings,
                          std::string_view effectName) {
    for (std::string_view setting : settings) {
        const std::size_t equals = setting.find('=');
        const int index = Tools::findParameter(params, setting.substr(0, equals), effectName);
        std::ostringstream warnings;
        Tools::setParameterFromText(params, index, setting.substr(equals + 1), warnings);
        if (!warnings.str().empty()) throw std::invalid_argument(warnings.str());
    }
}

struct TestLayer {
    int ordinal = 0;  // among the layer parameters, from 1
    std::string key;  // as a user names the parameter: "Preset 3/Layer"
};

// The first layer parameter that `effect` reads at the values of `params`; none for an effect that reads
// no further layer there.
inline std::optional<TestLayer> firstReadLayer(Host::Standalone::Host& effect, Param::Parameters& params) {
    const Image::PixelRect frame{0, 0, 64, 48};
    std::vector<Image::LayerRequest> requests;
    effect.inputRect(params, frame, frame, requests);
    if (requests.empty()) return std::nullopt;
    const int ordinal = requests.front().ordinal;
    int seen = 0;
    for (int index = 0; index < static_cast<int>(params.records.size()); ++index) {
        if (params.records[index].kind == Param::ParamKind::Layer && ++seen == ordinal)
            return TestLayer{ordinal, Tools::parameterKey(params, index)};
    }
    return std::nullopt;
}

// The same for a registry entry at `settings`.
inline std::optional<TestLayer> firstReadLayer(const Plugins::EffectEntry<Host::Standalone::Host>& entry,
                                               std::span<const char* const> settings) {
    const auto effect = entry.create();
    Param::Parameters params;
    effect->defineParameters(params);
    applySettings(params, settings, entry.displayName);
    return firstReadLayer(*effect, params);
}

}  // namespace Tw::Test
