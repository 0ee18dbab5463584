// The blend kernel as the filter calls it. It takes the processor's features and a progress sink rather
// than the host, so that its instances (each mode once per processor variant, the loads and stores once
// per depth, component order and variant) compile once in tw_filters whatever the hosts the filter is
// built for.
#pragma once

#include <cstdint>

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// Runs mode `mode`, numbered as BlendModeList.h does, over `band` of `output`, with `top` laid over `base`
// at `opacity`. A number outside 1..41 blends as Normal.
void blendBand(int32_t mode, ImageBuffer& output, const ImageBuffer& base, const ImageBuffer& top,
               const PixelRect& band, CpuFeatures features, Progress& progress, float opacity);

}  // namespace Tw::Image
