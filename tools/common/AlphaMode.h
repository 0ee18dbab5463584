// What an effect is handed beside alpha: colour as the file stores it, or colour multiplied by alpha, as
// After Effects hands over its layers.
#pragma once

namespace Tw::Tools {

enum class AlphaMode { Straight, Premultiplied };

}  // namespace Tw::Tools
