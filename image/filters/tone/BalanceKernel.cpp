#include "image/filters/tone/BalanceKernel.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

#include "image/graph/ImageView.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/PixelSpans.h"
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

// One pixel vector of the kernel, parameters laid out in the memory order of Layout.
template <class Layout, int Lanes, bool WithGamma>
struct BalancePixels {
    using T = typename Layout::Component;
    using F = FloatVector<Lanes>;

    explicit BalancePixels(const BalanceSettings& settings) {
        constexpr int logical[4] = {Layout::red, Layout::green, Layout::blue, Layout::alpha};
        float scaleByPosition[4], offsetByPosition[4], alphaByPosition[4] = {0, 0, 0, 0};
        for (int c = 0; c < 4; ++c) {
            scaleByPosition[logical[c]] = settings.map.scale[c];
            offsetByPosition[logical[c]] = settings.map.offset[c] * Layout::white;
        }
        alphaByPosition[Layout::alpha] = 1;
        scale = repeatPixel<Lanes>(scaleByPosition);
        offset = repeatPixel<Lanes>(offsetByPosition);
        isAlpha = repeatPixel<Lanes>(alphaByPosition) != 0.0f;
        invGamma = inverseGamma(settings.gamma);
        upper = upperLimit<Layout>(settings);
    }

    void apply(const T* in, T* out) const {
        const F v = loadComponents<Lanes>(in);
        F r = (WithGamma ? power<Lanes>(v, invGamma) : v) * scale + offset;
        r = min<Lanes>(max<Lanes>(r, F{}), F{} + upper);
        if constexpr (std::is_floating_point_v<T>) {
            // Alpha keeps its bits, negative zero and values beyond 1 included.
            const auto bits =
                isAlpha ? std::bit_cast<IntVector<Lanes>>(v) : std::bit_cast<IntVector<Lanes>>(r);
            std::memcpy(out, &bits, sizeof bits);
        } else {
            storeComponents<Lanes>(out, isAlpha ? v : r);
        }
    }

    F scale, offset;
    IntVector<Lanes> isAlpha;
    float invGamma;
    float upper;
};

// Moves the colour components of Lanes pixels (four vectors, alpha interleaved) into three vectors of
// colour alone and back, so that the costly arithmetic is not spent on alpha. The tables depend only on
// the layout and the vector width, and are worked out by the compiler.
template <class Layout, int Lanes>
struct ColourLanes {
    using Table = std::array<int, Lanes>;

    static constexpr int positionOf(int channel) {
        return channel == 0 ? Layout::red : channel == 1 ? Layout::green : Layout::blue;
    }
    static constexpr int channelAt(int position) {
        return position == Layout::red ? 0 : position == Layout::green ? 1 : 2;
    }
    // Colour vector j, lane i: where it lies in input vectors j and j + 1 taken together.
    static constexpr Table gather(int j) {
        Table table{};
        for (int i = 0; i < Lanes; ++i) {
            const int s = j * Lanes + i;
            table[i] = s / 3 * 4 + positionOf(s % 3) - j * Lanes;
        }
        return table;
    }
    // The first colour vector that output vector k draws on; it may also draw on the next one.
    static constexpr int firstColour(int k) { return 3 * k / 4; }
    // Output vector k, colour lane i: where it lies in colour vectors firstColour(k) and the next.
    static constexpr Table collect(int k) {
        Table table{};
        for (int i = 0; i < Lanes; ++i) {
            const int g = k * Lanes + i;
            const bool alpha = g % 4 == Layout::alpha;
            table[i] = alpha ? 0 : g / 4 * 3 + channelAt(g % 4) - firstColour(k) * Lanes;
        }
        return table;
    }
    // Output vector k: colour lanes from the collected vector, alpha lanes from input vector k.
    static constexpr Table restoreAlpha(int k) {
        Table table{};
        for (int i = 0; i < Lanes; ++i)
            table[i] = (k * Lanes + i) % 4 == Layout::alpha ? Lanes + i : i;
        return table;
    }
};

template <class Vector, const auto& Table, std::size_t... I>
[[gnu::always_inline]] inline Vector shuffle(Vector a, Vector b, std::index_sequence<I...>) {
    return __builtin_shufflevector(a, b, Table[I]...);
}

