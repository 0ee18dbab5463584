// Filter: a node that processes pixels, and FilterLayer: the source node that stands for a host layer.
//
// A filter supplies a constructor that takes its inputs and parameters (in reduced units), `name`, and
// `computeTile`; as far as they apply, `equals`, `passThroughInput`, `canRunInPlace`, `bounds` and
// `inputRect`, `passCount`, `scratchBytes` and `mergeWith`. The common `compute` stores the images and
// runs `computeTile` once per worker on one horizontal band of the output each.
#pragma once

#include "image/graph/FilterBase.h"

namespace Tw::Image {

// Rows from h * i / n to h * (i + 1) / n of `rect`: bands differ by at most one row, and a band is empty
// when there are more workers than rows.
inline PixelRect bandOf(const PixelRect& rect, uint32_t slice, uint32_t sliceCount) {
    const int64_t height = rect.height();
    return {rect.left, static_cast<int32_t>(height * slice / sliceCount + rect.top), rect.right,
            static_cast<int32_t>(height * (slice + 1) / sliceCount + rect.top)};
}

// Columns from w * i / n to w * (i + 1) / n of `rect`, for passes that run down the columns.
inline PixelRect columnBandOf(const PixelRect& rect, uint32_t slice, uint32_t sliceCount) {
    const int64_t width = rect.width();
    return {static_cast<int32_t>(width * slice / sliceCount + rect.left), rect.top,
            static_cast<int32_t>(width * (slice + 1) / sliceCount + rect.left), rect.bottom};
}

template <class Host>
class Filter : public FilterBase<Host> {
public:
    void compute(Host& host, ImageBuffer& output, ImageBuffer* const* inputs) override {
        this->host = &host;
        outputImage = &output;
        inputImages = inputs;
        host.thread(&Filter::runBand, this, 0);
    }

protected:
    using FilterBase<Host>::FilterBase;

    // Set at the start of each `compute` and valid only during it.
    Host* host = nullptr;
    ImageBuffer* outputImage = nullptr;
    ImageBuffer* const* inputImages = nullptr;

private:
    static int runBand(uint32_t slice, uint32_t sliceCount, uint32_t threadIndex, void* closure) {
        auto& filter = *static_cast<Filter*>(closure);
        filter.computeTile(bandOf(filter.outputImage->rect, slice, sliceCount), threadIndex, sliceCount);
        return 0;
    }
};

template <class Host>
class FilterLayer final : public FilterBase<Host> {
public:
    // Over an image, or, when only rectangles are being worked out, over a rectangle alone.
    explicit FilterLayer(ImageBuffer* image, const PixelRect& rect = PixelRect::empty())
        : image(image), rect(rect) {}

    const char* name() const override { return "layer"; }
    PixelRect bounds() const override { return image ? image->validRect : rect; }
    int passCount() const override { return 0; }
    int runMode(const DeviceContext* device) const override {
        return this->deviceAvailable(device) && deviceCopy ? 1 : 0;
    }
    ImageBuffer* sourceImage() const override { return image; }
    // Reached only when the layer was handed a buffer of its own to fill. Where the layer doesn't reach,
    // as for a further layer smaller than the frame, the buffer is transparent black, as outside any input.
    void compute(Host& /*host*/, ImageBuffer& output, ImageBuffer* const* /*inputs*/) override {
        if (!image || output.pixels() == image->pixels()) return;
        output.clearOutside(output.rect, image->hasStorage() ? image->rect : PixelRect::empty());
        output.copyFrom(*image);
    }

    ImageBuffer* image;
    PixelRect rect;
    bool deviceCopy = false;
};

}  // namespace Tw::Image
