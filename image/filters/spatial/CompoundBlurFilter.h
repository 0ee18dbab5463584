// CompoundBlurFilter: blurs input 0 (the source) by a box whose size varies from pixel to pixel with the
// luminance of input 1 (the blur map). Each pixel becomes the mean of the source over a box of half width
// h around it, h from 0 where the map is black to `radiusX` where it is white (the reverse with
// `invert`). The box's mean is read from a summed-area table of the source over its region of interest,
// so the cost of a pixel does not grow with its box; fractional box edges interpolate the table, so that
// the blur changes smoothly with the map.
//
// The one half width, from `radiusX`, serves both axes: `radiusY` sets only how far above and below the
// output the table reaches, and a box that reaches past the table is cut there, its mean taken over what
// is left, so nothing darkens at the frame's edges. The table's float sums make even a box of one pixel
// the difference of four sums, which is not the source's value bit for bit on a large frame (see
// CompoundBlurTable.h): no setting makes the node an identity, so it is never passed over.
#pragma once

#include <atomic>
#include <cstdint>

#include "image/filters/spatial/BlurFilterBase.h"
#include "image/filters/spatial/CompoundBlurKernel.h"
#include "image/filters/spatial/CompoundBlurTable.h"
#include "image/graph/Filter.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// What one processor run holds: the table over its rectangle, built in place (CompoundBlurTable.h), and
// the map as the boxes read it, which is a copy in the frame's format when the host gave it in another. The
// table lies within a border of one cell of zeros, which is what the boxes read for a cell outside it.
struct CompoundBlurRun {
    template <class Host>
    CompoundBlurRun(Host& host, const ImageBuffer& source, const ImageBuffer& givenMap,
                    const ImageBuffer& output, const PixelRect& region)
        : tableWithBorder(&host), table(&host), mapCopy(&host), map(&givenMap) {
        tableWithBorder.allocate(region.grown(1, 1), floatFormatLike(source));
        tableWithBorder.clearOutside(tableWithBorder.rect, region);
        table.viewOf(tableWithBorder, region);
        if (givenMap.hasStorage() && givenMap.pixelFormat() != output.pixelFormat()) {
            mapCopy.allocateLike(output, givenMap.rect);
            mapCopy.copyFrom(givenMap);
            map = &mapCopy;
        }
    }

    ImageBuffer tableWithBorder;
    ImageBuffer table;
    ImageBuffer mapCopy;
    const ImageBuffer* map;
    // The next strip of the output that a worker takes for the boxes.
    std::atomic<int32_t> nextStrip{0};
};

template <class Host>
class CompoundBlurFilter final : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    // Radii in pixels of the image being rendered.
    CompoundBlurFilter(Node& source, Node& map, float radiusX, float radiusY, bool invert)
        : Filter<Host>({&source, &map}), radiusX(radiusX), radiusY(radiusY), invert(invert) {}

    const char* name() const override { return "compound blur"; }

    // The source as far as the largest box reaches, and what it has of that; the map only at the output's
    // own pixels.
    PixelRect inputRect(const PixelRect& rect, int inputIndex) const override {
        const Node& input = *this->inputs[static_cast<std::size_t>(inputIndex)];
        if (inputIndex == 1) return rect.intersect(input.bounds());
        return rect.grown(blurMargin(radiusX), blurMargin(radiusY)).intersect(input.bounds());
    }
    bool equals(const Node& other) const override {
        if (!this->sameKind(other)) return false;
        const auto& o = static_cast<const CompoundBlurFilter&>(other);
        return radiusX == o.radiusX && radiusY == o.radiusY && invert == o.invert;
    }
    // Row sums, column sums and the boxes, each over the whole region in turn; where each worker sums the
    // columns it reads as it goes (compoundBlurSumsInWindows), the second pass has nothing to do.
    int passCount() const override { return 3; }
    uint64_t scratchBytes(const DeviceContext* /*device*/, const PixelRect& rect,
                          const ImageDescriptor& /*format*/) const override {
        return regionBytes(inputRect(rect, 0).grown(1, 1), 4, ImageDescriptor::Float32);
    }

    void compute(Host& host, ImageBuffer& output, ImageBuffer* const* inputs) override {
        this->host = &host;
        this->outputImage = &output;
        this->inputImages = inputs;
        const PixelRect region = inputRect(output.rect, 0);
        if (region.isEmpty()) {
            // No source within reach of the output: it reads as transparent black.
            output.clear(output.rect);
            return;
        }
        CompoundBlurRun run(host, *inputs[0], *inputs[1], output, region);
        run_ = &run;
        struct EndOfRun {
            CompoundBlurRun*& run;
            ~EndOfRun() { run = nullptr; }
        } endOfRun{run_};

        ProgressLevels& levels = host.progressLevels();
        levels.startNodePasses(3);
        host.thread(&CompoundBlurFilter::rowSumBands, this, 0);
        levels.finishNodePass();
        if (!compoundBlurSumsInWindows(region, radiusX))
            host.thread(&CompoundBlurFilter::columnSumBands, this, 0);
        levels.finishNodePass();
        host.thread(&CompoundBlurFilter::boxBands, this, 0);
        levels.finishNodePass();
    }

    // A band of the output, from the table (see compoundBlurBand), by this worker alone.
    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        std::atomic<int32_t> nextStrip{0};
        boxes(band, nextStrip, threadIndex);
    }

    float radiusX;
    float radiusY;
    bool invert;

private:
    static int rowSumBands(uint32_t slice, uint32_t sliceCount, uint32_t threadIndex, void* closure) {
        auto& filter = *static_cast<CompoundBlurFilter*>(closure);
        HostProgress<Host> progress(*filter.host, threadIndex);
        ImageBuffer& table = filter.run_->table;
        compoundBlurRowSums(*filter.inputImages[0], table, bandOf(table.rect, slice, sliceCount),
                            filter.host->cpuFeatures(), progress);
        return 0;
    }
    static int columnSumBands(uint32_t slice, uint32_t sliceCount, uint32_t threadIndex, void* closure) {
        auto& filter = *static_cast<CompoundBlurFilter*>(closure);
        HostProgress<Host> progress(*filter.host, threadIndex);
        ImageBuffer& table = filter.run_->table;
        compoundBlurColumnSums(table, columnBandOf(table.rect, slice, sliceCount), filter.host->cpuFeatures(),
                               progress);
        return 0;
    }
    // The workers take the output's strips in turn.
    static int boxBands(uint32_t /*slice*/, uint32_t /*sliceCount*/, uint32_t threadIndex, void* closure) {
        auto& filter = *static_cast<CompoundBlurFilter*>(closure);
        filter.boxes(filter.outputImage->rect, filter.run_->nextStrip, threadIndex);
        return 0;
    }

    void boxes(const PixelRect& band, std::atomic<int32_t>& nextStrip, uint32_t threadIndex) {
        HostProgress<Host> progress(*this->host, threadIndex);
        compoundBlurBand(*this->outputImage, run_->table, *run_->map, band, nextStrip,
                         this->host->cpuFeatures(), progress, radiusX, invert);
    }

    // The run under way, during `compute` only.
    CompoundBlurRun* run_ = nullptr;
};

}  // namespace Tw::Image
