// The kernel of LightBurstFilter. It takes the processor's features and a progress sink rather than the
// host, so that it compiles once, in LightBurstKernel.cpp, whatever the hosts the filter is built for.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// What one light burst does: each pixel reads `steps` samples along its ray towards the centre (pixels of
// the rendered frame) and moves towards the brightest of them, component by component, by `amount`.
struct LightBurstRays {
    int32_t steps;
    float centerX, centerY;
    float amount;
};

// The number of samples along a ray for a radius: ceilf(radius) taken as a whole number, none for a radius
// that is not positive or no number. Beyond 2^24 a step count would no longer be exact in a float, and no
// frame is that large.
inline int32_t lightBurstSteps(float radius) {
    if (!(radius > 0)) return 0;
    return static_cast<int32_t>(std::min(std::ceil(radius), 0x1p24f));
}

// Whether the kernel can address every sample of `input` that rays of `steps` samples reach: it keeps the
// distance from a pixel to its samples in 32-bit bytes.
bool lightBurstReaches(const ImageBuffer& input, int32_t steps);

// Which kernel reads the samples. By region: the kernel that clamps each sample to the input runs where a
// ray may leave the input, the one that reads straight from it runs for pixels at least `steps` inside
// it. Clamped everywhere: the clamping kernel alone, which gives the same results.
enum class RaySampling { ByRegion, ClampedEverywhere };

// Over `band` of `output`, each pixel p at (x, y) becomes (best - p) * amount + p, component by component,
// alpha included: best is the largest of the samples at (x + trunc(k * ux), y + trunc(k * uy)) for k from
// 0 to steps - 1, with (ux, uy) the unit vector towards the centre in single precision, or 0 where the
// pixel lies on the centre or the direction is no number, and every coordinate clamped to the input's
// rectangle. An input without pixels reads as transparent black. Integer results are cut toward zero and
// not limited: samples and the pixel bound them for an amount from 0 to 1.
void lightBurstBand(ImageBuffer& output, const ImageBuffer& input, const PixelRect& band,
                    CpuFeatures features, Progress& progress, const LightBurstRays& rays,
                    RaySampling sampling = RaySampling::ByRegion);

}  // namespace Tw::Image
