// The two component orders a frame is rendered in: After Effects' ARGB and Premiere Pro's BGRA.
#pragma once

namespace Tw::Tools {

enum class ComponentOrder { Argb, Bgra };

}  // namespace Tw::Tools
