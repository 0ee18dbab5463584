#include "image/filters/blend/BlendKernel.h"

#include <utility>

#include "image/filters/blend/BlendKernelParts.h"

namespace Tw::Image {

void blendBand(int32_t mode, ImageBuffer& output, const ImageBuffer& base, const ImageBuffer& top,
               const PixelRect& band, CpuFeatures features, Progress& progress, float opacity) {
    const int kernel = mode >= 1 && mode < kBlendModeCount ? mode : 0;
    // The parts hold the list in order, so the first part that ends after the mode holds it.
    const auto blendIfInPart = [&]<int Part>() {
        using Kernels = BlendKernelPart<Part>;
        if (kernel >= Kernels::endMode) return false;
        Kernels::blend(kernel, output, base, top, band, features, progress, opacity);
        return true;
    };
    [&]<int... Part>(std::integer_sequence<int, Part...>) {
        (blendIfInPart.template operator()<Part>() || ...);
    }
    (std::make_integer_sequence<int, kBlendKernelParts>{});
}

}  // namespace Tw::Image
