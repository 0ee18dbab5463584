// The host's 16.16 fixed-point numbers, in which it holds angles and points.
#pragma once

#include "host/ae/sdk/AeSdk.h"

namespace Tw::Host::AE {

inline constexpr double kFixedOne = 65536.0;

// Cut toward zero, as the host's own conversion does.
inline PF_Fixed toFixed(double value) {
    return static_cast<PF_Fixed>(value * kFixedOne);
}

inline double fromFixed(PF_Fixed value) {
    return value / kFixedOne;
}

}  // namespace Tw::Host::AE
