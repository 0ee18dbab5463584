#include "image/filters/tone/BalanceKernel.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>
#include <vector>

#include "image/graph/ImageView.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/PixelBlocks.h"
#include "image/graph/StoredVectors.h"
#include "image/graph/VectorMath.h"

namespace Tw::Image {

namespace {

float inverseGamma(float gamma) {
    return gamma > 0.001f ? 1.0f / gamma : 999.99994f;
}

// The most a component may come out as: white at the integer depths; at float, 1 when clamping, else
// nothing limits it.
template <class Layout>
float upperLimit(const BalanceSettings& settings) {
    if constexpr (std::is_floating_point_v<typename Layout::Component>) {
        return settings.clamp ? 1.0f : std::numeric_limits<float>::infinity();
    } else {
        return Layout::white;
    }
}

// Lanes pixels at a time, taken apart into planes of one component so that the arithmetic is spent on
// colour alone and alpha goes back as it came: its bits at float, its value at the integer depths.
template <class Layout, int Lanes, bool WithGamma>
struct BalancePixels {
    using T = typename Layout::Component;
    using F = FloatVector<Lanes>;
    static constexpr int kColours[3] = {Layout::red, Layout::green, Layout::blue};

    explicit BalancePixels(const BalanceSettings& settings)
        : invGamma(inverseGamma(settings.gamma)), upper(upperLimit<Layout>(settings)) {
        for (int c = 0; c < 3; ++c) {
            scale[c] = settings.map.scale[c];
            offset[c] = settings.map.offset[c] * Layout::white;
        }
    }

    void apply(const T* in, T* out) const {
        F planes[4];
        loadPixelPlanes<Lanes>(in, planes);
        for (int c = 0; c < 3; ++c) {
            F& v = planes[kColours[c]];
            const F m = WithGamma ? power<Lanes>(v, invGamma) : v;
            const F r = min<Lanes>(max<Lanes>(m * scale[c] + offset[c], F{}), F{} + upper);
            // Integer results are whole before they are stored, rounded to nearest, ties to even.
            v = std::is_floating_point_v<T> ? r : roundToNearestEven<Lanes>(r);
        }
        storePixelPlanes<Lanes>(out, planes);
    }

    std::array<float, 3> scale, offset;
    float invGamma;
    float upper;
};

// At the integer depths a component's result depends on its level alone. With a gamma, a band of many
// pixels looks each component up in a table of every level's result, which the vector kernel itself
// makes from pixels of every level: the same bits as computing each pixel, without a power per
// component. Without a gamma the vector kernel costs less than the lookups. At 8 bits the table holds each
// result already in its place in a pixel's word, so that a pixel is three lookups put together; plain
// loads, since three vector gathers for eight pixels measured slower.
template <class Layout>
class LevelTable {
public:
    using T = typename Layout::Component;
    static constexpr std::size_t kLevels = std::size_t{1} << (8 * sizeof(T));
    // Below this many pixels a band costs less than making the table.
    static constexpr int64_t kWorthwhileFrom = 4 * kLevels;

    template <class Pixels>
    LevelTable(const Pixels& pixels, int lanes) : results_(4 * kLevels) {
        for (std::size_t level = 0; level < kLevels; ++level)
            for (int c = 0; c < 4; ++c)
                results_[4 * level + c] = static_cast<T>(level);
        for (std::size_t level = 0; level < kLevels; level += lanes)
            pixels.apply(&results_[4 * level], &results_[4 * level]);
        if constexpr (sizeof(T) == 1) {
            constexpr int kColours[3] = {Layout::red, Layout::green, Layout::blue};
            words_.resize(3 * kLevels);
            for (int c = 0; c < 3; ++c)
                for (std::size_t level = 0; level < kLevels; ++level)
                    words_[c * kLevels + level] = uint32_t{results_[4 * level + kColours[c]]}
                                                  << 8 * kColours[c];
        }
    }

    // `out` may be `in`.
    void apply(const T* in, T* out, int count) const {
        if constexpr (sizeof(T) == 1) {
            for (; count > 0; --count, in += 4, out += 4) {
                uint32_t pixel;
                std::memcpy(&pixel, in, 4);
                pixel = (pixel & 0xffu << 8 * Layout::alpha) | words_[pixel >> 8 * Layout::red & 0xff] |
                        words_[kLevels + (pixel >> 8 * Layout::green & 0xff)] |
                        words_[2 * kLevels + (pixel >> 8 * Layout::blue & 0xff)];
                std::memcpy(out, &pixel, 4);
            }
        } else {
            for (; count > 0; --count, in += 4, out += 4) {
                const T red = results_[4 * in[Layout::red] + Layout::red];
                const T green = results_[4 * in[Layout::green] + Layout::green];
                const T blue = results_[4 * in[Layout::blue] + Layout::blue];
                out[Layout::alpha] = in[Layout::alpha];
                out[Layout::red] = red;
                out[Layout::green] = green;
                out[Layout::blue] = blue;
            }
        }
    }

private:
    std::vector<T> results_;
    std::vector<uint32_t> words_;
};

}  // namespace

void balanceBand(ImageBuffer& output, const ImageBuffer& input, const PixelRect& band, CpuFeatures features,
                 Progress& progress, const BalanceSettings& settings) {
    dispatchKernel(output, features, [&](auto layout, auto isa) {
        using Layout = decltype(layout);
        using T = typename Layout::Component;
        constexpr int lanes = kPixelLanes<decltype(isa)>;
        const auto run = [&]<bool WithGamma>() {
            const BalancePixels<Layout, lanes, WithGamma> pixels(settings);
            const auto out = ImageView<T>::of(output);
            const std::array in{ImageView<T>::of(input)};
            if constexpr (WithGamma && !std::is_floating_point_v<T>) {
                if (band.width() * int64_t{band.height()} >= LevelTable<Layout>::kWorthwhileFrom) {
                    const LevelTable<Layout> table(pixels, lanes);
                    forEachPixelBlock<lanes>(
                        out, in, band, progress,
                        [&](const std::array<const T*, 1>& from, T* to) { table.apply(from[0], to, lanes); });
                    return;
                }
            }
            forEachPixelBlock<lanes>(
                out, in, band, progress,
                [&](const std::array<const T*, 1>& from, T* to) { pixels.apply(from[0], to); });
        };
        if (settings.gamma == 1.0f) {
            run.template operator()<false>();
        } else {
            run.template operator()<true>();
        }
    });
}

}  // namespace Tw::Image
