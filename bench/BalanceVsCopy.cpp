// "Balance" with a gamma over a 3840 x 2160 frame, beside a plain copy of the same frame. Goal: at float,
// within 1.5 times the copy; at 8 bits the ratio is reported against a bound that only a fault would pass.
#include "bench/EffectSide.h"
#include "bench/PlainCopy.h"
#include "plugins/BalancePlugin.h"

namespace Tw::Bench {
namespace {

using Image::fourCC;

constexpr Image::PixelRect kFrame{0, 0, 3840, 2160};

// A frame of smoothly varying values, so that the gamma meets every kind of value.
Image::ImageBuffer testFrame(Image::PixelFormat format) {
    Image::ImageBuffer frame;
    frame.allocate(kFrame, format);
    const auto bytes = static_cast<std::size_t>(frame.rowStride()) * kFrame.height();
    if (Image::formatDepth(format) == 32) {
        auto* values = reinterpret_cast<float*>(frame.pixels());
        for (std::size_t i = 0; i < bytes / 4; ++i)
            values[i] = static_cast<float>(i % 1021) / 1020.0f;
    } else {
        for (std::size_t i = 0; i < bytes; ++i)
            frame.pixels()[i] = static_cast<std::byte>(i % 251);
    }
    return frame;
}

Comparison balanceWithGamma(const char* name, Image::PixelFormat format, double goal) {
    return {name, "plain copy", goal, [format] {
                auto settings = [](Param::Parameters& params) {
                    params.setFloat(0, 5);
                    params.setFloat(1, 95);
                    params.setFloat(4, 1.8);
                };
                return Sides{effectSide<Plugins::BalancePlugin<Host>>(testFrame(format), settings),
                             plainCopySide(testFrame(format))};
            }};
}

const Registration balance{balanceWithGamma("Balance gamma 8-bit 3840x2160", fourCC("argb"), 99),
                           balanceWithGamma("Balance gamma float 3840x2160", fourCC("ae32"), 1.5)};

}  // namespace
}  // namespace Tw::Bench
