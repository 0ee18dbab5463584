// Single filter nodes rendered over rows of pixels, for the tests of the filters that several effects
// share.
#pragma once

#include <cmath>
#include <vector>

#include "host/standalone/Host.h"
#include "image/graph/Scheduler.h"
#include "tests/support/BareHost.h"
#include "tests/support/PixelRows.h"

namespace Tw::Test {

using StandaloneHost = Tw::Host::Standalone::Host;
using Node = Image::FilterBase<StandaloneHost>;
using Layer = Image::FilterLayer<StandaloneHost>;

// Every depth in both component orders.
inline const Image::PixelFormat kEveryFormat[] = {Image::fourCC("argb"), Image::fourCC("ae16"),
                                                  Image::fourCC("ae32"), Image::fourCC("bgra"),
                                                  Image::fourCC("Bgra"), Image::fourCC("BGra")};

inline double whiteOf(Image::PixelFormat format) {
    const int depth = Image::formatDepth(format);
    return depth == 8 ? 255 : depth == 16 ? 32768 : 1;
}

// Fractions of white as an image of `format` stores them: whole numbers at the integer depths, floats at
// float depth.
inline std::vector<Pixel> inUnitsOf(const std::vector<Pixel>& fractions, Image::PixelFormat format) {
    std::vector<Pixel> pixels = fractions;
    const double white = whiteOf(format);
    for (Pixel& p : pixels)
        for (double& c : p)
            c = white == 1 ? static_cast<float>(c) : std::round(c * white);
    return pixels;
}

// The output of `node` over `rect`, in `format`.
inline std::vector<Pixel> renderNode(Node& node, const Image::PixelRect& rect, Image::PixelFormat format) {
    BareHost host;
    Image::ImageBuffer out;
    out.allocate(rect, format);
    Image::prepareGraph<StandaloneHost>(node, host, out);
    return pixelsOf(out);
}

}  // namespace Tw::Test
