// The frames the comparisons with OpenCV work on: the bundled portrait scaled up to a video frame, the
// same picture for our effects and for OpenCV, so that neither side is timed on an easier image.
#pragma once

#include <opencv2/core.hpp>

#include <string>

#include "image/core/ImageBuffer.h"
#include "image/core/PixelFormat.h"

namespace Tw::Bench {

// The portrait at `width` x `height` as red, green, blue, alpha in an OpenCV matrix of `cvType`
// (CV_8UC4, CV_16UC4 or CV_32FC4; white is 255, 32768 and 1). Made once per size and type.
cv::Mat portraitMat(int width, int height, int cvType);

// The same picture in one of our pixel formats, each component where the format puts it.
Image::ImageBuffer portraitFrame(int width, int height, Image::PixelFormat format);

// The OpenCV type of four components of 8, 16 or 32 bits.
int cvTypeOfDepth(int depth);

// A frame's depth and size as comparisons name them: "8-bit 1920x1080", "float 3840x2160".
std::string frameName(Image::PixelFormat format, int width, int height);

}  // namespace Tw::Bench
