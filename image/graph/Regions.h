// requestRegion: pushes a needed rectangle of output from a node down to the sources.
//
// A node accumulates what its consumers ask for in `outputRect` and passes the accumulated rectangle on,
// so a node reached by two paths is asked for the bounding box of both and computes it once. Each visit
// also clears the node's cached result, so a graph is evaluated once per request.
#pragma once

#include "image/core/PixelRect.h"

namespace Tw::Image {

template <class Node>
void requestRegion(Node& node, const PixelRect& rect) {
    node.cachedResult.reset();
    node.pullCount = 0;
    if (rect.isEmpty()) return;
    if (!node.outputRect.isEmpty()) {
        if (node.outputRect.contains(rect)) return;
        node.outputRect = node.outputRect.extend(rect);
    } else {
        node.outputRect = rect;
    }
    for (std::size_t i = 0; i < node.inputs.size(); ++i) {
        requestRegion(*node.inputs[i], node.inputRect(node.outputRect, static_cast<int>(i)));
    }
}

}  // namespace Tw::Image
