// The blend kernels of the first quarter of the mode list.
#include "image/filters/blend/BlendModeBlock.h"

namespace Tw::Image {

template struct BlendModeGroup<0>;

}  // namespace Tw::Image
