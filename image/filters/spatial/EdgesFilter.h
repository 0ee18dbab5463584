// EdgesFilter: an edge picture from two second-derivative responses of one image, input 0 across the
// rows (x) and input 1 down the columns (y). Per colour component the positive parts of the two make one
// strength, sqrt(x^2 + y^2); strengths below the threshold give no edge, and "invert" draws the edges dark
// on white. The picture is opaque whatever the image's alpha.
#pragma once

#include "image/filters/spatial/EdgesKernel.h"
#include "image/graph/Filter.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

template <class Host>
class EdgesFilter final : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    EdgesFilter(Node& across, Node& along, float thresh, bool invert)
        : Filter<Host>({&across, &along}), shading{thresh, invert} {}

    const char* name() const override { return shading.invert ? "EdgesInv" : "Edges"; }
    bool equals(const Node& other) const override {
        return this->sameKind(other) && shading == static_cast<const EdgesFilter&>(other).shading;
    }
    int tileFlags() const override { return 3; }
    // Each output pixel reads both responses at its own place before it is written.
    bool canRunInPlace(int) const override { return true; }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        edgesBand(*this->outputImage, *this->inputImages[0], *this->inputImages[1], band,
                  this->host->cpuFeatures(), progress, shading);
    }

    EdgeShading shading;
};

}  // namespace Tw::Image
