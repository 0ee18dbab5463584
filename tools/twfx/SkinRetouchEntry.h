// The whole skin retouch ("Smoothing" into "Presets") as one entry that twfx renders like an effect:
// `twfx retouch` and `twfx params SkinRetouch`. It is no effect of the bundle, so `twfx list` leaves it out.
#pragma once

#include "tools/twfx/EffectLookup.h"

namespace Tw::Tools::Twfx {

const EffectEntry& skinRetouchEntry();

}  // namespace Tw::Tools::Twfx