// Lanes pixels of the kernel at a time, the arithmetic on colour alone.
template <class Layout, int Lanes, bool WithGamma>
struct BalanceBlock {
    using T = typename Layout::Component;
    using F = FloatVector<Lanes>;
    using Colour = ColourLanes<Layout, Lanes>;
    static constexpr std::make_index_sequence<Lanes> kLanes{};
    template <int J>
    static constexpr typename Colour::Table kGather = Colour::gather(J);
    template <int K>
    static constexpr typename Colour::Table kCollect = Colour::collect(K);
    template <int K>
    static constexpr typename Colour::Table kRestore = Colour::restoreAlpha(K);

    explicit BalanceBlock(const BalanceSettings& settings) {
        for (int j = 0; j < 3; ++j) {
            for (int i = 0; i < Lanes; ++i) {
                const int channel = (j * Lanes + i) % 3;
                scale[j][i] = settings.map.scale[channel];
                offset[j][i] = settings.map.offset[channel] * Layout::white;
            }
        }
        invGamma = inverseGamma(settings.gamma);
        upper = upperLimit<Layout>(settings);
    }

    void apply(const T* in, T* out) const {
        const F v[4] = {loadComponents<Lanes>(in), loadComponents<Lanes>(in + Lanes),
                        loadComponents<Lanes>(in + 2 * Lanes), loadComponents<Lanes>(in + 3 * Lanes)};
        F colour[3] = {shuffle<F, kGather<0>>(v[0], v[1], kLanes), shuffle<F, kGather<1>>(v[1], v[2], kLanes),
                       shuffle<F, kGather<2>>(v[2], v[3], kLanes)};
        for (int j = 0; j < 3; ++j) {
            const F m = WithGamma ? power<Lanes>(colour[j], invGamma) : colour[j];
            colour[j] = min<Lanes>(max<Lanes>(m * scale[j] + offset[j], F{}), F{} + upper);
        }
        [&]<int... K>(std::integer_sequence<int, K...>) {
            (store<K>(colour, v[K], out + K * Lanes), ...);
        }
        (std::make_integer_sequence<int, 4>{});
    }

    template <int K>
    [[gnu::always_inline]] static void store(const F (&colour)[3], F original, T* out) {
        constexpr int first = Colour::firstColour(K);
        const F collected = shuffle<F, kCollect<K>>(colour[first], colour[first < 2 ? first + 1 : 2], kLanes);
        storeComponents<Lanes>(out, shuffle<F, kRestore<K>>(collected, original, kLanes));
    }

    F scale[3], offset[3];
    float invGamma;
    float upper;
};

}  // namespace

void balanceBand(ImageBuffer& output, const ImageBuffer& input, const PixelRect& band, CpuFeatures features,
                 Progress& progress, const BalanceSettings& settings) {
    dispatchKernel(output, features, [&](auto layout, auto isa) {
        using Layout = decltype(layout);
        using T = typename Layout::Component;
        constexpr int lanes = kPixelLanes<decltype(isa)>;
        constexpr int pixelsPerBlock = lanes;
        const auto run = [&]<bool WithGamma>() {
            const BalanceBlock<Layout, lanes, WithGamma> block(settings);
            const BalancePixels<Layout, 4, WithGamma> single(settings);
            const auto out = ImageView<T>::of(output);
            const auto in = ImageView<T>::of(input);
            const PixelRect inputRect = in.hasPixels() ? in.rect : PixelRect::empty();
            T black[4] = {}, blackResult[4];
            single.apply(black, blackResult);
            forEachRow(band, progress, [&](int32_t y) {
                forEachInputSpan(
                    band, y, inputRect,
                    [&](int32_t begin, int32_t end) {
                        const T* source = in.at(begin, y);
                        T* target = out.at(begin, y);
                        int32_t x = begin;
                        for (; x + pixelsPerBlock <= end;
                             x += pixelsPerBlock, source += 4 * lanes, target += 4 * lanes)
                            block.apply(source, target);
                        for (; x < end; ++x, source += 4, target += 4)
                            single.apply(source, target);
                    },
                    [&](int32_t begin, int32_t end) {
                        for (T* target = out.at(begin, y); begin < end; ++begin, target += 4)
                            std::copy(blackResult, blackResult + 4, target);
                    });
            });
        };
        if (settings.gamma == 1.0f) {
            run.template operator()<false>();
        } else {
            run.template operator()<true>();
        }
    });
}

}  // namespace Tw::Image
