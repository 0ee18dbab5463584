// DomainTransformBlurFilter: the edge-preserving blur under the skin effects. It is the recursive form of
// the domain transform of Gastal and Oliveira: a first-order recursive filter run forward and backward
// along the rows, then down the columns, for a few iterations, whose feedback falls where a guide image
// has an edge.
//
// In `splitPasses` the node makes the guide's derivative planes its own inputs (through the _DX and _DY
// nodes it holds, and _AddEdges when an owner gives extra edges), so the graph evaluates and schedules
// them like any node; the recursion itself runs in `compute`. Each iteration narrows the region by the
// reach of its passes, so that a request for part of the image gives the same pixels as the whole image
// as far as the margins reach, and the last iteration lands exactly on the output.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "image/filters/retouch/DomainTransformBlurFilter_AddEdges.h"
#include "image/filters/retouch/DomainTransformBlurFilter_DX.h"
#include "image/filters/retouch/DomainTransformBlurFilter_DY.h"
#include "image/filters/retouch/DomainTransformBlurFilter_Planar.h"
#include "image/filters/retouch/DomainTransformPass.h"
#include "image/graph/FilterBase.h"
#include "image/graph/GraphLinks.h"

namespace Tw::Image {

struct DomainTransformParams {
    float sigmaX;  // spatial standard deviation along rows, in pixels of the rendered image
    float sigmaY;  // the same down columns
    float sigmaR;  // range standard deviation, 1.0 being full scale of one component
    uint64_t iterations;
};

// The share of the spatial sigma that iteration i of n uses: sqrt(3) * 2^(n-1-i) / sqrt(4^n - 1). The
// widest pass comes first, and the variances of all passes add up to that of the sigma asked for.
inline float domainTransformSigmaFactor(uint64_t i, uint64_t n) {
    return 1.7320508f * std::exp2(static_cast<float>(n - 1 - i)) /
           std::sqrt(std::pow(4.0f, static_cast<float>(n)) - 1.0f);
}

template <class Host>
class DomainTransformBlurFilter final : public FilterBase<Host> {
public:
    using Node = FilterBase<Host>;

    // Input 0 is the image to blur. An owner may append a guide or an edges image before the graph is
    // prepared: with two inputs the second is the guide if `guideIsInput1`, else the edges; with three,
    // the guide and then the edges.
    DomainTransformBlurFilter(Node& input, const DomainTransformParams& params, bool guideIsInput1)
        : Node({&input}), params(atLeastMinimumSigmas(params)), guideIsInput1(guideIsInput1) {}

    void appendInput(Node& node) { this->addInput(node); }

    const char* name() const override { return "domainTransformBlur"; }
    PixelRect inputRect(const PixelRect& rect, int /*inputIndex*/) const override {
        return marginRect(rect, params.iterations);
    }
    int passCount() const override {
        return static_cast<int>(std::min<uint64_t>(params.iterations, std::numeric_limits<int>::max() / 2) *
                                2);
    }
    bool equals(const Node& other) const override {
        if (!this->sameKind(other)) return false;
        const auto& o = static_cast<const DomainTransformBlurFilter&>(other);
        return params.sigmaX == o.params.sigmaX && params.sigmaY == o.params.sigmaY &&
               params.sigmaR == o.params.sigmaR && params.iterations == o.params.iterations &&
               edgeScale == o.edgeScale && guideIsInput1 == o.guideIsInput1;
    }
    int passThroughInput() const override {
        const bool noReach = params.sigmaX <= kMinimumSigma && params.sigmaY <= kMinimumSigma;
        return noReach || params.iterations == 0 ? 0 : -1;
    }

    // Inputs become (image to blur, plane along rows, plane down columns).
    void splitPasses(Host& /*host*/) override {
        Node& image = *this->inputs[0];
        Node* guide = &image;
        Node* edges = nullptr;
        if (this->inputs.size() == 2) {
            (guideIsInput1 ? guide : edges) = this->inputs[1];
        } else if (this->inputs.size() >= 3) {
            guide = this->inputs[1];
            edges = this->inputs[2];
        }
        dxNode.scale = params.sigmaX / params.sigmaR;
        dyNode.scale = params.sigmaY / params.sigmaR;
        dxNode.linkInputs({guide});
        dyNode.linkInputs({guide});
        Node* planeX = &dxNode;
        Node* planeY = &dyNode;
        if (edges) {
            addEdgesX.scale = addEdgesY.scale = edgeScale;
            addEdgesX.linkInputs({edges, &dxNode});
            addEdgesY.linkInputs({edges, &dyNode});
            planeX = &addEdgesX;
            planeY = &addEdgesY;
        }
        detachInputs<Node>(*this);
        this->addInput(image);
        this->addInput(*planeX);
        this->addInput(*planeY);
    }

    // No planar device programs exist, so a device would run the simple schedule that bounces through
    // images of the effect's own layout.
    bool usesDeviceBounce() const override { return true; }
    bool canRunInPlace(int inputIndex) const override { return inputIndex == 0; }

