// The blend kernels of the third quarter of the mode list.
#include "image/filters/blend/BlendModeBand.h"

namespace Tw::Image {

template struct BlendModeGroup<2>;

}  // namespace Tw::Image
