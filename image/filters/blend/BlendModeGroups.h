// The blend kernels are the most code of any filter, a copy of each mode for every depth, component order
// and processor variant. They compile in groups, each a stretch of the mode list in a file of its own
// (BlendModeGroup0.cpp to BlendModeGroup3.cpp), so that the groups build in parallel.
#pragma once

#include <cstdint>

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/filters/blend/BlendModeList.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

inline constexpr int kBlendModeGroups = 4;

template <int Group>
struct BlendModeGroup {
    static constexpr int firstMode = Group * kBlendModeCount / kBlendModeGroups;
    static constexpr int endMode = (Group + 1) * kBlendModeCount / kBlendModeGroups;

    // blendBand for a mode from firstMode to endMode - 1; defined in BlendModeBand.h.
    static void blend(int mode, ImageBuffer& output, const ImageBuffer& base, const ImageBuffer& top,
                      const PixelRect& band, CpuFeatures features, Progress& progress, float opacity);
};

}  // namespace Tw::Image
