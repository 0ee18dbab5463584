// TintFilter: each pixel the colour of a four-point ramp at its luminance. Per pixel, alpha copied. No
// setting makes it an identity, so the node is never cut out.
#pragma once

#include "image/filters/tone/TintKernel.h"
#include "image/graph/Filter.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

template <class Host>
class TintFilter final : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    TintFilter(Node& input, const TintRamp& ramp) : Filter<Host>({&input}), ramp(ramp) {}

    const char* name() const override { return "tint"; }
    bool equals(const Node& other) const override {
        return this->sameKind(other) && ramp == static_cast<const TintFilter&>(other).ramp;
    }
    int tileFlags() const override { return 3; }
    bool canRunInPlace(int) const override { return true; }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        tintBand(*this->outputImage, *this->inputImages[0], band, this->host->cpuFeatures(), progress, ramp);
    }

    TintRamp ramp;
};

}  // namespace Tw::Image
