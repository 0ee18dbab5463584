// One pass of the domain transform, along rows or down columns, in its two stages: the weights of every
// pixel, then the recursion along every line. Each stage is spread over all threads and joined before the
// next. The weights are banded by rows in both directions; the recursion gives each thread whole lines
// (a band of rows for the row pass, of columns for the column pass), so no thread needs another's carry.
//
// Both stages' kernels take the processor's features and a progress sink rather than the host, so that
// they compile once, in DomainTransformWeights.cpp and DomainTransformPass.cpp, whatever the hosts the
// filter is built for; the pass itself, which runs them on the host's threads, is a template over it.
#pragma once

#include <cmath>
#include <cstdint>

#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/filters/retouch/DomainTransformWeights.h"
#include "image/graph/Filter.h"
#include "image/graph/Progress.h"


namespace Tw::Image {

// The recursion over the lines of `band`: its rows (alongRows) or its columns. `source` is read over
// `region`, which the lines cross from side to side, with the weight plane over the same region;
// `destination` is written over `target`, the same lines narrowed along their length.
void recurseLinesBand(bool alongRows, const ImageBuffer& source, const ImageBuffer& weights,
                      const PixelRect& region, ImageBuffer& destination, const PixelRect& target,
                      const PixelRect& band, CpuFeatures features, Progress& progress);

// Reports nothing to the host, and only lets its abort take effect: the weights stage has no progress of
// its own to report.
template <class Host>
class HostAbortCheck final : public Progress {
public:
    HostAbortCheck(Host& host, uint32_t threadIndex) : host_(host), threadIndex_(threadIndex) {}
    void progress(uint64_t /*done*/, uint64_t /*total*/) override { host_.checkAbort(threadIndex_); }

private:
    Host& host_;
    uint32_t threadIndex_;
};

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
        HostAbortCheck<Host> abortCheck(pass.host_, threadIndex);
        computeWeightsBand(pass.derivative_, pass.weights_, bandOf(pass.region_, slice, sliceCount),
                           pass.features_, abortCheck, pass.a_);
        return 0;
    }

    static int recursionStage(uint32_t slice, uint32_t sliceCount, uint32_t threadIndex, void* closure) {
        auto& pass = *static_cast<DomainTransformPass*>(closure);
        const PixelRect band = pass.alongRows_ ? bandOf(pass.target_, slice, sliceCount)
                                               : columnBandOf(pass.target_, slice, sliceCount);
        HostProgress<Host> progress(pass.host_, threadIndex);
        recurseLinesBand(pass.alongRows_, pass.source_, pass.weights_, pass.region_, pass.destination_,
                         pass.target_, band, pass.features_, progress);
        return 0;
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
