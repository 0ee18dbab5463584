// BlurLayersFilter: two edge-preserving blurs of one image, mixed back with the image. The second blur
// has a narrower range and so keeps fine texture; the texture it keeps, o - b2, is added back to the
// smooth layer in a measure:
//     out = (o - b2) * scale2 + ((b2 - b1) * scale1 + b1)
// per component, alpha included, with o the input, b1 the first blur and b2 the second. Integer results
// are limited to 0..white and truncated.
#pragma once

#include "image/filters/retouch/BlurLayersKernel.h"
#include "image/filters/retouch/DomainTransformBlurFilter.h"
#include "image/graph/Filter.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

template <class Host, class Blur = DomainTransformBlurFilter<Host>>
class BlurLayersFilter final : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    // Both blurs read `input` and take their guide from it.
    BlurLayersFilter(Node& input, const DomainTransformParams& first, const DomainTransformParams& second,
                     float scale1, float scale2)
        : textureBlurA(input, first, true),
          textureBlurB(input, second, true),
          params(textureBlurA.params),
          scale1(scale1),
          scale2(scale2) {
        this->addInput(input);
        this->addInput(textureBlurA);
        this->addInput(textureBlurB);
    }

    const char* name() const override { return "blurLayers"; }
    bool equals(const Node& other) const override {
        if (!this->sameKind(other)) return false;
        const auto& o = static_cast<const BlurLayersFilter&>(other);
        return scale1 == o.scale1 && scale2 == o.scale2;
    }
    // No texture and no mix: blur 1 alone. Both weights 1: the input again.
    int passThroughInput() const override {
        if (scale1 == 0.0f && scale2 == 0.0f) return 1;
        return scale1 == 1.0f && scale2 == 1.0f ? 0 : -1;
    }
    int tileFlags() const override { return 3; }
    bool canRunInPlace(int inputIndex) const override { return inputIndex == 0; }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        blurLayersBand(*this->outputImage, *this->inputImages[0], *this->inputImages[1],
                       *this->inputImages[2], band, this->host->cpuFeatures(), progress, scale1, scale2);
    }

    Blur textureBlurA;
    Blur textureBlurB;
    DomainTransformParams params;  // the first blur's record
    float scale1;                  // mix from blur 1 (0) to blur 2 (1)
    float scale2;                  // weight of the texture layer
};

}  // namespace Tw::Image
