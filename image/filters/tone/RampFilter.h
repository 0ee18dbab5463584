// RampFilter: a linear ramp of four colours, painted wherever it is asked; it reads no input. Named
// "solid" when its four colours are one, which the ramp then paints everywhere.
#pragma once

#include "image/filters/tone/RampKernel.h"
#include "image/graph/Filter.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

template <class Host>
class RampFilter final : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    explicit RampFilter(const LinearRamp& ramp) : ramp(ramp) {}

    const char* name() const override { return ramp.isSolid() ? "solid" : "ramp"; }
    bool equals(const Node& other) const override {
        return this->sameKind(other) && ramp == static_cast<const RampFilter&>(other).ramp;
    }
    int tileFlags() const override { return 3; }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        rampBand(*this->outputImage, band, this->host->cpuFeatures(), progress, ramp);
    }

    LinearRamp ramp;
};

}  // namespace Tw::Image
