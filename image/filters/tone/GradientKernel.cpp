#include "image/filters/tone/GradientKernel.h"

#include <bit>
#include <limits>

#include "image/graph/GeneratorBlocks.h"
#include "image/graph/VectorMath.h"

namespace Tw::Image {

namespace {

// Each point's weight e^(-falloff d^2) comes from the vector form of the exponential, which gives the same
// bits in every processor variant, where the C library's would be a call per pixel. The weights and the
// colours' shares are summed from 0, in point order.
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
    // An infinite falloff, or none that is a number, makes every weight 0 or no number, and so every share
    // 0 / 0 or no number: each colour is no number, whatever the points and colours. Painted as such
    // directly, the field has the same bits at the cost of a fill, and that is the falloff of every
    // rectangle that starts at the frame's left edge or right of it.
    if (!(falloff < std::numeric_limits<float>::infinity())) {
        constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
        paintBand(output, band, features, progress, SolidPaint{kNaN, kNaN, kNaN});
        return;
    }
    paintBand(output, band, features, progress, GradientPaint{field, falloff});
}

}  // namespace Tw::Image
