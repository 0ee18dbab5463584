// GaussianBlurFilter: the Gaussian, or its first or second derivative, per axis, as a recursive filter
// whose cost per pixel does not grow with the radius.
//
// On the processor the node runs both of its passes itself: along the rows into a temporary of its own
// when both axes blur, then down the columns. After `splitPasses` the graph holds the two passes as two
// nodes, each with one axis left, and each of them runs the one pass it has.
#pragma once

#include <cstdint>
#include <memory>

#include "image/filters/spatial/BlurFilterBase.h"
#include "image/filters/spatial/GaussianBlurCoefficients.h"
#include "image/filters/spatial/GaussianBlurPasses.h"

namespace Tw::Image {

// What one processor run of the node holds: the coefficients of both axes, the source cut to what the
// output needs, and the result of the rows pass when the columns pass is to follow.
struct GaussianBlurRun {
    template <class Host>
    GaussianBlurRun(Host& host, const ImageBuffer& source, const ImageBuffer& output,
                    const BlurFilterBase<Host>& node)
        : x(makeGaussianBlurCoefficients(node.radiusX, node.kindX)),
          y(makeGaussianBlurCoefficients(node.radiusY, node.kindY)),
          paddedSource(&host),
          passImage(&host) {
        paddedSource.viewOf(source, output.rect.grown(blurMargin(3.5 * double{node.radiusX}),
                                                      blurMargin(3.5 * double{node.radiusY})));
        if (usesPassImage()) {
            passImage.allocateLike(paddedSource, {output.rect.left, paddedSource.rect.top, output.rect.right,
                                                  paddedSource.rect.bottom});
        }
    }

    // A reach of a single pixel (sigma below about 0.29) leaves an axis alone. With neither axis to blur
    // the columns pass runs all the same, as a copy through the recursion.
    bool blursRows() const { return x.weights.size() >= 2; }
    bool blursColumns() const { return y.weights.size() >= 2 || !blursRows(); }
    bool usesPassImage() const { return blursRows() && blursColumns(); }

    GaussianBlurCoefficients x;
    GaussianBlurCoefficients y;
    ImageBuffer paddedSource;
    ImageBuffer passImage;
};

template <class Host>
class GaussianBlurFilter final : public BlurFilterBase<Host> {
public:
    using BlurFilterBase<Host>::BlurFilterBase;

    const char* name() const override { return "gaussianBlur"; }

    // The rows pass moves to a new node over this node's input; this node keeps the columns.
    void splitPasses(Host& /*host*/) override {
        if (this->stage != FilterSeparable<Host>::BothPasses) return;
        auto first = std::make_unique<GaussianBlurFilter>(*this->inputs[0], this->radiusX, 0.0f, this->thresh,
                                                          this->kindX, 0);
        first->stage = FilterSeparable<Host>::HorizontalPass;
        this->radiusX = 0;
        this->kindX = 0;
        this->becomeSecondPass(std::move(first));
    }

    void compute(Host& host, ImageBuffer& output, ImageBuffer* const* inputs) override {
        this->host = &host;
        this->outputImage = &output;
        this->inputImages = inputs;
        GaussianBlurRun run(host, *inputs[0], output, *this);
        run_ = &run;
        struct EndOfRun {
            GaussianBlurRun*& run;
            ~EndOfRun() { run = nullptr; }
        } endOfRun{run_};

        ProgressLevels& levels = host.progressLevels();
        levels.startNodePasses(static_cast<uint64_t>(run.blursRows()) +
                               static_cast<uint64_t>(run.blursColumns()));
        if (run.blursRows()) {
            host.thread(&GaussianBlurFilter::rowBands, this, 0);
            levels.finishNodePass();
        }
        if (run.blursColumns()) {
            host.thread(&GaussianBlurFilter::columnBands, this, 0);
            levels.finishNodePass();
        }
    }

    // The rows pass over a band of rows of its target: the temporary, or the output itself.
    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        blurBand<BlurAxis::Rows>(run_->paddedSource, rowTarget(), band, this->host->cpuFeatures(), progress,
                                 run_->x);
    }
    // The columns pass over a band of columns of the output.
    void verticalPassTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        const ImageBuffer& source = run_->usesPassImage() ? run_->passImage : run_->paddedSource;
        HostProgress<Host> progress(*this->host, threadIndex);
        blurBand<BlurAxis::Columns>(source, *this->outputImage, band, this->host->cpuFeatures(), progress,
                                    run_->y);
    }

private:
    ImageBuffer& rowTarget() const { return run_->usesPassImage() ? run_->passImage : *this->outputImage; }

    static int rowBands(uint32_t slice, uint32_t sliceCount, uint32_t threadIndex, void* closure) {
        auto& filter = *static_cast<GaussianBlurFilter*>(closure);
        filter.computeTile(bandOf(filter.rowTarget().rect, slice, sliceCount), threadIndex, sliceCount);
        return 0;
    }
    static int columnBands(uint32_t slice, uint32_t sliceCount, uint32_t threadIndex, void* closure) {
        auto& filter = *static_cast<GaussianBlurFilter*>(closure);
        filter.verticalPassTile(columnBandOf(filter.outputImage->rect, slice, sliceCount), threadIndex,
                                sliceCount);
        return 0;
    }

    // The run under way, during `compute` only.
    GaussianBlurRun* run_ = nullptr;
};

}  // namespace Tw::Image
