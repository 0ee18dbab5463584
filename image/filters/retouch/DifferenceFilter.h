// DifferenceFilter: |a - b| per component, alpha included, over the region both inputs cover. Float
// differences have their sign cleared; integer ones are the exact unsigned difference.
#pragma once

#include <array>

#include "image/filters/retouch/CoveredRuns.h"
#include "image/filters/retouch/RetouchVectors.h"
#include "image/graph/Filter.h"

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
        dispatchKernel(*this->outputImage, this->host->cpuFeatures(), [&](auto layout, auto isa) {
            using T = typename decltype(layout)::Component;
            const std::array<ImageView<T>, 2> ins = {ImageView<T>::of(*this->inputImages[0]),
                                                     ImageView<T>::of(*this->inputImages[1])};
            HostProgress<Host> progress(*this->host, threadIndex);
            forEachCoveredRun<kPixelLanes<decltype(isa)>>(
                ImageView<T>::of(*this->outputImage), ins, band, progress,
                [&]<int Lanes>(const std::array<const T*, 2>& in, T* out) {
                    // Integer values convert to float exactly, so this is the integers' own difference.
                    storeTruncated<Lanes>(
                        out, absolute<Lanes>(loadFloats<Lanes>(in[0]) - loadFloats<Lanes>(in[1])));
                });
        });
    }
};

}  // namespace Tw::Image
