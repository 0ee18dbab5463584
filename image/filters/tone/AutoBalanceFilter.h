// AutoBalanceFilter: stretches the tones of a frame between levels it measures itself. A histogram of each
// pixel's largest colour component over the whole input gives two levels, the tone below which a share
// `fromLow` of the pixels lies and the one up to which a share `fromHigh` lies; red, green and blue are
// then mapped linearly so that those levels become the tones `toLow` and `toHigh`. The only node that
// needs all of its input before it writes a pixel.
#pragma once

#include "image/filters/tone/BalanceKernel.h"
#include "image/filters/tone/ToneHistogram.h"
#include "image/graph/Filter.h"

namespace Tw::Image {

template <class Host>
class AutoBalanceFilter : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    // `fromLow` and `fromHigh` are shares of the pixels, `toLow` and `toHigh` tones, all as fractions.
    AutoBalanceFilter(Node& input, float fromLow, float fromHigh, float toLow, float toHigh, bool clamp)
        : Filter<Host>({&input}),
          fromLow(fromLow),
          fromHigh(fromHigh),
          toLow(toLow),
          toHigh(toHigh),
          clamp(clamp) {}

    const char* name() const override { return clamp ? "auto-balance clamp" : "auto-balance"; }
    // The histogram sees all that the input can give, whatever part of the output is asked for.
    PixelRect inputRect(const PixelRect& /*rect*/, int /*inputIndex*/) const override {
        return this->bounds();
    }
    bool equals(const Node& other) const override {
        if (!this->sameKind(other)) return false;
        const auto& o = static_cast<const AutoBalanceFilter&>(other);
        return fromLow == o.fromLow && fromHigh == o.fromHigh && toLow == o.toLow && toHigh == o.toHigh &&
               clamp == o.clamp;
    }
    // The identity test of a plain balance, although the from ends here are shares of pixels and the to
    // ends tones: the defaults, 10 % onto 10 and 90 % onto 90 without clamp, leave the frame as it is.
    int passThroughInput() const override {
        return !clamp && fromLow == toLow && fromHigh == toHigh ? 0 : -1;
    }
    bool canRunInPlace(int) const override { return true; }
    int tileFlags() const override { return 0; }

    // Two passes over the workers: the histogram of the input, then the map it gives.
    void compute(Host& host, ImageBuffer& output, ImageBuffer* const* inputs) override {
        ProgressLevels& levels = host.progressLevels();
        levels.startNodePasses(2);
        Counting counting{host, *inputs[0], {}};
        host.thread(&AutoBalanceFilter::countBand, &counting, 0);
        histogram = counting.record.counts();
        pixelCount = counting.record.pixelCount();
        levels.finishNodePass();
        Filter<Host>::compute(host, output, inputs);
        levels.finishNodePass();
    }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        balanceBand(*this->outputImage, *this->inputImages[0], band, this->host->cpuFeatures(), progress,
                    {scaleAndOffset(), 1.0f, clamp});
    }

    // The map of red, green and blue that takes the measured levels onto `toLow` and `toHigh`; none where
    // the levels meet. Unlike a plain balance, the slope has no limit.
    ScaleAndOffset scaleAndOffset() const {
        const ToneLevels levels = findToneLevels(histogram, pixelCount, fromLow, fromHigh);
        const float low = static_cast<float>(levels.low) / 255.0f;
        const float high = static_cast<float>(levels.high) / 255.0f;
        ScaleAndOffset result;
        if (low == high) return result;
        const float scale = (toHigh - toLow) / (high - low);
        for (int c = 0; c < 3; ++c)
            result.scale[c] = scale, result.offset[c] = toLow - low * scale;
        return result;
    }

    ToneCounts histogram{};
    uint32_t pixelCount = 0;
    float fromLow, fromHigh, toLow, toHigh;
    bool clamp;

private:
    struct Counting {
        Host& host;
        const ImageBuffer& input;
        SharedToneCounts record;
    };

    // One band of the input's rows into a table of the worker's own, then merged into the shared record.
    static int countBand(uint32_t slice, uint32_t sliceCount, uint32_t threadIndex, void* closure) {
        auto& counting = *static_cast<Counting*>(closure);
        const bool hasPixels = counting.input.pixels() != nullptr && !counting.input.rect.isEmpty();
        const PixelRect band =
            hasPixels ? bandOf(counting.input.rect, slice, sliceCount) : PixelRect::empty();
        ToneCounts counts{};
        HostProgress<Host> progress(counting.host, threadIndex);
        countTones(counting.input, band, counting.host.cpuFeatures(), progress, counts);
        const uint64_t pixels = band.isEmpty() ? 0 : static_cast<uint64_t>(band.width()) * band.height();
        counting.record.add(counts, static_cast<uint32_t>(pixels));
        return 0;
    }
};

}  // namespace Tw::Image
