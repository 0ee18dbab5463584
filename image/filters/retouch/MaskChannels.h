// Where a mask stands in a pixel: the colour-key filters write their strength this way, and MaskFilter
// reads it.
#pragma once

namespace Tw::Image {

// The mask in red, green and blue; alpha is another image's.
struct MaskGetRGB {};
// The mask in all four components: alpha is the mask too.
struct MaskGetAlpha {};

}  // namespace Tw::Image
