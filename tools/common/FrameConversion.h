// Between an image file's channels and a render's frame. A frame is four components in the order of its
// pixel format: ARGB ("argb", "ae16", "ae32") or BGRA ("bgra", "Bgra", "BGra"). OpenImageIO converts
// values between the file's data format and the frame's component type; this code places the channels.
//
// A file's colour channels are its first three that are not alpha; a file with fewer is grey and gives
// red, green and blue alike. A file without alpha reads as opaque. A frame's 16-bit white is 32768 where
// a file's is 65535; both ways round to nearest.
//
// Colour goes as the file stores it, straight or premultiplied. AlphaMode::Premultiplied multiplies
// straight colour by alpha on the way in and divides it again on the way out, rounding to nearest at
// integer depths; a file that already stores premultiplied colour goes as it is.
#pragma once

#include "image/core/ImageBuffer.h"
#include "image/core/PixelFormat.h"
#include "tools/common/AlphaMode.h"
#include "tools/common/ComponentOrder.h"
#include "tools/common/ImageFile.h"

namespace Tw::Tools {

// The frame format of `depth` (8, 16 or 32) and `order`.
Image::PixelFormat frameFormat(int depth, ComponentOrder order);

// The depth a file's data format renders at unless asked otherwise: 8 for 8-bit files, 16 for 16-bit
// ones, 32 (float) for the rest, half and float among them.
int depthForFile(const OIIO::ImageSpec& spec);

// A new frame over (0, 0) to the image's size.
Image::ImageBuffer frameFromFile(const FileImage& image, Image::PixelFormat format,
                                 AlphaMode alpha = AlphaMode::Straight);

// Writes the rendered frame's colour and alpha back into the image's channels. `original` is the frame
// that frameFromFile made of the image with the same `alpha`: a channel whose frame values the render
// left as they were keeps the file's own value, and the image's other channels stay as they are. A grey
// file takes the mean of red, green and blue. Both frames must be the image's size.
void storeFrame(const Image::ImageBuffer& frame, const Image::ImageBuffer& original, AlphaMode alpha,
                FileImage& image);

}  // namespace Tw::Tools
