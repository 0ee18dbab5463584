// One pass of the domain transform, along rows or down columns, in its two stages: the weights of every
// pixel, then the recursion along every line. Each stage is spread over all threads and joined before the
// next. The weights are banded by rows in both directions; the recursion gives each thread whole lines
// (a band of rows for the row pass, of columns for the column pass), so no thread needs another's carry.
#pragma once

#include <cmath>

#include "image/core/ImageBuffer.h"
#include "image/filters/retouch/DomainTransformColumns.h"
#include "image/filters/retouch/DomainTransformRows.h"
#include "image/filters/retouch/DomainTransformWeights.h"
#include "image/graph/Filter.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

template <class Host>
class DomainTransformPass {
public:
    // `source` is read over `region`, which the lines cross from side to side; `destination` is written
    // over `target`, the same lines narrowed along their length. `derivative` and `weights` are planes
    // that cover `region`. `features` selects the code variant of both stages.
    DomainTransformPass(Host& host, CpuFeatures features, bool alongRows, float sigma,
                        const ImageBuffer& derivative, ImageBuffer& weights, const ImageBuffer& source,
                        const PixelRect& region, ImageBuffer& destination, const PixelRect& target)
        : host_(host),
          features_(features),
          alongRows_(alongRows),
          // exp(-sqrt(2) / sigma * D) as a power of two; the logarithm in single precision.
          a_(-1.4142135f / sigma / std::log(2.0f)),
          derivative_(derivative),
          weights_(weights),
          source_(source),
          region_(region),
          destination_(destination),
          target_(target) {}

    void run() {
        if (region_.isEmpty() || target_.isEmpty()) return;
        host_.thread(&DomainTransformPass::weightsStage, this, 0);
        host_.thread(&DomainTransformPass::recursionStage, this, 0);
    }

private:
    static int weightsStage(uint32_t slice, uint32_t sliceCount, uint32_t threadIndex, void* closure) {
        auto& pass = *static_cast<DomainTransformPass*>(closure);
        computeWeightsBand(pass.host_, pass.features_, threadIndex, pass.derivative_, pass.weights_,
                           bandOf(pass.region_, slice, sliceCount), pass.a_);
        return 0;
    }

    static int recursionStage(uint32_t slice, uint32_t sliceCount, uint32_t threadIndex, void* closure) {
        auto& pass = *static_cast<DomainTransformPass*>(closure);
        if (pass.alongRows_) {
            pass.template recurseBand<true>(bandOf(pass.target_, slice, sliceCount), threadIndex);
        } else {
            pass.template recurseBand<false>(columnBandOf(pass.target_, slice, sliceCount), threadIndex);
        }
        return 0;
    }

    // The lines of `band`: its rows (AlongRows) or its columns.
    template <bool AlongRows>
    void recurseBand(const PixelRect& band, uint32_t threadIndex) const {
        if (band.isEmpty()) return;
        HostProgress<Host> progress(host_, threadIndex);
        dispatchKernel(source_, features_, [&](auto layout, auto isa) {
            using T = typename decltype(layout)::Component;
            constexpr int lanes = kPixelLanes<decltype(isa)>;
            if constexpr (AlongRows) {
                const RowLines<T> lines{source_.pixelAddress(region_.left, band.top),
                                        source_.rowStride(),
                                        weights_.pixelAddress(region_.left, band.top),
                                        weights_.rowStride(),
                                        destination_.pixelAddress(target_.left, band.top),
                                        destination_.rowStride(),
                                        region_.width(),
                                        target_.left - region_.left,
                                        target_.right - region_.left};
                recurseRows<T, lanes>(lines, band.height(), progress);
            } else {
                const ColumnLines<T> lines{source_.pixelAddress(band.left, region_.top),
                                           source_.rowStride(),
                                           weights_.pixelAddress(band.left, region_.top),
                                           weights_.rowStride(),
                                           destination_.pixelAddress(band.left, target_.top),
                                           destination_.rowStride(),
                                           band.width(),
                                           region_.height(),
                                           target_.top - region_.top,
                                           target_.bottom - region_.top};
                sweepColumns<T, lanes>(lines, progress);
            }
        });
    }

    Host& host_;
    CpuFeatures features_;
    bool alongRows_;
    float a_;
    const ImageBuffer& derivative_;
    ImageBuffer& weights_;
    const ImageBuffer& source_;
    PixelRect region_;
    ImageBuffer& destination_;
    PixelRect target_;
};

}  // namespace Tw::Image
