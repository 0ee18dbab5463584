// SharpenFilter: boosts each component's difference from the median of its 3 x 3 window,
//     out = (c - med) * amount + c
// alpha included. A median follows a step edge, so the edges of a picture gain no halo; only detail
// finer than the window stands out. Windows take the nearest pixel of the input where they leave it.
#pragma once

#include "image/filters/spatial/SharpenKernel.h"
#include "image/graph/Filter.h"
#include "image/graph/MedianWindows.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

template <class Host>
class SharpenFilter final : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    // `strength` as the user gives it, a fraction; the gain of the difference is three times that.
    SharpenFilter(Node& input, float strength) : Filter<Host>({&input}), amount(strength * 3.0f) {}

    const char* name() const override { return "sharpen"; }
    PixelRect inputRect(const PixelRect& rect, int inputIndex) const override {
        return medianWindowInputRect(rect, this->inputs[inputIndex]->bounds());
    }
    bool equals(const Node& other) const override {
        return this->sameKind(other) && amount == static_cast<const SharpenFilter&>(other).amount;
    }
    int passThroughInput() const override { return amount == 0 ? 0 : -1; }
    int tileFlags() const override { return 2; }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        sharpenBand(*this->outputImage, *this->inputImages[0], band, this->host->cpuFeatures(), progress,
                    amount);
    }

    float amount;
};

}  // namespace Tw::Image
