// Radii are given in full-resolution pixels; at a downsampled render they shrink with the frame.
#pragma once

namespace Tw::Plugins {

// The host's factor for one axis as effects use it: a factor that is not positive counts as 1.
inline double downsampleFactor(double factor) {
    return factor > 0 ? factor : 1.0;
}

}  // namespace Tw::Plugins
