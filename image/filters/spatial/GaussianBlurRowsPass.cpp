// The Gaussian's pass along the rows, for every host (GaussianBlurBand.h).
#include "image/filters/spatial/GaussianBlurBand.h"

namespace Tw::Image {

template void blurBand<BlurAxis::Rows>(const ImageBuffer&, ImageBuffer&, const PixelRect&, CpuFeatures,
                                       Progress&, const GaussianBlurCoefficients&);

}  // namespace Tw::Image
