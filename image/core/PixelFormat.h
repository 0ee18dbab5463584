// The pixel formats the system knows: four letters as they lie in memory, the depth of a component, the
// value of white, and where each logical component (red, green, blue, alpha for RGB formats; the
// format's own channels for YUV ones) sits within the pixel.
//
// After Effects frames carry "argb", "ae16" and "ae32"; the others are Premiere Pro's. YUV formats go by
// position only: a filter sees V, U, Y where it expects blue, green, red.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace Tw::Image {

using PixelFormat = uint32_t;

// Packs four letters so that they lie in memory in the order written.
constexpr PixelFormat fourCC(const char (&letters)[5]) {
    return static_cast<uint32_t>(static_cast<uint8_t>(letters[0])) |
           static_cast<uint32_t>(static_cast<uint8_t>(letters[1])) << 8 |
           static_cast<uint32_t>(static_cast<uint8_t>(letters[2])) << 16 |
           static_cast<uint32_t>(static_cast<uint8_t>(letters[3])) << 24;
}

// Position within a pixel of the first, second, third and fourth logical component.
using ComponentPositions = std::array<int, 4>;

// Bits per component: 8, 16 or 32; 10 for the "v210" family; 0 for a format outside the table.
int formatDepth(PixelFormat format);

// The value of white: 255, 32768 or 1; 0 for a format outside the table.
int formatMaximum(PixelFormat format);

// Empty for a format outside the table and for the packed "v210" family, which has no component table.
std::optional<ComponentPositions> componentPositions(PixelFormat format);

}  // namespace Tw::Image
