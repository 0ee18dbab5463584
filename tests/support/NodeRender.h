// Single filter nodes and effects rendered over rows of pixels.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <vector>

#include "host/standalone/Host.h"
#include "image/graph/Filter.h"
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

// The output of `node` over `rect`, in `format`, as an image and as pixels.
inline Image::ImageBuffer renderImage(Node& node, const Image::PixelRect& rect, Image::PixelFormat format) {
    BareHost host;
    Image::ImageBuffer out;
    out.allocate(rect, format);
    Image::prepareGraph<StandaloneHost>(node, host, out);
    return out;
}

inline std::vector<Pixel> renderNode(Node& node, const Image::PixelRect& rect, Image::PixelFormat format) {
    return pixelsOf(renderImage(node, rect, format));
}

// The output of `effect` over `in`, in an image of `outRect` (the input's unless given), its parameters at
// their defaults but for what `set` changes.
template <class Set>
Image::ImageBuffer renderEffectImage(StandaloneHost& effect, Image::ImageBuffer& in, Set&& set,
                                     Image::LayerImages layers = {},
                                     std::optional<Image::PixelRect> outRect = std::nullopt) {
    Host::Param::Parameters params;
    effect.defineParameters(params);
    set(params);
    Image::ImageBuffer out;
    out.allocate(outRect.value_or(in.rect), in.pixelFormat());
    EXPECT_EQ(effect.render(params, in, out, layers), 0);
    return out;
}

// The output of the effect `Plugin` over a row of `pixels`, as above.
template <class Plugin, class Set>
std::vector<Pixel> renderEffect(const std::vector<Pixel>& pixels, Image::PixelFormat format, Set&& set,
                                Image::LayerImages layers = {}) {
    Plugin effect;
    Image::ImageBuffer in = imageOf(pixels, format);
    return pixelsOf(renderEffectImage(effect, in, set, layers));
}

}  // namespace Tw::Test
