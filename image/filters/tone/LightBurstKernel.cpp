#include "image/filters/tone/LightBurstKernel.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

#include "image/graph/ImageView.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/StoredVectors.h"
#include "image/graph/VectorMath.h"

namespace Tw::Image {

namespace {

// The kernel runs on packs of P neighbouring pixels of a row, one lane of an integer or float vector per
// pixel: each lane follows its own ray, so the samples of a step lie anywhere and are gathered. The
// components of a pack's samples sit side by side in one vector, where the largest of each is one
// comparison of the whole vector: for 8-bit pixels, eight samples are one gather of pixel words and one
// byte maximum.
template <class T, int P>
using PackComponents = Vector<T, 4 * P>;

template <int P>
IntVector<P> laneNumbers() {
    IntVector<P> lanes;
    for (int lane = 0; lane < P; ++lane)
        lanes[lane] = lane;
    return lanes;
}

// Two vectors side by side.
template <class V>
[[gnu::always_inline]] inline auto joined(V low, V high) {
    constexpr std::size_t n = sizeof(V) / sizeof(low[0]);
    return [&]<std::size_t... I>(std::index_sequence<I...>) {
        using Element = std::remove_cvref_t<decltype(low[0])>;
        return Vector<Element, 2 * n>(__builtin_shufflevector(low, high, I...));
    }
    (std::make_index_sequence<2 * n>{});
}

// Pixels first .. first + count - 1 of `pixels` side by side.
template <int First, int Count>
[[gnu::always_inline]] inline auto joinedPixels(const FloatVector<4>* pixels) {
    if constexpr (Count == 1) {
        return pixels[First];
    } else {
        return joined(joinedPixels<First, Count / 2>(pixels),
                      joinedPixels<First + Count / 2, Count / 2>(pixels));
    }
}

// The components of the P pixels at base + offsets[lane] bytes, lane by lane.
template <class T, int P, class Variant>
[[gnu::always_inline]] inline PackComponents<T, P> gatherPixels(const std::byte* base, IntVector<P> offsets) {
    using Pack = PackComponents<T, P>;
#if (defined(__x86_64__) || defined(__i386__)) && !defined(__clang__) && !defined(TW_BASELINE_KERNELS_ONLY)
    // The processor's gathers, called as g++ builtins, which it checks against the instruction set only
    // once they are inlined into the AVX2 variant.
    if constexpr (std::is_same_v<Variant, Isa::Avx2> && P == 8 && sizeof(T) == 1) {
        return std::bit_cast<Pack>(__builtin_ia32_gathersiv8si(
            IntVector<8>{}, reinterpret_cast<const int*>(base), offsets, IntVector<8>{} - 1, 1));
    } else if constexpr (std::is_same_v<Variant, Isa::Avx2> && P == 8 && sizeof(T) == 2) {
        using Words = Vector<long long, 4>;
        const auto half = [&](IntVector<4> part) {
            return __builtin_ia32_gathersiv4di(Words{}, reinterpret_cast<const long long*>(base), part,
                                               Words{} - 1, 1);
        };
        return std::bit_cast<Pack>(joined(half(__builtin_shufflevector(offsets, offsets, 0, 1, 2, 3)),
                                          half(__builtin_shufflevector(offsets, offsets, 4, 5, 6, 7))));
    }
#endif
    if constexpr (std::is_same_v<T, float>) {
        // Each pixel one load of its four components.
        FloatVector<4> pixels[P];
        for (int lane = 0; lane < P; ++lane)
            pixels[lane] = loadStored<4>(reinterpret_cast<const float*>(base + offsets[lane]));
        return joinedPixels<0, P>(pixels);
    } else {
        // A pixel of 8 or 16-bit components as one integer word.
        using Word = std::conditional_t<sizeof(T) == 1, uint32_t, uint64_t>;
        const auto word = [&](int lane) {
            Word w;
            std::memcpy(&w, base + offsets[lane], sizeof w);
            return w;
        };
        return [&]<std::size_t... Lane>(std::index_sequence<Lane...>) {
            return std::bit_cast<Pack>(Vector<Word, P>{word(Lane)...});
        }
        (std::make_index_sequence<P>{});
    }
}

// The larger of each pair of components; a sample that is no number leaves `best` as it is.
template <class V>
[[gnu::always_inline]] inline V componentMax(V best, V sample) {
    return best < sample ? sample : best;
}

// (best - p) * amount + p for Lanes components, cut toward zero at the integer depths.
template <int Lanes, class T>
[[gnu::always_inline]] inline void storeMix(T* out, const T* best, const T* p, float amount) {
    const FloatVector<Lanes> b = loadFloats<Lanes>(best), q = loadFloats<Lanes>(p);
    storeTruncated<Lanes>(out, (b - q) * amount + q);
}

// Pixels x0 .. x0 + count - 1 of row y, count at most P. `Clamped` reads each sample at its coordinates
// clamped to the input's rectangle; otherwise every sample must lie inside it.
template <class T, int P, class Variant, bool Clamped>
[[gnu::always_inline]] inline void burstPack(const ImageView<T>& out, const ImageView<T>& in, int32_t x0,
                                             int32_t y, int count, const LightBurstRays& rays) {
    using F = FloatVector<P>;
    using I = IntVector<P>;
    using Pack = PackComponents<T, P>;
    constexpr int32_t kPixelBytes = 4 * sizeof(T);
    const I lanes = laneNumbers<P>();

    // The unit vector towards the centre, 0 where there is no direction to take.
    const F dx = rays.centerX - __builtin_convertvector(lanes + x0, F);
    const F dy = F{} + (rays.centerY - static_cast<float>(y));
    const F len = squareRoot<P>(dx * dx + dy * dy);
    const F ux = dx / len, uy = dy / len;
    const auto along = (len > 0.0f) & (ux == ux) & (uy == uy);
    const F stepX = along ? ux : F{}, stepY = along ? uy : F{};

    // Samples are addressed from the pack's first pixel, or from the input's pixel nearest it, so that
    // each lies within a few ray lengths of the base, whatever the size of the frame.
    const PixelRect& r = in.rect;
    const int32_t baseX = Clamped ? std::clamp(x0, r.left, r.right - 1) : x0;
    const int32_t baseY = Clamped ? std::clamp(y, r.top, r.bottom - 1) : y;
    const std::byte* base = reinterpret_cast<const std::byte*>(in.at(baseX, baseY));
    const auto stride = static_cast<int32_t>(in.stride);
    const auto offsetsAt = [&](float k) {
        I sx = lanes + x0 + __builtin_convertvector(k * stepX, I);
        I sy = y + __builtin_convertvector(k * stepY, I);
        if constexpr (Clamped) {
            const I left = I{} + r.left, last = I{} + (r.right - 1);
            const I top = I{} + r.top, bottom = I{} + (r.bottom - 1);
            sx = sx < left ? left : sx > last ? last : sx;
            sy = sy < top ? top : sy > bottom ? bottom : sy;
        }
        return (sy - baseY) * stride + (sx - baseX) * kPixelBytes;
    };

    // The first sample is the pixel itself.
    Pack p;
    if constexpr (Clamped) {
        p = gatherPixels<T, P, Variant>(base, offsetsAt(0.0f));
    } else {
        std::memcpy(&p, base, sizeof p);
    }
    Pack best = rays.steps > 0 ? componentMax(Pack{}, p) : Pack{};
    float k = 1.0f;  // whole numbers are exact in a float up to 2^24, beyond any step count
    for (int32_t step = 1; step < rays.steps; ++step, k += 1.0f)
        best = componentMax(best, gatherPixels<T, P, Variant>(base, offsetsAt(k)));

    // The mix, a vector of floats at a time and one pixel at a time for a pack's odd pixel at its end.
    T bestComponents[4 * P], pixelComponents[4 * P], partial[4 * P];
    std::memcpy(bestComponents, &best, sizeof best);
    std::memcpy(pixelComponents, &p, sizeof p);
    T* to = count == P ? out.at(x0, y) : partial;
    constexpr int kLanes = kPixelLanes<Variant>;
    int c = 0;
    for (; c + kLanes <= 4 * count; c += kLanes)
        storeMix<kLanes>(to + c, bestComponents + c, pixelComponents + c, rays.amount);
    for (; c < 4 * count; c += 4)
        storeMix<4>(to + c, bestComponents + c, pixelComponents + c, rays.amount);
    if (to == partial) std::memcpy(out.at(x0, y), partial, sizeof(T) * 4 * count);
}

// Pixels begin .. end - 1 of row y in packs of P, the last one short where the run ends within it.
template <class T, int P, class Variant, bool Clamped>
void burstRun(const ImageView<T>& out, const ImageView<T>& in, int32_t begin, int32_t end, int32_t y,
              const LightBurstRays& rays) {
    for (int32_t x = begin; x < end; x += P)
        burstPack<T, P, Variant, Clamped>(out, in, x, y, std::min<int32_t>(P, end - x), rays);
}

// Whether a ray's direction may take a step longer than one pixel. In single precision, (dx, dy) / len
// is at most 1 in length, except where dx * dx and dy * dy fall below the normal floats and lose their
// precision: at a pixel whose distance from the centre is below 2^-63 yet not 0, which only a centre
// coordinate that close to 0 can give.
bool stepsMayOvershoot(const LightBurstRays& rays) {
    const auto nearZero = [](float c) { return c != 0 && std::abs(c) < 0x1p-62f; };
    return nearZero(rays.centerX) || nearZero(rays.centerY);
}

// Where the straight kernel may run: the input's rectangle less `steps` on each side.
PixelRect unclampedRect(const PixelRect& input, const LightBurstRays& rays, RaySampling sampling) {
    if (sampling == RaySampling::ClampedEverywhere || stepsMayOvershoot(rays)) return PixelRect::empty();
    return {input.left + rays.steps, input.top + rays.steps, input.right - rays.steps,
            input.bottom - rays.steps};
}

}  // namespace

bool lightBurstReaches(const ImageBuffer& input, int32_t steps) {
    if (!input.hasStorage() || input.rect.isEmpty()) return true;
    // Clamped samples stay in the input, and a step is shorter than two pixels (see stepsMayOvershoot),
    // so a sample lies within these many rows and columns of its pack's base; a pack spans 8 pixels.
    const int64_t reach = 2 * int64_t{steps} + 8;
    const int64_t rows = std::min<int64_t>(input.rect.height() - 1, reach);
    const int64_t columns = std::min<int64_t>(input.rect.width() - 1, reach);
    const int64_t bytes = rows * std::abs(int64_t{input.rowStride()}) + columns * input.bytesPerPixel();
    return bytes <= std::numeric_limits<int32_t>::max();
}

void lightBurstBand(ImageBuffer& output, const ImageBuffer& input, const PixelRect& band,
                    CpuFeatures features, Progress& progress, const LightBurstRays& rays,
                    RaySampling sampling) {
    dispatchDepthKernel(output, features, [&](auto layout, auto isa) {
        using T = typename decltype(layout)::Component;
        using Variant = decltype(isa);
        constexpr int P = kPixelLanes<Variant>;
        const auto out = ImageView<T>::of(output);
        // An input without pixels is one transparent black pixel that every sample clamps to.
        static constexpr T kTransparent[4] = {};
        ImageView<T> in = ImageView<T>::of(input);
        if (!in.hasPixels()) {
            in = {{0, 0, 1, 1}, const_cast<std::byte*>(reinterpret_cast<const std::byte*>(kTransparent)), 0};
        }
        const PixelRect inner = unclampedRect(in.rect, rays, sampling);
        forEachRow(band, progress, [&](int32_t y) {
            if (inner.isEmpty() || y < inner.top || y >= inner.bottom) {
                burstRun<T, P, Variant, true>(out, in, band.left, band.right, y, rays);
                return;
            }
            // The rim at the left, whole packs inside, and what is left of the row.
            const int32_t innerBegin = std::clamp(inner.left, band.left, band.right);
            const int32_t innerEnd = std::clamp(inner.right, innerBegin, band.right);
            const int32_t packsEnd = innerBegin + (innerEnd - innerBegin) / P * P;
            burstRun<T, P, Variant, true>(out, in, band.left, innerBegin, y, rays);
            burstRun<T, P, Variant, false>(out, in, innerBegin, packsEnd, y, rays);
            burstRun<T, P, Variant, true>(out, in, packsEnd, band.right, y, rays);
        });
    });
}

}  // namespace Tw::Image
