#include "image/filters/tone/RampKernel.h"

#include <cmath>

#include "image/graph/GeneratorBlocks.h"

namespace Tw::Image {

namespace {

struct RampPaint {
    explicit RampPaint(const LinearRamp& ramp) : ramp(ramp) {
        const float dx = ramp.point2[0] - ramp.point1[0];
        const float dy = ramp.point2[1] - ramp.point1[1];
        const float q = dx * dx + dy * dy;
        const float i = q > 0 ? 1.0f / std::sqrt(q) : 1.0f;
        // The line's vector over its squared length: its dot product with a pixel's offset from point1
        // is 0 at point1 and 1 at point2. Points that coincide give (0, 0), and color1 everywhere.
        direction = {dx * i * i, dy * i * i};
        const float starts[3] = {0.0f, ramp.amount1, ramp.amount2};
        const float ends[3] = {ramp.amount1, ramp.amount2, 1.0f};
        for (int piece = 0; piece < 3; ++piece) {
            start[piece] = starts[piece];
            length[piece] = ends[piece] - starts[piece];
            for (int c = 0; c < 3; ++c) {
                from[c][piece] = ramp.colors[piece][c];
                rise[c][piece] = ramp.colors[piece + 1][c] - ramp.colors[piece][c];
            }
        }
    }

    template <int Lanes>
    [[gnu::always_inline]] PaintedColour<Lanes> operator()(const PixelPlaces<Lanes>& at) const {
        using F = FloatVector<Lanes>;
        const F t = (at.x - ramp.point1[0]) * direction[0] + (at.y - ramp.point1[1]) * direction[1];
        // The tests in their order: the first that holds picks the piece.
        const auto beforeFirst = 0.0f >= t;
        const auto afterLast = t >= 1.0f;
        const auto inFirst = ramp.amount1 > t;
        const auto inSecond = ramp.amount2 > t;
        // The piece, 0, 1 or 2 (comparisons give -1 where they hold), and each value by piece taken by
        // that number from a vector that holds the three.
        const IntVector<Lanes> piece = (2 + inSecond) & ~inFirst;
        const auto pick = [&](const ByPiece& byPiece) {
            static_assert(Lanes == 4 || Lanes == 8);
            if constexpr (Lanes == 8)
                return __builtin_shuffle(byPiece, piece);
            else
                return __builtin_shuffle(
                    FloatVector<4>(__builtin_shufflevector(byPiece, byPiece, 0, 1, 2, 3)), piece);
        };
        // Where a test of the ends holds the weight goes unused, and it may be no number there.
        const F weight = (t - pick(start)) / pick(length);
        F out[3];
        for (int c = 0; c < 3; ++c) {
            const F between = pick(from[c]) + pick(rise[c]) * weight;
            out[c] = beforeFirst ? F{} + ramp.colors[0][c] : afterLast ? F{} + ramp.colors[3][c] : between;
        }
        return {out[0], out[1], out[2]};
    }

    LinearRamp ramp;
    LinearRamp::Point direction;
    // Per piece of the ramp, in lanes 0 to 2: where it starts, how long it is, and for each colour
    // component its value at the start and how much it rises over the piece.
    using ByPiece = FloatVector<8>;
    ByPiece start{}, length{};
    ByPiece from[3]{}, rise[3]{};
};

}  // namespace

void rampBand(ImageBuffer& output, const PixelRect& band, CpuFeatures features, Progress& progress,
              const LinearRamp& ramp) {
    if (ramp.isSolid()) {
        const LinearRamp::Colour& colour = ramp.colors[0];
        paintBand(output, band, features, progress, SolidPaint{colour[0], colour[1], colour[2]});
    } else {
        paintBand(output, band, features, progress, RampPaint(ramp));
    }
}

}  // namespace Tw::Image
