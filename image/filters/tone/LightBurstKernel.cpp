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
// components of a pack's samples sit side by side in vectors as wide as the lanes' (4 P bytes), where the
// largest of each is one comparison of a whole vector: for 8-bit pixels, eight samples are eight loads of
// pixel words and one byte maximum. The loads are plain ones: on the processor measured (AMD Zen 3) the
// gather instruction took half as long again for the same eight words.
template <class T, int P>
struct Pack {
    // Pixels to a part: P at 8 bits, P / 2 at 16, P / 4 in floats.
    static constexpr int kPartPixels = P / static_cast<int>(sizeof(T));
    using Part = Vector<T, 4 * kPartPixels>;

    Part parts[sizeof(T)];
};

// The N pixels at base + offsets[first + i] bytes, i from 0 to N - 1, side by side in one vector, each
// pixel one load: of an integer word that holds its 8 or 16-bit components, or of its four floats.
template <class T, int N, int P, std::size_t... I>
[[gnu::always_inline]] inline Vector<T, 4 * N> pixelsAt(const std::byte* base, const IntVector<P>& offsets,
                                                        int first, std::index_sequence<I...>) {
    if constexpr (std::is_same_v<T, float>) {
        const FloatVector<4> pixels[N] = {
            loadStored<4>(reinterpret_cast<const float*>(base + offsets[first + I]))...};
        if constexpr (N == 1) {
            return pixels[0];
        } else {
            static_assert(N == 2);
            return __builtin_shufflevector(pixels[0], pixels[1], 0, 1, 2, 3, 4, 5, 6, 7);
        }
    } else {
        using Word = std::conditional_t<sizeof(T) == 1, uint32_t, uint64_t>;
        const auto word = [&](int lane) {
            Word w;
            std::memcpy(&w, base + offsets[lane], sizeof w);
            return w;
        };
        return std::bit_cast<Vector<T, 4 * N>>(Vector<Word, N>{word(first + static_cast<int>(I))...});
    }
}

// The P pixels at base + offsets[lane] bytes, lane by lane.
template <class T, int P>
[[gnu::always_inline]] inline Pack<T, P> gatherPixels(const std::byte* base, const IntVector<P>& offsets) {
    constexpr int n = Pack<T, P>::kPartPixels;
    Pack<T, P> pack;
    for (std::size_t part = 0; part < sizeof(T); ++part)
        pack.parts[part] =
            pixelsAt<T, n, P>(base, offsets, static_cast<int>(part) * n, std::make_index_sequence<n>{});
    return pack;
}

// The larger of each pair of components; a sample that is no number leaves `best` as it is.
template <class T, int P>
[[gnu::always_inline]] inline Pack<T, P> componentMax(const Pack<T, P>& best, const Pack<T, P>& sample) {
    Pack<T, P> larger;
    for (std::size_t part = 0; part < sizeof(T); ++part)
        larger.parts[part] = best.parts[part] < sample.parts[part] ? sample.parts[part] : best.parts[part];
    return larger;
}

// (best - p) * amount + p for Lanes components, cut toward zero at the integer depths.
template <int Lanes, class T>
[[gnu::always_inline]] inline void storeMix(T* out, const T* best, const T* p, float amount) {
    const FloatVector<Lanes> b = loadFloats<Lanes>(best), q = loadFloats<Lanes>(p);
    storeTruncated<Lanes>(out, (b - q) * amount + q);
}

// Pixels x0 .. x0 + count - 1 of row y, count at most P. `Clamped` reads each sample at its coordinates
// clamped to the input's rectangle; otherwise every sample must lie inside it.
template <class T, int P, bool Clamped>
[[gnu::always_inline]] inline void burstPack(const ImageView<T>& out, const ImageView<T>& in, int32_t x0,
                                             int32_t y, int count, const LightBurstRays& rays) {
    using F = FloatVector<P>;
    using I = IntVector<P>;
    using Pixels = Pack<T, P>;
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
            sx = sx < left ? left : sx;
            sx = sx > last ? last : sx;
            sy = sy < top ? top : sy;
            sy = sy > bottom ? bottom : sy;
        }
        return (sy - baseY) * stride + (sx - baseX) * kPixelBytes;
    };

    // The first sample is the pixel itself.
    Pixels p;
    if constexpr (Clamped) {
        p = gatherPixels<T, P>(base, offsetsAt(0.0f));
    } else {
        std::memcpy(&p, base, sizeof p);
    }
    Pixels best = rays.steps > 0 ? componentMax(Pixels{}, p) : Pixels{};
    float k = 1.0f;  // whole numbers are exact in a float up to 2^24, beyond any step count
    for (int32_t step = 1; step < rays.steps; ++step, k += 1.0f)
        best = componentMax(best, gatherPixels<T, P>(base, offsetsAt(k)));

    // The mix, P components at a time, and one pixel at a time where a short pack leaves fewer.
    T bestComponents[4 * P], pixelComponents[4 * P], partial[4 * P];
    std::memcpy(bestComponents, &best, sizeof best);
    std::memcpy(pixelComponents, &p, sizeof p);
    T* to = count == P ? out.at(x0, y) : partial;
    int c = 0;
    for (; c + P <= 4 * count; c += P)
        storeMix<P>(to + c, bestComponents + c, pixelComponents + c, rays.amount);
    for (; c < 4 * count; c += 4)
        storeMix<4>(to + c, bestComponents + c, pixelComponents + c, rays.amount);
    if (to == partial) std::memcpy(out.at(x0, y), partial, sizeof(T) * 4 * count);
}

// Pixels begin .. end - 1 of row y in packs of P, the last one short where the run ends within it.
template <class T, int P, bool Clamped>
void burstRun(const ImageView<T>& out, const ImageView<T>& in, int32_t begin, int32_t end, int32_t y,
              const LightBurstRays& rays) {
    for (int32_t x = begin; x < end; x += P)
        burstPack<T, P, Clamped>(out, in, x, y, std::min<int32_t>(P, end - x), rays);
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
    return input.grown(-int64_t{rays.steps}, -int64_t{rays.steps});
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
        constexpr int P = kPixelLanes<decltype(isa)>;
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
                burstRun<T, P, true>(out, in, band.left, band.right, y, rays);
                return;
            }
            // The rim at the left, whole packs inside, and what is left of the row.
            const int32_t innerBegin = std::clamp(inner.left, band.left, band.right);
            const int32_t innerEnd = std::clamp(inner.right, innerBegin, band.right);
            const int32_t packsEnd = innerBegin + (innerEnd - innerBegin) / P * P;
            burstRun<T, P, true>(out, in, band.left, innerBegin, y, rays);
            burstRun<T, P, false>(out, in, innerBegin, packsEnd, y, rays);
            burstRun<T, P, true>(out, in, packsEnd, band.right, y, rays);
        });
    });
}

}  // namespace Tw::Image
