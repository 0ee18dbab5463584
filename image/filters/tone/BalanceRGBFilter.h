// BalanceRGBFilter: the master range map of BalanceFilter followed by a range map per channel.
#pragma once

#include <array>

#include "image/filters/tone/BalanceKernel.h"
#include "image/graph/Filter.h"

namespace Tw::Image {

template <class Host>
class BalanceRGBFilter : public Filter<Host> {
public:
    using Node = FilterBase<Host>;
    using Channels = std::array<float, 3>;  // red, green, blue

    BalanceRGBFilter(Node& input, float fromLow, float fromHigh, float toLow, float toHigh, float gamma,
                     const Channels& fromLowRGB, const Channels& fromHighRGB, const Channels& toLowRGB,
                     const Channels& toHighRGB, bool clamp)
        : Filter<Host>({&input}),
          fromLow(fromLow),
          fromHigh(fromHigh),
          toLow(toLow),
          toHigh(toHigh),
          gamma(gamma),
          fromLowRGB(fromLowRGB),
          fromHighRGB(fromHighRGB),
          toLowRGB(toLowRGB),
          toHighRGB(toHighRGB),
          clamp(clamp) {}

    const char* name() const override {
        if (gamma == 1.0f) return clamp ? "balance RGB clamp" : "balance RGB";
        return clamp ? "balance RGB gamma clamp" : "balance RGB gamma";
    }
    bool equals(const Node& other) const override {
        if (!this->sameKind(other)) return false;
        const auto& o = static_cast<const BalanceRGBFilter&>(other);
        return fromLow == o.fromLow && fromHigh == o.fromHigh && toLow == o.toLow && toHigh == o.toHigh &&
               gamma == o.gamma && fromLowRGB == o.fromLowRGB && fromHighRGB == o.fromHighRGB &&
               toLowRGB == o.toLowRGB && toHighRGB == o.toHighRGB && clamp == o.clamp;
    }
    // The gamma is left out on purpose: on neutral ranges a changed gamma has no effect.
    int passThroughInput() const override {
        const bool neutral = fromLowRGB == toLowRGB && fromHighRGB == toHighRGB && !clamp &&
                             fromLow == toLow && fromHigh == toHigh;
        return neutral ? 0 : -1;
    }
    bool canRunInPlace(int) const override { return true; }
    int tileFlags() const override { return 3; }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        balanceBand(*this->outputImage, *this->inputImages[0], band, this->host->cpuFeatures(), progress,
                    {scaleAndOffset(), gamma, clamp});
    }

    // The master map first, then the channel's own.
    virtual ScaleAndOffset scaleAndOffset() const {
        ScaleAndOffset result;
        float masterScale, masterOffset;
        rangeScale(fromLow, fromHigh, toLow, toHigh, masterScale, masterOffset);
        for (int c = 0; c < 3; ++c) {
            float scale, offset;
            rangeScale(fromLowRGB[c], fromHighRGB[c], toLowRGB[c], toHighRGB[c], scale, offset);
            result.scale[c] = masterScale * scale;
            result.offset[c] = scale * masterOffset + offset;
        }
        return result;
    }

    float fromLow, fromHigh, toLow, toHigh;
    float gamma;
    Channels fromLowRGB, fromHighRGB, toLowRGB, toHighRGB;
    bool clamp;
};

}  // namespace Tw::Image
