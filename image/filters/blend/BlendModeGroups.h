// The blend kernels compile in groups, each a stretch of the mode list in a file of its own
// (BlendModeGroup0.cpp to BlendModeGroup3.cpp), so that the groups build in parallel.
#pragma once

#include "image/filters/blend/BlendBlock.h"
#include "image/filters/blend/BlendModeList.h"

namespace Tw::Image {

inline constexpr int kBlendModeGroups = 4;

template <int Group>
struct BlendModeGroup {
    static constexpr int firstMode = Group * kBlendModeCount / kBlendModeGroups;
    static constexpr int endMode = (Group + 1) * kBlendModeCount / kBlendModeGroups;

    // The kernel of a mode from firstMode to endMode - 1; defined in BlendModeBlock.h.
    static BlendModeKernel kernel(int mode);
};

}  // namespace Tw::Image
