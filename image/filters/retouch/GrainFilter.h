// GrainFilter: puts back into a smoothed image the fine detail that smoothing took away. The detail is
// the difference between the unsmoothed and the smoothed image less the median of that difference over
// each 3 x 3 window: what is left is pores, film grain and noise, while a shift of brightness between
// the two images, even over a few pixels, carries nothing over.
//     out = receiver + (d(centre) - med(d)) * amount,   d = detail - receiver
// per component, alpha included. Windows take each image's nearest pixel where they leave it.
#pragma once

#include "image/filters/retouch/GrainKernel.h"
#include "image/graph/Filter.h"
#include "image/graph/MedianWindows.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

template <class Host>
class GrainFilter final : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    // `detail` gives the detail (the unsmoothed image), `receiver` takes it (the smoothed one).
    GrainFilter(Node& detail, Node& receiver, float amount)
        : Filter<Host>({&detail, &receiver}), amount(amount) {}

    const char* name() const override { return "grain"; }
    PixelRect inputRect(const PixelRect& rect, int inputIndex) const override {
        return medianWindowInputRect(rect, this->inputs[inputIndex]->bounds());
    }
    bool equals(const Node& other) const override {
        return this->sameKind(other) && amount == static_cast<const GrainFilter&>(other).amount;
    }
    // Without an amount the node would give the receiver, input 1; the answer names input 0 all the same,
    // which no graph meets, since none builds the node without an amount.
    int passThroughInput() const override { return amount == 0 ? 0 : -1; }
    int tileFlags() const override { return 2; }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        grainBand(*this->outputImage, *this->inputImages[0], *this->inputImages[1], band,
                  this->host->cpuFeatures(), progress, amount);
    }

    float amount;
};

}  // namespace Tw::Image
