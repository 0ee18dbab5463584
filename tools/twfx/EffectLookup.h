// Finding an effect of the registry by the name a user types.
#pragma once

#include <span>
#include <string_view>

#include "host/standalone/Host.h"
#include "plugins/EffectRegistry.h"

namespace Tw::Tools::Twfx {

using StandaloneHost = ::Tw::Host::Standalone::Host;
using EffectEntry = ::Tw::Plugins::EffectEntry<StandaloneHost>;

// What twfx renders: the bundle's effects and the whole skin retouch.
std::span<const EffectEntry> renderableEffects();

// The effect whose display name ("Balance RGB") or short name ("BalanceRGB") is `name`, in any case.
// Two entries may share a display name, so a name can match several; that is an error which lists their
// short names, as is a name that matches none (ExitCode::UnknownName both).
const EffectEntry& findEffect(std::string_view name,
                              std::span<const EffectEntry> effects = renderableEffects());

// Fills `params` with the effect's parameter list as the effect declares it, every value its default.
void defineParameters(const EffectEntry& effect, Host::Param::Parameters& params);

}  // namespace Tw::Tools::Twfx
