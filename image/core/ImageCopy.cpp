// copyFrom: the single routine that moves pixels between two images of any formats. It is how a cached
// result reaches a second buffer, how a layer reaches the output, and how a result of one depth reaches a
// frame of another. Every conversion truncates; none rounds.
#include <cstring>
#include <type_traits>

#include "image/core/ComponentType.h"
#include "image/core/ImageBuffer.h"

namespace Tw::Image {
namespace {

template <class To, class From>
To convertComponent(From x) {
    if constexpr (std::is_same_v<To, From>) {
        return x;
    } else if constexpr (std::is_same_v<From, uint8_t> && std::is_same_v<To, uint16_t>) {
        return static_cast<uint16_t>(x * 32768 / 255);  // 255 gives 32768
    } else if constexpr (std::is_same_v<From, uint8_t>) {
        return static_cast<float>(x) / 255.0f;
    } else if constexpr (std::is_same_v<From, uint16_t> && std::is_same_v<To, uint8_t>) {
        // Values above white do not occur in valid frames; keep them from wrapping all the same.
        const int value = (x * 255) >> 15;  // 32768 gives 255
        return static_cast<uint8_t>(value > 255 ? 255 : value);
    } else if constexpr (std::is_same_v<From, uint16_t>) {
        return static_cast<float>(x) * 3.0517578e-5f;
    } else {
        // From float. A NaN fails both tests and reads as black.
        constexpr float white = ComponentTraits<To>::white;
        if (x > 1.0f) return static_cast<To>(white);
        if (!(x >= 0.0f)) return 0;
        return static_cast<To>(x * white);
    }
}

// Destination position k takes source position map[k].
using PositionMap = ComponentPositions;

template <class To, class From>
void convertRows(const ImageBuffer& source, ImageBuffer& destination, const PixelRect& region,
                 const PositionMap& map) {
    const int width = region.width();
    for (int32_t y = region.top; y < region.bottom; ++y) {
        const auto* in = reinterpret_cast<const From*>(source.pixelAddress(region.left, y));
        auto* out = reinterpret_cast<To*>(destination.pixelAddress(region.left, y));
        for (int x = 0; x < width; ++x, in += 4, out += 4) {
            const From pixel[4] = {in[0], in[1], in[2], in[3]};
            for (int k = 0; k < 4; ++k)
                out[k] = convertComponent<To>(pixel[map[k]]);
        }
    }
}

}  // namespace

void ImageBuffer::copyFrom(const ImageBuffer& source) {
    const PixelRect region = rect.intersect(source.rect);
    if (region.isEmpty() || !hasStorage() || !source.hasStorage()) return;

    // Formats outside the table go by the identity order.
    constexpr ComponentPositions identity{0, 1, 2, 3};
    const ComponentPositions from = componentPositions(source.pixelFormat()).value_or(identity);
    const ComponentPositions to = componentPositions(pixelFormat()).value_or(identity);
    PositionMap map{};
    for (int logical = 0; logical < 4; ++logical)
        map[to[logical]] = from[logical];

    if (depth() == source.depth() && map == identity) {
        const auto rowBytes = static_cast<std::size_t>(region.width()) * bytesPerPixel();
        for (int32_t y = region.top; y < region.bottom; ++y) {
            std::memmove(pixelAddress(region.left, y), source.pixelAddress(region.left, y), rowBytes);
        }
        return;
    }
    withComponentType(depth(), [&](auto to) {
        withComponentType(source.depth(), [&](auto from) {
            using To = typename decltype(to)::type;
            using From = typename decltype(from)::type;
            convertRows<To, From>(source, *this, region, map);
        });
    });
}

}  // namespace Tw::Image
