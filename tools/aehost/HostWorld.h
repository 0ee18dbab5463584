// HostWorld: one image buffer of the simulated host, as an effect receives it in a PF_EffectWorld. The
// pixels sit between guard bytes, and each row is followed by unused padding, so that an effect that
// writes outside its world, or takes the row bytes for the width, is caught. With negative row bytes the
// rows run up in memory: `data` is the top row, at the highest address, and row y is at data + y * rowbytes.
//
// Coordinates: a world covers a rectangle of its layer; origin_x and origin_y say where its pixel (0, 0)
// lies in the layer, and extent_hint is the whole world in its own coordinates, (0, 0, width, height).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "host/ae/sdk/AeSdk.h"
#include "tools/aehost/Frame.h"

namespace Tw::Tools::AeHost {

class HostWorld {
public:
    // What fresh pixels hold unless cleared, so that pixels an effect never writes are told apart.
    static constexpr std::byte kUnwritten{0xA5};

    HostWorld(int32_t width, int32_t height, PF_PixelFormat format, bool negativeRowBytes,
              int32_t originX = 0, int32_t originY = 0, bool clear = false);
    HostWorld(const HostWorld&) = delete;
    HostWorld& operator=(const HostWorld&) = delete;

    PF_EffectWorld& world() { return world_; }
    const PF_EffectWorld& world() const { return world_; }
    PF_PixelFormat format() const { return format_; }
    int depth() const { return depth_; }
    ComponentOrder order() const { return order_; }

    // Copies the part of `layer` that the world covers; pixels outside the layer become transparent black.
    void load(const Frame& layer);
    // The world's pixels, top row first.
    Frame contents() const;
    // From now on the effect may read the world but not write it: its pixels are remembered.
    void markReadOnly();
    // Whether the guards and the row padding still hold what they were given, and a read-only world its
    // pixels.
    bool intact() const;

private:
    std::byte* rowAddress(int32_t y) const;

    PF_EffectWorld world_{};
    PF_PixelFormat format_;
    int depth_;
    ComponentOrder order_;
    int32_t stride_;
    std::vector<std::byte> storage_;
    std::optional<Frame> readOnlyPixels_;
};

// Depth and order of a pixel format the host knows; false for any other.
bool describeFormat(PF_PixelFormat format, int& depth, ComponentOrder& order);

}  // namespace Tw::Tools::AeHost
