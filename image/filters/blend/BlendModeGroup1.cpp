// The blend kernels of the second quarter of the mode list.
#include "image/filters/blend/BlendModeBlock.h"

namespace Tw::Image {

template struct BlendModeGroup<1>;

}  // namespace Tw::Image
