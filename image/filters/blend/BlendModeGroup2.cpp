// The blend kernels of the third quarter of the mode list.
#include "image/filters/blend/BlendModeBlock.h"

namespace Tw::Image {

template struct BlendModeGroup<2>;

}  // namespace Tw::Image
