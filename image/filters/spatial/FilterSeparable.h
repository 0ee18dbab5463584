// FilterSeparable: a node that works in two passes, along the rows and then down the columns.
//
// `computeTile` is the horizontal pass over a band of rows, `verticalPassTile` the vertical pass over a
// band of columns. Unsplit (stage 0) the node runs both, through a temporary image of its own; after
// `splitPasses` the graph holds two nodes of one pass each (stage 1 and stage 2), the second owning the
// first, so that the scheduler sees and orders both.
#pragma once

#include <memory>

#include "image/graph/Filter.h"
#include "image/graph/GraphLinks.h"

namespace Tw::Image {

template <class Host>
class FilterSeparable : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    enum Stage : int32_t { BothPasses = 0, HorizontalPass = 1, VerticalPass = 2 };

    int passCount() const override { return stage == BothPasses ? 2 : 1; }
    // Only the unsplit node runs through a temporary, so only it may write over its input.
    bool canRunInPlace(int) const override { return stage == BothPasses; }

    void compute(Host& host, ImageBuffer& output, ImageBuffer* const* inputs) override {
        this->host = &host;
        this->outputImage = &output;
        this->inputImages = inputs;
        host.progressLevels().startNodePasses(static_cast<uint64_t>(passCount()));
        if (stage == VerticalPass) {
            host.thread(&FilterSeparable::runColumns, this, 0);
        } else if (stage == HorizontalPass) {
            host.thread(&FilterSeparable::runRows, this, 0);
        } else {
            // Rows first, over the rows the vertical pass will read, into a temporary of the output's
            // format; then down the columns into the output.
            const PixelRect region = this->inputRect(output.rect, 0);
            ImageBuffer horizontal(&host);
            horizontal.allocateLike(output, {output.rect.left, region.top, output.rect.right, region.bottom});
            this->outputImage = &horizontal;
            host.thread(&FilterSeparable::runRows, this, 0);
            host.progressLevels().finishNodePass();
            ImageBuffer* const passInput[] = {&horizontal};
            this->inputImages = passInput;
            this->outputImage = &output;
            host.thread(&FilterSeparable::runColumns, this, 0);
        }
        host.progressLevels().finishNodePass();
    }

    // The vertical pass over `band`, a band of whole columns of the output.
    virtual void verticalPassTile(const PixelRect& band, uint32_t threadIndex, uint32_t threadCount) = 0;
    virtual void horizontalPassDevice(DeviceContext& /*device*/) {}
    virtual void verticalPassDevice(DeviceContext& /*device*/) {}

    Stage stage = BothPasses;
    // The first-pass node that `splitPasses` made; this node owns it.
    std::unique_ptr<Node> firstPassNode;

protected:
    using Filter<Host>::Filter;

    // Makes this node the second of two: `first` (over this node's input) becomes its input and is owned
    // here.
    void becomeSecondPass(std::unique_ptr<Node> first) {
        detachInputs<Node>(*this);
        this->addInput(*first);
        firstPassNode = std::move(first);
        stage = VerticalPass;
    }

private:
    static int runRows(uint32_t slice, uint32_t sliceCount, uint32_t threadIndex, void* closure) {
        auto& filter = *static_cast<FilterSeparable*>(closure);
        filter.computeTile(bandOf(filter.outputImage->rect, slice, sliceCount), threadIndex, sliceCount);
        return 0;
    }
    static int runColumns(uint32_t slice, uint32_t sliceCount, uint32_t threadIndex, void* closure) {
        auto& filter = *static_cast<FilterSeparable*>(closure);
        filter.verticalPassTile(columnBandOf(filter.outputImage->rect, slice, sliceCount), threadIndex,
                                sliceCount);
        return 0;
    }
};

}  // namespace Tw::Image
