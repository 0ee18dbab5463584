#include "image/filters/blend/BlendKernel.h"

#include <utility>

#include "image/filters/blend/BlendModeGroups.h"
#include "image/filters/blend/BlendRuns.h"
#include "image/graph/KernelDispatch.h"

namespace Tw::Image {

namespace {

BlendModeKernel blendModeKernel(int mode) {
    // The groups hold the list in order, so the first group that ends after the mode holds it.
    BlendModeKernel kernel = nullptr;
    const auto kernelIfInGroup = [&]<int Group>() {
        using Kernels = BlendModeGroup<Group>;
        if (mode >= Kernels::endMode) return false;
        kernel = Kernels::kernel(mode);
        return true;
    };
    [&]<int... Group>(std::integer_sequence<int, Group...>) {
        (kernelIfInGroup.template operator()<Group>() || ...);
    }
    (std::make_integer_sequence<int, kBlendModeGroups>{});
    return kernel;
}

}  // namespace

void blendBand(int32_t mode, ImageBuffer& output, const ImageBuffer& base, const ImageBuffer& top,
               const PixelRect& band, CpuFeatures features, Progress& progress, float opacity) {
    const int kernelMode = mode >= 1 && mode < kBlendModeCount ? mode : 0;
    const BlendModeKernel kernel = blendModeKernel(kernelMode);
    const bool exchanged = kBlendModeExchangesInputs[kernelMode];
    dispatchKernel(output, features, [&](auto layout, auto isa) {
        using Layout = decltype(layout);
        using T = typename Layout::Component;
        blendRuns<Layout, decltype(isa)::floatLanes>(
            ImageView<T>::of(output), ImageView<T>::of(exchanged ? top : base),
            ImageView<T>::of(exchanged ? base : top), band, progress, kernel, features, opacity);
    });
}

}  // namespace Tw::Image
