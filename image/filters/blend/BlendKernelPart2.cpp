// The blend kernels of the third quarter of the mode list.
#include "image/filters/blend/BlendModeBand.h"

namespace Tw::Image {

template struct BlendKernelPart<2>;

}  // namespace Tw::Image
