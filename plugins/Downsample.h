// Radii are given in full-resolution pixels; at a downsampled render they shrink with the frame.
#pragma once

namespace Tw::Plugins {

// The host's factor for one axis as effects use it: a factor that is not positive, or not a downsampling
// at all, counts as 1, so that no radius grows beyond its full-resolution value.
inline double downsampleFactor(double factor) {
    return factor > 0 && factor <= 1 ? factor : 1.0;
}

}  // namespace Tw::Plugins
