#include "tools/twfx/SkinRetouchEntry.h"

#include <memory>

#include "plugins/SkinRetouch.h"

namespace Tw::Tools::Twfx {

const EffectEntry& skinRetouchEntry() {
    using Retouch = Plugins::SkinRetouch<StandaloneHost>;
    static const EffectEntry entry{
        "SkinRetouchEntry",
        Retouch::displayName,
        Retouch::inputs,
        []() -> std::unique_ptr<StandaloneHost> { return std::make_unique<Retouch>(); },
        Retouch::busySettings,
        Retouch::neutralSettings,
        Plugins::mixerLayersOf<Retouch>(),
        Plugins::hasNeutralSettingsOf<Retouch>()};
    return entry;
}

}  // namespace Tw::Tools::Twfx
