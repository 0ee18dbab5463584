// The tones of a frame as Auto-Balance measures them: a histogram of 256 bins of each pixel's largest
// colour component (alpha is not looked at), and the levels below which given shares of the pixels lie.
//
// Each worker counts its band into a table of its own and merges it into one shared record with atomic
// additions: integer sums, so the record is the same for any number of workers and any order of merging.
//
// The counting kernel takes the processor's features and a progress sink rather than the host, so that
// it compiles once, in ToneHistogram.cpp, whatever the hosts the filters are built for.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

inline constexpr int kToneBins = 256;

using ToneCounts = std::array<uint32_t, kToneBins>;

// Adds each pixel of `band` of `input` to the bin of its largest colour component, as a tone from 0 to
// 255: 8-bit components are their own tone, 16-bit ones are scaled from 32768 and float ones from 1, and
// anything above white counts as 255. At float depth a NaN component counts as nothing, and a pixel with
// no component above 0 goes to bin 0. `band` must lie within the input's rectangle.
void countTones(const ImageBuffer& input, const PixelRect& band, CpuFeatures features, Progress& progress,
                ToneCounts& counts);

// The counts of all workers, and how many pixels they saw.
class SharedToneCounts {
public:
    void add(const ToneCounts& band, uint32_t pixels) {
        pixelCount_.fetch_add(pixels, std::memory_order_relaxed);
        for (int bin = 0; bin < kToneBins; ++bin)
            counts_[bin].fetch_add(band[bin], std::memory_order_relaxed);
    }
    // Read once every worker has added its band.
    ToneCounts counts() const {
        ToneCounts result;
        for (int bin = 0; bin < kToneBins; ++bin)
            result[bin] = counts_[bin].load(std::memory_order_relaxed);
        return result;
    }
    uint32_t pixelCount() const { return pixelCount_.load(std::memory_order_relaxed); }

private:
    std::array<std::atomic<uint32_t>, kToneBins> counts_{};
    std::atomic<uint32_t> pixelCount_{0};
};

// Two bins of the histogram: `low` the largest bin with at most lowShare of the pixels below it, `high`
// the largest bin with at most highShare of the pixels at or below it (0 when bin 0 alone holds more).
struct ToneLevels {
    int low = 0;
    int high = 0;
};

ToneLevels findToneLevels(const ToneCounts& histogram, uint32_t pixelCount, float lowShare, float highShare);

}  // namespace Tw::Image
