// The filter graph.
//
// Every effect is a small directed graph of filter nodes, built afresh for each host command from the
// parameter values and thrown away at its end. Nodes hold plain references to their inputs and consumers;
// the effect's filter set owns them. The principles every node follows:
//
// Regions. Before any pixel moves, each node answers `bounds` (what it could produce, asked upward from
// the sources) and `inputRect` (what of an input it needs for a region of output). `requestRegion` pushes
// the output rectangle down; a node reached by two paths is asked for the bounding box of both requests
// and computed once.
//
// Reduction. Equal nodes over the same inputs merge; a node whose settings make it an identity
// (`passThroughInput`) is cut out; a node may fold its input into itself (`mergeWith`) while it has fewer
// than two consumers; a node may split itself into passes (`splitPasses`).
//
// Evaluation. `render` evaluates inputs depth-first, the one with the largest estimated need first, so
// that its temporaries are gone before the others' results pile up. The output buffer is lent downward:
// a node that `canRunInPlace` on an input lets that input render into its own buffer, so a chain of
// per-pixel nodes runs in the one buffer the caller gave. A node with several consumers keeps its result
// until the last consumer has read it.
//
// Threads. Only `computeTile` runs on several threads, one horizontal band of the output per worker. It
// reads inputs and node fields and writes its own band; it must not assume that input and output differ.
// Everything else runs on the calling thread.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "image/core/Exception.h"
#include "image/core/ImageBuffer.h"
#include "image/core/ImageDescriptor.h"
#include "image/core/PixelRect.h"
#include "image/graph/Device.h"
#include "image/graph/ImageHolder.h"

namespace Tw::Image {

// What `mergeWith` did with an input.
enum class MergeResult { No = 0, Folded = 1, Stop = 2 };

template <class Host>
class FilterBase {
public:
    using Node = FilterBase<Host>;

    FilterBase(const FilterBase&) = delete;
    FilterBase& operator=(const FilterBase&) = delete;

    virtual ~FilterBase() = default;

    // A short name that varies with the settings that select a different kernel; `sameKind` compares it.
    virtual const char* name() const = 0;
    virtual std::string nameString() const { return name(); }

    // The largest region the node can produce: infinite without inputs, else input 0's.
    virtual PixelRect bounds() const { return inputs.empty() ? PixelRect::infinite() : inputs[0]->bounds(); }
    // `bounds` as an expression over the inputs' bounds, numbered from 1. Descriptive only.
    virtual const char* boundsExpression() const { return inputs.empty() ? "infinite" : "bounds1"; }
    // The region of input `inputIndex` needed to produce `rect`.
    virtual PixelRect inputRect(const PixelRect& rect, int /*inputIndex*/) const { return rect; }

    // Progress weight of the node.
    virtual int passCount() const { return 1; }
    // Sum of `passCount` over every node reachable from this one, each counted once.
    virtual uint64_t totalPasses() const;

    // Folds `input` into this node. Folded: this node took over the input's inputs. Stop: look no further.
    virtual MergeResult mergeWith(Node& /*input*/) { return MergeResult::No; }
    virtual bool sameKind(const Node& other) const { return std::strcmp(name(), other.name()) == 0; }
    // Nodes over the same inputs that are `equals` merge into one. Float parameters must compare so that
    // a NaN is never equal.
    virtual bool equals(const Node& other) const { return sameKind(other); }
    // The index of an input this node would return unchanged, or -1.
    virtual int passThroughInput() const { return -1; }
    virtual bool inputIsMask(int /*inputIndex*/) const { return false; }

    // 3 for per-pixel filters, 2 for those that read a pixel of context, 0 for whole-image filters.
    // Descriptive; the processor path does not read it.
    virtual int tileFlags() const { return 0; }
    virtual int tileFlagsOnDevice(const DeviceContext* /*device*/) const { return tileFlags(); }

    // Called once on every live node after the first reduction; a node may replace itself with several.
    virtual void splitPasses(Host& /*host*/) {}
    virtual std::string kernelText(const DeviceContext* /*device*/, std::string source) const {
        return source;
    }
    // Called once on every live node after regions are known.
    virtual void prepare() {}

