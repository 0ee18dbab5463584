// LightBurstFilter: streaks the bright parts of a picture away from a centre. Each pixel looks along its
// ray towards the centre, `radius` pixels long, and moves towards the brightest value it meets there,
// component by component, alpha included, by `amount`. A radius of 0 meets nothing, so the picture fades
// towards transparent black by the amount. The radius is in pixels of the rendered frame at any
// downsampling: a burst reaches as many pixels of a reduced frame as of a full one.
#pragma once

#include "image/core/Exception.h"
#include "image/filters/tone/LightBurstKernel.h"
#include "image/graph/Filter.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

template <class Host>
class LightBurstFilter final : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    // The centre in pixels of the rendered frame, `amount` a fraction.
    LightBurstFilter(Node& input, float radius, float centerX, float centerY, float amount)
        : Filter<Host>({&input}), radius(radius), centerX(centerX), centerY(centerY), amount(amount) {}

    const char* name() const override { return "light burst"; }
    // A ray's samples lie within its length of the pixel; beyond the input they are clamped to it.
    PixelRect inputRect(const PixelRect& rect, int inputIndex) const override {
        const int32_t reach = lightBurstSteps(radius);
        return rect.grown(reach, reach).intersect(this->inputs[inputIndex]->bounds());
    }
    bool equals(const Node& other) const override {
        if (!this->sameKind(other)) return false;
        const auto& o = static_cast<const LightBurstFilter&>(other);
        return radius == o.radius && centerX == o.centerX && centerY == o.centerY && amount == o.amount;
    }

    void compute(Host& host, ImageBuffer& output, ImageBuffer* const* inputs) override {
        // Told here, on the calling thread, so that the host shows why.
        if (!lightBurstReaches(*inputs[0], lightBurstSteps(radius))) {
            throw Exception("Light Burst", "the frame's rows are too long for rays of this radius");
        }
        Filter<Host>::compute(host, output, inputs);
    }
    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        lightBurstBand(*this->outputImage, *this->inputImages[0], band, this->host->cpuFeatures(), progress,
                       {lightBurstSteps(radius), centerX, centerY, amount});
    }

    float radius;
    float centerX, centerY;
    float amount;
};

}  // namespace Tw::Image
