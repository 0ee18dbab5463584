// The pre-render data: one record per layer checked out before a smart render, the effect's own layer
// first. It is the only thing that survives from the pre-render command to the render; the host keeps
// the flat array and hands it back.
#pragma once

#include <cstdint>

namespace Tw::Host::AE {

struct CheckoutRecord {
    int32_t left = 0;
    int32_t top = 0;
    int32_t right = 0;
    int32_t bottom = 0;
    // Where the layer's pixel (0, 0) lies in the effect's own layer, for layers of another size.
    int32_t originX = 0;
    int32_t originY = 0;
    int32_t timeOffset = 0;
};

}  // namespace Tw::Host::AE
