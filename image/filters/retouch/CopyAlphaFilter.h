// CopyAlphaFilter: red, green and blue of input 0 with the alpha of input 1, each the stored value as it
// is, over the region both inputs cover.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "image/filters/retouch/CopyAlphaKernel.h"
#include "image/graph/Filter.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

template <class Host>
class CopyAlphaFilter final : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    CopyAlphaFilter(Node& colour, Node& alpha) : Filter<Host>({&colour, &alpha}) {}

    const char* name() const override { return "CopyAlpha"; }
    PixelRect bounds() const override {
        return this->inputs[0]->bounds().intersect(this->inputs[1]->bounds());
    }
    const char* boundsExpression() const override { return "intersect(bounds1, bounds2)"; }
    int passThroughInput() const override { return this->inputs[0] == this->inputs[1] ? 0 : -1; }
    int tileFlags() const override { return 3; }
    bool canRunInPlace(int inputIndex) const override { return inputIndex == 0; }

    // Another CopyAlphaFilter as the colour input gives its own colour input in its place; as the alpha
    // input, its own alpha input. The relinking is done here, so the graph looks no further.
    MergeResult mergeWith(Node& input) override {
        if (std::strcmp(input.name(), name()) != 0) return MergeResult::No;
        const std::size_t index = this->inputs[0] == &input ? 0 : 1;
        if (this->inputs[index] != &input) return MergeResult::No;
        Node& replacement = *input.inputs[index];
        this->inputs[index] = &replacement;
        auto& consumers = input.consumers;
        consumers.erase(std::find(consumers.begin(), consumers.end(), this));
        replacement.consumers.push_back(this);
        return MergeResult::Stop;
    }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        copyAlphaBand(*this->outputImage, *this->inputImages[0], *this->inputImages[1], band,
                      this->host->cpuFeatures(), progress);
    }
};

}  // namespace Tw::Image
