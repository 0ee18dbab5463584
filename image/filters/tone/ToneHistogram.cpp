#include "image/filters/tone/ToneHistogram.h"

#include <algorithm>
#include <cstring>

#include "image/graph/ImageView.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/PixelVector.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

namespace {

// The bins of Lanes pixels from `pixels`, one pixel a lane (not necessarily in memory order).
template <class Layout, int Lanes>
[[gnu::always_inline]] inline IntVector<Lanes> toneBins(const typename Layout::Component* pixels) {
    using T = typename Layout::Component;
    using F = FloatVector<Lanes>;
    using I = IntVector<Lanes>;
    if constexpr (sizeof(T) == 1) {
        // An 8-bit component is its own tone; the largest of three is taken on the whole numbers.
        I words;
        std::memcpy(&words, pixels, sizeof words);
        const auto component = [&](int position) { return (words >> (8 * position)) & 0xff; };
        const I red = component(Layout::red), green = component(Layout::green),
                blue = component(Layout::blue);
        const I largest = red > green ? red : green;
        return largest > blue ? largest : blue;
    } else {
        F planes[4];
        loadPixelPlanes<Lanes>(pixels, planes);
        // Starting from 0, and `max` keeping its first operand where the second is a NaN, a NaN component
        // is passed over and the largest is never below 0.
        const F largest = max<Lanes>(max<Lanes>(max<Lanes>(F{}, planes[Layout::red]), planes[Layout::green]),
                                     planes[Layout::blue]);
        const F scaled = sizeof(T) == 2 ? largest * 3.0517578e-5f * 255.0f : largest * 255.0f;
        const F tone = min<Lanes>(scaled, F{} + 255.0f);
        // Cut toward zero; a tone not above 0 is bin 0.
        return (tone > 0.0f) & __builtin_convertvector(tone, I);
    }
}

template <class Layout, int Lanes>
void countBand(const ImageBuffer& input, const PixelRect& band, Progress& progress, ToneCounts& counts) {
    using T = typename Layout::Component;
    // Neighbouring pixels of one tone would each wait for the increment of the one before in a single
    // table; lanes in turn add to four tables, summed at the end.
    std::array<ToneCounts, 4> tables{};
    const auto add = [&](IntVector<Lanes> bins) {
        for (int lane = 0; lane < Lanes; ++lane)
            ++tables[lane % 4][static_cast<uint32_t>(bins[lane])];
    };
    const auto in = ImageView<T>::of(input);
    forEachRow(band, progress, [&](int32_t y) {
        const T* pixels = in.at(band.left, y);
        int32_t x = band.left;
        for (; x + Lanes <= band.right; x += Lanes, pixels += 4 * Lanes)
            add(toneBins<Layout, Lanes>(pixels));
        if (x < band.right) {
            // The end of the row, padded with black pixels, which land in bin 0 and are taken out again.
            const int32_t rest = band.right - x;
            T padded[4 * Lanes] = {};
            std::copy(pixels, pixels + 4 * rest, padded);
            add(toneBins<Layout, Lanes>(padded));
            tables[0][0] -= static_cast<uint32_t>(Lanes - rest);
        }
    });
    for (int bin = 0; bin < kToneBins; ++bin)
        counts[bin] += tables[0][bin] + tables[1][bin] + tables[2][bin] + tables[3][bin];
}

// A count of pixels from a share of them, cut toward zero: nothing below 0 (or for a NaN), and no more
// than 32 bits hold.
uint32_t countOfShare(float share, float pixelCount) {
    const float count = share * pixelCount;
    if (!(count > 0.0f)) return 0;
    return count >= 4294967296.0f ? UINT32_MAX : static_cast<uint32_t>(count);
}

}  // namespace

void countTones(const ImageBuffer& input, const PixelRect& band, CpuFeatures features, Progress& progress,
                ToneCounts& counts) {
    dispatchKernel(input, features, [&](auto layout, auto isa) {
        countBand<decltype(layout), kPixelLanes<decltype(isa)>>(input, band, progress, counts);
    });
}

ToneLevels findToneLevels(const ToneCounts& histogram, uint32_t pixelCount, float lowShare, float highShare) {
    const float n = static_cast<float>(pixelCount);
    const uint32_t lowCount = countOfShare(lowShare, n);
    const uint32_t highCount = countOfShare(highShare, n);
    ToneLevels levels;
    uint32_t below = 0;  // pixels in the bins before `bin`
    for (int bin = 0; bin < kToneBins; ++bin) {
        if (below <= lowCount) levels.low = bin;
        below += histogram[bin];
        if (below <= highCount) levels.high = bin;
    }
    return levels;
}

}  // namespace Tw::Image
