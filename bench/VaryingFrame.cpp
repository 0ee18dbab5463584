#include "bench/VaryingFrame.h"

#include <type_traits>

#include "image/core/ComponentType.h"

namespace Tw::Bench {

Image::ImageBuffer varyingFrame(Image::PixelFormat format, std::size_t phase, const Image::PixelRect& rect) {
    Image::ImageBuffer frame;
    frame.allocate(rect, format);
    Image::withComponentType(frame.depth(), [&](auto component) {
        using T = typename decltype(component)::type;
        auto* values = reinterpret_cast<T*>(frame.pixels());
        const auto count = static_cast<std::size_t>(frame.rowStride()) * rect.height() / sizeof(T);
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t step = (i + phase) % (1019 + i % 4);
            if constexpr (std::is_same_v<T, float>) {
                values[i] = static_cast<float>(step) / 1018.0f;
            } else {
                values[i] = static_cast<T>(step % 251);
            }
        }
    });
    return frame;
}

}  // namespace Tw::Bench
