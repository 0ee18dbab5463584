// DifferenceFilter: |a - b| per component, alpha included, over the region both inputs cover. Float
// differences have their sign cleared; integer ones are the exact unsigned difference.
#pragma once

#include "image/filters/retouch/DifferenceKernel.h"
#include "image/graph/Filter.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

template <class Host>
class DifferenceFilter final : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    DifferenceFilter(Node& a, Node& b) : Filter<Host>({&a, &b}) {}

    const char* name() const override { return "difference"; }
    PixelRect bounds() const override {
        return this->inputs[0]->bounds().intersect(this->inputs[1]->bounds());
    }
    const char* boundsExpression() const override { return "intersect(bounds1, bounds2)"; }
    bool canRunInPlace(int inputIndex) const override { return inputIndex == 0; }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        differenceBand(*this->outputImage, *this->inputImages[0], *this->inputImages[1], band,
                       this->host->cpuFeatures(), progress);
    }
};

}  // namespace Tw::Image
