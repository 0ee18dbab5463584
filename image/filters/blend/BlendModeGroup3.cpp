// The blend kernels of the last quarter of the mode list.
#include "image/filters/blend/BlendModeBlock.h"

namespace Tw::Image {

template struct BlendModeGroup<3>;

}  // namespace Tw::Image
