// The evaluation of one node: FilterBase::render and the operations it leans on. Included by FilterBase.h.
#pragma once

#include <algorithm>
#include <memory>
#include <vector>

#include "image/graph/NodeWalker.h"

namespace Tw::Image {

// Bytes of `rect` in a format of `channels` components of the given format index. The area is taken in
// 32 bits, as the estimate always has been; it is an estimate, not an allocation size.
inline uint64_t regionBytes(const PixelRect& rect, uint64_t channels, int32_t formatIndex) {
    if (rect.isEmpty() || rect.isInfinite()) return 0;
    const uint32_t area = static_cast<uint32_t>(rect.width()) * static_cast<uint32_t>(rect.height());
    return area * channels * bytesPerComponent(formatIndex);
}

template <class Node>
struct InputEstimate {
    Node* node;
    uint64_t estimate;  // what must be alive if this input is evaluated last
    std::size_t index;
};

// The inputs of `node`, the one with the largest estimated need first; ties keep input order.
template <class Node>
std::vector<InputEstimate<Node>> inputsByEstimate(const Node& node, uint64_t channels, int32_t formatIndex) {
    uint64_t sum = 0;
    for (const Node* input : node.inputs)
        sum += regionBytes(input->outputRect, channels, formatIndex);
    std::vector<InputEstimate<Node>> order;
    order.reserve(node.inputs.size());
    for (std::size_t i = 0; i < node.inputs.size(); ++i) {
        Node* input = node.inputs[i];
        order.push_back(
            {input, input->peakBytes + sum - regionBytes(input->outputRect, channels, formatIndex), i});
    }
    std::stable_sort(order.begin(), order.end(),
                     [](const auto& a, const auto& b) { return a.estimate > b.estimate; });
    return order;
}

template <class Host>
uint64_t FilterBase<Host>::totalPasses() const {
    uint64_t total = 0;
    forEachNode(const_cast<FilterBase*>(this),
                [&total](const FilterBase& node) { total += static_cast<uint64_t>(node.passCount()); });
    return total;
}

template <class Host>
void FilterBase<Host>::allocateOutput(ResultPair& result, const ImageBuffer& reference,
                                      const PixelRect& rect) {
    ImageBuffer& image = *result.image;
    if (!rect.isEmpty()) {
        if (needsFormatChange(result)) {
            const ImageDescriptor format = outputFormat(ImageDescriptor::of(image));
            // One float channel takes the bytes of four 8-bit ones.
            const bool singleFloat = format.channels == 1 && format.formatIndex == ImageDescriptor::Float32;
            image.allocateDepth(rect, singleFloat ? 8 : format.depth());
        } else {
            image.allocateLike(reference, rect);
        }
    }
    image.validRect = bounds();
}

template <class Host>
void FilterBase<Host>::render(Host& host, const ImageBuffer& reference, ResultPair& result, bool& ownsResult,
                              int depth) {
    ownsResult = true;

    // A shared node computes once; later consumers get the kept result, and the last one releases it.
    if (consumers.size() >= 2) {
        ++pullCount;
        if (cachedResult.holdsAnything()) {
            if (result.image && result.image->hasStorage() && cachedResult.image &&
                cachedResult.image->hasStorage()) {
                result.image->copyFrom(*cachedResult.image);
            } else {
                result = cachedResult;
            }
            if (pullCount == static_cast<int64_t>(consumers.size())) cachedResult.reset();
            ownsResult = false;
            return;
        }
    }

    const bool resultHasStorage = result.image && result.image->hasStorage();
    const int32_t formatIndex =
        resultHasStorage ? ImageDescriptor::of(*result.image).formatIndex : ImageDescriptor::Int8;
    std::vector<ResultPair> pairs(inputs.size());
    const std::size_t none = inputs.size();
    std::size_t candidate = none;  // the input whose buffer may become this node's output
    bool lent = false;
    const int nextDepth = std::min(depth + 1, 80);

    for (const auto& entry : inputsByEstimate(*this, 4, formatIndex)) {
        const std::size_t i = entry.index;
        FilterBase& input = *entry.node;
        pairs[i].image = std::make_shared<ImageBuffer>(&host);
        if (!outputRect.isEmpty() && !input.outputRect.isEmpty() && !input.sourceImage() &&
            candidate == none && canRunInPlaceOn(nullptr, static_cast<int>(i)) &&
            input.consumers.size() == 1 && !needsFormatChange(result)) {
            if (!lent && runMode(nullptr) == 0 && resultHasStorage && outputRect.contains(input.outputRect)) {
                // The input renders straight into the caller's buffer, and this node then runs in place.
                pairs[i].image->viewOf(*result.image, input.outputRect);
                lent = true;
                candidate = i;
            } else if (input.outputRect == outputRect) {
                candidate = i;
            }
        }
        bool inputOwnsResult = false;
        input.render(host, reference, pairs[i], inputOwnsResult, nextDepth);
        // A shared result may not be overwritten.
        if (candidate == i && !inputOwnsResult) candidate = none;
    }

    if (!(result.image && result.image->hasStorage())) {
        if (ImageBuffer* source = sourceImage()) {
            if (!result.image) result.image = std::make_shared<ImageBuffer>(&host);
            result.image->viewOf(*source, source->rect);
            ownsResult = false;
        } else if (candidate != none) {
            result = pairs[candidate];
        } else {
            if (!result.image) result.image = std::make_shared<ImageBuffer>(&host);
            const bool firstInputHasStorage = !pairs.empty() && pairs[0].image->hasStorage();
            allocateOutput(result, firstInputHasStorage ? *pairs[0].image : reference, outputRect);
        }
    }

    host.progressLevels().startNode(passCount());
    if (ownsResult && result.image && !result.image->rect.isEmpty()) {
        std::vector<ImageBuffer*> images;
        images.reserve(pairs.size());
        for (ResultPair& pair : pairs)
            images.push_back(pair.image.get());
        compute(host, *result.image, images.empty() ? nullptr : images.data());
    }
    if (consumers.size() >= 2) {
        cachedResult = result;
        ownsResult = false;
    }
    host.reportProgress(0, 1, 1);
    host.progressLevels().finishNode(passCount());
}

}  // namespace Tw::Image
