// GradientFilter: four coloured points blended smoothly, painted wherever it is asked; it reads no input.
// How fast the colours fall off follows from the output rectangle (see gradientFalloff), so a region of
// the frame may differ from the whole frame there.
#pragma once

#include "image/filters/tone/GradientKernel.h"
#include "image/graph/Filter.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

template <class Host>
class GradientFilter final : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    explicit GradientFilter(const GradientField& field) : field(field) {}

    const char* name() const override { return "gradient"; }
    bool equals(const Node& other) const override {
        return this->sameKind(other) && field == static_cast<const GradientFilter&>(other).field;
    }
    int tileFlags() const override { return 3; }

    void compute(Host& host, ImageBuffer& output, ImageBuffer* const* inputs) override {
        falloff = gradientFalloff(output.rect.left);
        Filter<Host>::compute(host, output, inputs);
    }
    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        gradientBand(*this->outputImage, band, this->host->cpuFeatures(), progress, field, falloff);
    }

    GradientField field;

private:
    // Set once per render, from the output's rectangle.
    float falloff = 0;
};

}  // namespace Tw::Image
