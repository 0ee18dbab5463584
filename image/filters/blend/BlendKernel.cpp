#include "image/filters/blend/BlendKernel.h"

#include <utility>

#include "image/filters/blend/BlendModeGroups.h"

namespace Tw::Image {

void blendBand(int32_t mode, ImageBuffer& output, const ImageBuffer& base, const ImageBuffer& top,
               const PixelRect& band, CpuFeatures features, Progress& progress, float opacity) {
    const int kernel = mode >= 1 && mode < kBlendModeCount ? mode : 0;
    // The groups hold the list in order, so the first group that ends after the mode holds it.
    const auto blendIfInGroup = [&]<int Group>() {
        using Kernels = BlendModeGroup<Group>;
        if (kernel >= Kernels::endMode) return false;
        Kernels::blend(kernel, output, base, top, band, features, progress, opacity);
        return true;
    };
    [&]<int... Group>(std::integer_sequence<int, Group...>) {
        (blendIfInGroup.template operator()<Group>() || ...);
    }
    (std::make_integer_sequence<int, kBlendModeGroups>{});
}

}  // namespace Tw::Image
