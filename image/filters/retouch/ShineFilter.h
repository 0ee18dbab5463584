// ShineFilter: darkens bright spots on skin. The image after one edge-preserving blur is compared with
// the image after three in series: where the third is darker than the first, a highlight is being
// levelled, and the pixel is scaled down by that ratio, in the measure of `scale`:
//     out = o * (d / b * scale + (1 - scale))   where b > 0.001 and b > d, else out = o
// per component, alpha included, with o the input, b the first blur and d the third.
#pragma once

#include "image/filters/retouch/DomainTransformBlurFilter.h"
#include "image/filters/retouch/ShineKernel.h"
#include "image/graph/Filter.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

template <class Host, class Blur = DomainTransformBlurFilter<Host>>
class ShineFilter final : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    // Each blur reads the one before it and is guided by what it reads. The node reads the input, the
    // first blur and the third; the second reaches it through the third.
    ShineFilter(Node& input, const DomainTransformParams& blur, float scale)
        : blur1(input, blur, true),
          blur2(blur1, blur, true),
          blur3(blur2, blur, true),
          params(blur1.params),
          scale(scale) {
        this->addInput(input);
        this->addInput(blur1);
        this->addInput(blur3);
    }

    const char* name() const override { return "shine"; }
    bool equals(const Node& other) const override {
        if (!this->sameKind(other)) return false;
        const auto& o = static_cast<const ShineFilter&>(other);
        return params.sigmaX == o.params.sigmaX && params.sigmaY == o.params.sigmaY &&
               params.sigmaR == o.params.sigmaR && params.iterations == o.params.iterations &&
               scale == o.scale;
    }
    int passThroughInput() const override { return scale == 0 ? 0 : -1; }
    int tileFlags() const override { return 3; }
    bool canRunInPlace(int inputIndex) const override { return inputIndex == 0; }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        shineBand(*this->outputImage, *this->inputImages[0], *this->inputImages[1], *this->inputImages[2],
                  band, this->host->cpuFeatures(), progress, scale);
    }

    Blur blur1;
    Blur blur2;
    Blur blur3;
    DomainTransformParams params;  // the blurs' record, sigmas raised to their least
    float scale;                   // strength, 0 to 1
};

}  // namespace Tw::Image
