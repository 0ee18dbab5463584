#include "image/filters/tone/GradientKernel.h"

#include <bit>

#include "image/graph/GeneratorBlocks.h"
#include "image/graph/VectorMath.h"

namespace Tw::Image {

namespace {

struct GradientPaint {
    template <int Lanes>
    [[gnu::always_inline]] PaintedColour<Lanes> operator()(const PixelPlaces<Lanes>& at) const {
        using F = FloatVector<Lanes>;
        F weights[4];
        F sum{};
        for (int i = 0; i < 4; ++i) {
            const F dx = field.points[i][0] - at.x;
            const F dy = field.points[i][1] - at.y;
            weights[i] = exponential<Lanes>(-(dx * dx + dy * dy) * falloff);
            sum += weights[i];
        }
        F out[3] = {};
        for (int i = 0; i < 4; ++i) {
            const F share = weights[i] / sum;
            for (int c = 0; c < 3; ++c)
                out[c] += field.colors[i][c] * share;
        }
        return {out[0], out[1], out[2]};
    }

    GradientField field;
    float falloff;
};

}  // namespace

float gradientFalloff(int32_t left) {
    const float u = std::bit_cast<float>(left);
    const float h = u * 0.5f;
    return 1.0f / (2.0f * h * h);
}

void gradientBand(ImageBuffer& output, const PixelRect& band, CpuFeatures features, Progress& progress,
                  const GradientField& field, float falloff) {
    paintBand(output, band, features, progress, GradientPaint{field, falloff});
}

}  // namespace Tw::Image
