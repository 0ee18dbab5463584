// The kernel of GradientFilter. It takes the processor's features and a progress sink rather than the
// host, so that it compiles once, in GradientKernel.cpp, whatever the hosts the filter is built for.
#pragma once

#include <array>
#include <cstdint>

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// Four coloured points, in pixels of the rendered image, whose colours blend smoothly between them.
struct GradientField {
    using Colour = std::array<float, 3>;  // red, green, blue
    using Point = std::array<float, 2>;   // x, y

    std::array<Colour, 4> colors;
    std::array<Point, 4> points;

    friend bool operator==(const GradientField&, const GradientField&) = default;
};

// How fast a point's weight falls off with the squared distance, for an output whose rectangle starts at
// `left`: the 32 bits of `left` are read as a float u, and the falloff is 1 / (2 h^2) with h = u / 2. That
// reading is how the effect has always rendered. A left from 0 up to far beyond any frame makes u zero or
// so small that h^2 is 0, and the falloff infinite: every weight is then 0 (no number on a point itself),
// so every colour is no number, which integer depths store as 0.
float gradientFalloff(int32_t left);

// `band` of `output` painted with the field, alpha white: each colour weighted by e^(-falloff d^2) of its
// point's squared distance d^2, over the sum of the four weights. Integer results are cut toward zero.
void gradientBand(ImageBuffer& output, const PixelRect& band, CpuFeatures features, Progress& progress,
                  const GradientField& field, float falloff);

}  // namespace Tw::Image
