// MinMaxFilter: every component becomes the largest (MaxOp) or smallest (MinOp) value in a box of
// (2 xRadius + 1) by (2 yRadius + 1) pixels around it, alpha included. A box is a row window followed by
// a column window, so the node is separable: a pass along the rows, then one down the columns.
#pragma once

#include <cstdint>
#include <memory>

#include "image/filters/spatial/FilterSeparable.h"
#include "image/filters/spatial/MinMaxOps.h"
#include "image/filters/spatial/MinMaxPasses.h"

namespace Tw::Image {

template <class Host, class Op>
class MinMaxFilter : public FilterSeparable<Host> {
public:
    using Node = FilterBase<Host>;

    // Radii in pixels of the image being rendered.
    MinMaxFilter(Node& input, int32_t xRadius, int32_t yRadius)
        : FilterSeparable<Host>({&input}), xRadius(xRadius), yRadius(yRadius) {}

    const char* name() const override { return Op::name; }

    // Windows that reach past the input's bounds just grow smaller, so nothing beyond them is asked for.
    PixelRect inputRect(const PixelRect& rect, int /*inputIndex*/) const override {
        return rect.grown(xRadius, yRadius).intersect(this->inputs[0]->bounds());
    }
    int passThroughInput() const override { return xRadius > 0 || yRadius > 0 ? -1 : 0; }
    bool equals(const Node& other) const override {
        if (!this->sameKind(other)) return false;
        const auto& o = static_cast<const MinMaxFilter&>(other);
        return xRadius == o.xRadius && yRadius == o.yRadius && this->stage == o.stage;
    }
    // Two boxes in series are one box with the sum of the radii. An input that others read too must stay
    // as it is.
    MergeResult mergeWith(Node& input) override {
        if (!this->sameKind(input) || input.consumers.size() != 1) return MergeResult::No;
        const auto& before = static_cast<const MinMaxFilter&>(input);
        if (before.stage != this->stage) return MergeResult::No;
        xRadius += before.xRadius;
        yRadius += before.yRadius;
        return MergeResult::Folded;
    }
    // Small boxes read a pixel of context; larger ones reach too far for tiles.
    int tileFlags() const override { return xRadius < 2 && yRadius < 2 ? 2 : 0; }

    // From radius 2 on both axes the graph holds the two passes as two nodes: a new first node along the
    // rows over this node's input, and this node down the columns over it.
    void splitPasses(Host& /*host*/) override {
        if (this->stage != FilterSeparable<Host>::BothPasses || xRadius < 2 || yRadius < 2) return;
        auto first = std::make_unique<MinMaxFilter>(*this->inputs[0], xRadius, 0);
        first->stage = FilterSeparable<Host>::HorizontalPass;
        xRadius = 0;
        this->becomeSecondPass(std::move(first));
    }
    // The unsplit node holds the rows pass of its output in a temporary of its own.
    uint64_t scratchBytes(const DeviceContext* /*device*/, const PixelRect& rect,
                          const ImageDescriptor& format) const override {
        if (this->stage != FilterSeparable<Host>::BothPasses) return 0;
        return regionBytes(rect, format.channels, format.formatIndex);
    }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        minMaxPass<Op>(*this->inputImages[0], *this->outputImage, band, this->host->cpuFeatures(), progress,
                       xRadius, false);
    }
    void verticalPassTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        minMaxPass<Op>(*this->inputImages[0], *this->outputImage, band, this->host->cpuFeatures(), progress,
                       yRadius, true);
    }

    int32_t xRadius;
    int32_t yRadius;
};

}  // namespace Tw::Image