    void compute(Host& host, ImageBuffer& output, ImageBuffer* const* images) override {
        host.progressLevels().startNodePasses(static_cast<uint64_t>(passCount()));
        const ImageBuffer& input = *images[0];
        const ImageBuffer& planeX = *images[1];
        const ImageBuffer& planeY = *images[2];
        const PixelRect out = output.rect;
        // Regions stay within what the inputs hold, so that nothing outside them is ever read.
        const PixelRect held = rectOf(input).intersect(rectOf(planeX)).intersect(rectOf(planeY));
        const auto region = [&](uint64_t k) { return marginRect(out, k).intersect(held); };
        const uint64_t n = params.iterations;
        const PixelRect full = region(n);

        ImageBuffer weights(&host);
        weights.allocate(full, fourCC("argb"));  // one float a pixel
        ImageBuffer tempA(&host);
        tempA.allocateLike(output, full);
        ImageBuffer tempB(&host);
        if (full != out) tempB.allocateLike(output, region(n - 1));

        // Asked once for all passes: the query is not free, and every pass runs the same variant.
        const CpuFeatures features = host.cpuFeatures();
        const ImageBuffer* source = &input;
        for (uint64_t i = 0; i < n; ++i) {
            const PixelRect a = region(n - i);
            const PixelRect b = region(n - i - 1);
            const float f = domainTransformSigmaFactor(i, n);
            const PixelRect rows{b.left, a.top, b.right, a.bottom};
            DomainTransformPass<Host>(host, features, true, params.sigmaX * f, planeX, weights, *source, a,
                                      tempA, rows)
                .run();
            host.progressLevels().finishNodePass();
            ImageBuffer& destination = full == out || i + 1 == n ? output : tempB;
            DomainTransformPass<Host>(host, features, false, params.sigmaY * f, planeY, weights, tempA, rows,
                                      destination, b)
                .run();
            source = &destination;
            host.progressLevels().finishNodePass();
        }
        // Where the output reaches beyond the bounds the blur has nothing to say: transparent black.
        output.clearOutside(output.rect, region(0));
    }

    uint64_t scratchBytes(const DeviceContext* device, const PixelRect& rect,
                          const ImageDescriptor& format) const override {
        if (rect.isEmpty() || rect.isInfinite()) return 0;
        const uint64_t pixels = uint64_t(rect.width()) * uint64_t(rect.height());
        const uint64_t componentBytes = format.channels * bytesPerComponent(format.formatIndex);
        // The weight plane and the first temporary, and on the processor the second temporary too.
        return pixels * (device ? componentBytes + 8 : componentBytes * 2 + 4);
    }

    // The recursion runs in `compute`; no band of it exists on its own.
    void computeTile(const PixelRect& /*band*/, uint32_t /*threadIndex*/, uint32_t /*threadCount*/) override {
        throw Exception("computeTile", "Unimplemented.");
    }

    // `rect` grown by the reach of k iterations' passes, within the node's bounds. The reach is 3.5 base
    // sigmas a pass, rounded up.
    PixelRect marginRect(const PixelRect& rect, uint64_t k) const {
        PixelRect grown = rect;
        if (!rect.isInfinite() && !rect.isEmpty()) {
            const uint64_t times = std::min<uint64_t>(k, uint64_t{1} << 32);
            const int64_t mx = reach(params.sigmaX * 3.5f) * static_cast<int64_t>(times);
            const int64_t my = reach(3.5f * params.sigmaY) * static_cast<int64_t>(times);
            grown = {saturated(int64_t{rect.left} - mx), saturated(int64_t{rect.top} - my),
                     saturated(int64_t{rect.right} + mx), saturated(int64_t{rect.bottom} + my)};
        }
        grown = grown.intersect(this->bounds());
        return usesDeviceBounce() ? grown : withWholeRowQuads(grown, this->bounds());
    }

    DomainTransformBlurFilter_DX<Host> dxNode;
    DomainTransformBlurFilter_DY<Host> dyNode;
    DomainTransformBlurFilter_AddEdges<Host> addEdgesX, addEdgesY;
    DomainTransformBlurFilter_Planar<Host> planarIn, planarOut;
    DomainTransformParams params;
    // The weight of the edges input; its owner sets it.
    float edgeScale = 0;
    bool guideIsInput1;

private:
    static constexpr float kMinimumSigma = 0.001f;

    static DomainTransformParams atLeastMinimumSigmas(DomainTransformParams params) {
        for (float* sigma : {&params.sigmaX, &params.sigmaY, &params.sigmaR})
            if (*sigma < kMinimumSigma) *sigma = kMinimumSigma;
        return params;
    }
    static PixelRect rectOf(const ImageBuffer& image) {
        return image.hasStorage() ? image.rect : PixelRect::empty();
    }
    // ceil of a reach in pixels; one beyond any image stands for a reach that is not a number.
    static int64_t reach(float pixels) {
        constexpr float kBeyondAnyImage = 0x1p30f;
        return pixels < kBeyondAnyImage ? static_cast<int64_t>(std::ceil(pixels)) : int64_t{1} << 30;
    }
    static int32_t saturated(int64_t value) {
        return static_cast<int32_t>(std::clamp<int64_t>(value, PixelRect::kMin, PixelRect::kMax));
    }
};

}  // namespace Tw::Image
