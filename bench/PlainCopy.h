// The peer of the per-pixel effects: copying the frame, which any effect that reads one frame and writes
// one costs at least, so the ratio to it says how much an effect's arithmetic adds. Like ours it runs on
// the shared worker pool, one horizontal band per thread.
#pragma once

#include "bench/pairs/Comparison.h"
#include "image/core/ImageBuffer.h"

namespace Tw::Bench {

Side plainCopySide(Image::ImageBuffer frame);

}  // namespace Tw::Bench
