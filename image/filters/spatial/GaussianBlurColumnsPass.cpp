// The Gaussian's pass down the columns, for every host (GaussianBlurBand.h).
#include "image/filters/spatial/GaussianBlurBand.h"

namespace Tw::Image {

template void blurBand<BlurAxis::Columns>(const ImageBuffer&, ImageBuffer&, const PixelRect&, CpuFeatures,
                                          Progress&, const GaussianBlurCoefficients&);

}  // namespace Tw::Image