    // Whether this node produces another format than the result it is handed.
    virtual bool needsFormatChange(const ResultPair& result) const {
        const ImageDescriptor given = result.image ? ImageDescriptor::of(*result.image) : ImageDescriptor{};
        return !(outputFormat(given) == given);
    }
    virtual void allocateFormatted(const DeviceContext* /*device*/, ResultPair& /*result*/,
                                   const PixelRect& /*rect*/) {}
    // Makes the node's output buffer, in the format it produces or like `reference`.
    virtual void allocateOutput(ResultPair& result, const ImageBuffer& reference, const PixelRect& rect);
    // The format this node produces from the given one.
    virtual ImageDescriptor outputFormat(const ImageDescriptor& given) const { return given; }

    virtual bool usesDeviceBounce() const { return false; }
    virtual bool deviceAvailable(const DeviceContext* /*device*/) const { return false; }
    // 0 processor, 1 compute device, 3 `renderCustom`.
    virtual int runMode(const DeviceContext* device) const {
        if (!deviceAvailable(device) || !program) return 0;
        return deviceMode < 0 ? 1 : deviceMode;
    }

    // Evaluates this node into `result` (see FilterRender.h). `ownsResult` comes back true when the
    // caller may modify the pixels, false when they are shared.
    virtual void render(Host& host, const ImageBuffer& reference, ResultPair& result, bool& ownsResult,
                        int depth);
    virtual void renderOnDevice(Host& /*host*/, DeviceContext& /*device*/, const ImageBuffer& /*reference*/,
                                ResultPair& /*result*/, bool& /*ownsResult*/, int /*depth*/) {
        throw Exception("FilterBase::renderOnDevice", "No compute device is available.");
    }

    // Whether the output may share its buffer with input `inputIndex`: true when an output pixel
    // depends only on the same pixel of that input.
    virtual bool canRunInPlace(int /*inputIndex*/) const { return false; }
    virtual bool canRunInPlaceOn(const DeviceContext* /*device*/, int inputIndex) const {
        return canRunInPlace(inputIndex);
    }
    // An image the node already has; only a layer answers.
    virtual ImageBuffer* sourceImage() const { return nullptr; }
    // Runs the node over its whole output on the processor.
    virtual void compute(Host& /*host*/, ImageBuffer& /*output*/, ImageBuffer* const* /*inputs*/) {}

    virtual bool usesImageObjects() const { return true; }
    virtual DeviceSource kernelSource() const { return {}; }
    virtual void prepareDevice(DeviceContext& /*device*/) {}
    virtual void runDevice(DeviceContext& /*device*/) {}
    virtual int deviceArgCount() const { return 0; }
    virtual void fillDeviceArgs(DeviceArgument* /*arguments*/) const {}
    virtual void renderCustom() {}
    // Memory the node needs beside its output while it runs; enters the peak estimate.
    virtual uint64_t scratchBytes(const DeviceContext* /*device*/, const PixelRect& /*rect*/,
                                  const ImageDescriptor& /*format*/) const {
        return 0;
    }
    // One horizontal band of the output, on worker `threadIndex` of `threadCount`.
    virtual void computeTile(const PixelRect& /*band*/, uint32_t /*threadIndex*/, uint32_t /*threadCount*/) {}

    // The nodes this node reads, in input order. Not owning.
    std::vector<Node*> inputs;
    // The nodes that read this node; one that reads it twice stands here twice. Not owning.
    std::vector<Node*> consumers;
    std::vector<Node*> fusedNodes;
    std::string kernelName;
    // The region of this node's output the graph needs; grows during `requestRegion`.
    PixelRect outputRect;
    // The last node's `outputRect`, copied to every node before evaluation.
    PixelRect graphRect;
    // Estimated peak bytes to evaluate this node.
    uint64_t peakBytes = 0;
    uint64_t deviceByteLimit = 0;
    // The result, held while further consumers have yet to read it.
    ResultPair cachedResult;
    ResultPair deviceResult;
    ProgramHolder program;
    // How many consumers have asked for the result in this run.
    int64_t pullCount = 0;
    int32_t deviceMode = -1;

protected:
    FilterBase() = default;
    // Links the node to each input in both directions.
    explicit FilterBase(std::initializer_list<Node*> inputNodes) {
        for (Node* input : inputNodes)
            addInput(*input);
    }
    void addInput(Node& input) {
        inputs.push_back(&input);
        input.consumers.push_back(this);
    }
};

}  // namespace Tw::Image

#include "image/graph/FilterRender.h"
