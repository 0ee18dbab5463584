// One pass of the recursive Gaussian over one worker's band: along the rows of a band of rows, or down
// the columns of a band of columns.
//
// Lines are full lines of the source, so that the recursion sees the whole context the source has; the
// target receives the part of each line that it covers. Where the target reaches beyond the source
// there is nothing to blur, and it is cleared to transparent black.
//
// The pass takes the processor's features and a progress sink rather than the host, so that its kernels
// compile once (GaussianBlurBand.h), whatever the hosts the filter is built for.
#pragma once

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/filters/spatial/GaussianBlurCoefficients.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// Blurs `band` of `target` along `Axis` from `source`, which has the target's format. For rows the band
// is a run of whole rows of the target, for columns a run of whole columns. Reports progress after every
// 32nd line.
template <BlurAxis Axis>
void blurBand(const ImageBuffer& source, ImageBuffer& target, const PixelRect& band, CpuFeatures features,
              Progress& progress, const GaussianBlurCoefficients& coefficients);

// Each axis compiles in a file of its own. A file that includes the definition for its helpers (a test of
// line groups) would otherwise compile every kernel of both axes again.
extern template void blurBand<BlurAxis::Rows>(const ImageBuffer&, ImageBuffer&, const PixelRect&, CpuFeatures,
                                              Progress&, const GaussianBlurCoefficients&);
extern template void blurBand<BlurAxis::Columns>(const ImageBuffer&, ImageBuffer&, const PixelRect&,
                                                 CpuFeatures, Progress&, const GaussianBlurCoefficients&);

}  // namespace Tw::Image
