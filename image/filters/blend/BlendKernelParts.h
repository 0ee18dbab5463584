// The blend kernels are the most code of any filter, a copy of each mode for every depth, component order
// and processor variant. They compile in parts, each a run of the mode list in a file of its own
// (BlendKernelPart0.cpp to BlendKernelPart3.cpp), so that the parts build in parallel.
#pragma once

#include <cstdint>

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/filters/blend/BlendModeList.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

inline constexpr int kBlendKernelParts = 4;

template <int Part>
struct BlendKernelPart {
    static constexpr int firstMode = Part * kBlendModeCount / kBlendKernelParts;
    static constexpr int endMode = (Part + 1) * kBlendModeCount / kBlendKernelParts;

    // blendBand for a mode from firstMode to endMode - 1; defined in BlendModeBand.h.
    static void blend(int mode, ImageBuffer& output, const ImageBuffer& base, const ImageBuffer& top,
                      const PixelRect& band, CpuFeatures features, Progress& progress, float opacity);
};

}  // namespace Tw::Image
