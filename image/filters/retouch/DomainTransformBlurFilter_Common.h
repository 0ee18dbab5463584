// The base of the domain transform's plane nodes (_DX, _DY, _AddEdges): a per-band kernel over one
// `scale`, producing one float channel. The main node builds these in place and links them itself when it
// splits into passes.
#pragma once

#include <algorithm>
#include <initializer_list>

#include "image/filters/retouch/DomainTransformBlurCommon.h"
#include "image/graph/Filter.h"
#include "image/graph/GraphLinks.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// `rect` one column wider on the right, within `bounds`: a derivative reads the pixel after each one.
inline PixelRect withNextColumn(const PixelRect& rect, const PixelRect& bounds) {
    if (rect.isInfinite() || rect.isEmpty()) return rect.intersect(bounds);
    const int32_t right = rect.right == PixelRect::kMax ? rect.right : rect.right + 1;
    return PixelRect{rect.left, rect.top, right, rect.bottom}.intersect(bounds);
}

template <class Host, auto ComputeTile>
class DomainTransformBlurFilter_Common : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    bool equals(const Node& other) const override {
        return this->sameKind(other) &&
               static_cast<const DomainTransformBlurFilter_Common&>(other).scale == scale;
    }
    // One float channel, held in the bytes of an 8-bit four-component image.
    ImageDescriptor outputFormat(const ImageDescriptor& given) const override {
        ImageDescriptor plane = given;
        plane.channels = 1;
        plane.formatIndex = ImageDescriptor::Float32;
        return plane;
    }
    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        ComputeTile(*this->outputImage, this->inputImages, band, this->host->cpuFeatures(), progress, scale);
    }

    // Makes `nodes` this node's inputs, in order, linked both ways.
    void linkInputs(std::initializer_list<Node*> nodes) {
        detachInputs<Node>(*this);
        for (Node* node : nodes)
            this->addInput(*node);
    }

    float scale = 0;

protected:
    DomainTransformBlurFilter_Common() = default;
};

}  // namespace Tw::Image
