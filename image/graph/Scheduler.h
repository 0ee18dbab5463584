// The render scheduler: reduces a graph, estimates the memory of every subgraph and evaluates it.
//
// prepareGraph is the whole of a render: reduce (optimiseGraph), let nodes split into passes, drop links
// to nodes that fell out (pruneGraph), reduce again, then renderGraph pushes the output rectangle down,
// estimates peak bytes (computePeaks) and renders the last node into the output.
#pragma once

#include <algorithm>
#include <deque>
#include <limits>
#include <vector>

#include "image/graph/FilterBase.h"
#include "image/graph/GraphLinks.h"
#include "image/graph/NodeWalker.h"
#include "image/graph/Regions.h"

namespace Tw::Image {

// Merges equal nodes, cuts out pass-through nodes and folds neighbours, walking from `root`.
template <class Host>
void optimiseGraph(FilterBase<Host>& root) {
    using Node = FilterBase<Host>;

    // Equal consumers of the same node are found from the sources upward, so that merging two nodes can
    // make their consumers equal in turn.
    std::deque<Node*> queue;
    std::vector<Node*> seen;
    forEachNode(&root, [&](Node& node) {
        if (node.inputs.empty()) {
            queue.push_back(&node);
            seen.push_back(&node);
        }
    });
    while (!queue.empty()) {
        Node* node = queue.front();
        queue.pop_front();
        for (std::size_t a = 0; a < node->consumers.size(); ++a) {
            Node* kept = node->consumers[a];
            for (std::size_t b = a + 1; b < node->consumers.size();) {
                Node* other = node->consumers[b];
                if (other != kept && other->inputs == kept->inputs && kept->equals(*other)) {
                    replaceNode(*other, *kept);
                    b = a + 1;  // the list behind `kept` changed
                } else {
                    ++b;
                }
            }
            if (std::find(seen.begin(), seen.end(), kept) == seen.end()) {
                queue.push_back(kept);
                seen.push_back(kept);
            }
        }
    }

    for (NodeWalker<Node> walker(&root); !walker.done(); walker.step()) {
        Node* node = walker.current();
        for (int k; (k = node->passThroughInput()) >= 0;) {
            Node* through = node->inputs.at(static_cast<std::size_t>(k));
            replaceNode(*node, *through);
            walker.replaceCurrent(through);
            node = through;
        }
        // Folding is tried only while the node itself has fewer than two consumers: a folded node would
        // change what every consumer reads.
        for (std::size_t i = 0; i < node->inputs.size() && node->consumers.size() < 2; ++i) {
            const MergeResult merged = node->mergeWith(*node->inputs[i]);
            if (merged == MergeResult::Folded) {
                foldInput(*node, *node->inputs[i]);
                break;
            }
            if (merged == MergeResult::Stop) break;
        }
    }
}

// Drops the links from live nodes to consumers that are no longer reachable from `root`.
template <class Host>
void pruneGraph(FilterBase<Host>& root) {
    using Node = FilterBase<Host>;
    std::vector<Node*> live;
    forEachNode(&root, [&live](Node& node) { live.push_back(&node); });
    for (Node* node : live) {
        std::vector<Node*> dead;
        for (Node* consumer : node->consumers) {
            if (std::find(live.begin(), live.end(), consumer) == live.end()) dead.push_back(consumer);
        }
        for (Node* consumer : dead) {
            eraseAll(node->consumers, consumer);
            eraseAll(consumer->inputs, node);
        }
    }
}

// The bytes that must be alive at once to evaluate `node`, given its inputs' estimates.
template <class Host>
uint64_t peakOfNode(const FilterBase<Host>& node, const ImageDescriptor& format) {
    uint64_t peak = 0;
    uint64_t held = 0;
    for (const auto& entry : inputsByEstimate(node, format.channels, format.formatIndex)) {
        peak = std::max(peak, entry.node->peakBytes + held);
        held += regionBytes(entry.node->outputRect, format.channels, format.formatIndex);
    }
    const uint64_t own = regionBytes(node.outputRect, format.channels, format.formatIndex) + held +
                         node.scratchBytes(nullptr, node.outputRect, format);
    // Only a device has a byte limit; on the processor there is none to exceed.
    const uint64_t limit = node.deviceByteLimit ? node.deviceByteLimit : std::numeric_limits<uint64_t>::max();
    if (own > limit) const_cast<FilterBase<Host>&>(node).deviceMode = 0;
    return std::max(peak, own);
}

// Sets `peakBytes` of every node, inputs before the nodes that read them.
template <class Host>
void computePeaks(FilterBase<Host>& last, const ImageDescriptor& format) {
    using Node = FilterBase<Host>;
    std::vector<Node*> done;
    const auto visit = [&](const auto& self, Node& node) -> void {
        if (std::find(done.begin(), done.end(), &node) != done.end()) return;
        done.push_back(&node);
        for (Node* input : node.inputs)
            self(self, *input);
        node.peakBytes = std::max(node.peakBytes, peakOfNode(node, format));
    };
    visit(visit, last);
}

// Pushes the output's rectangle down from `last`, estimates memory and renders `last` into `output`.
template <class Host>
void renderGraph(FilterBase<Host>& last, Host& host, ImageBuffer& output) {
    using Node = FilterBase<Host>;
    requestRegion(last, output.rect);
    forEachNode(&last, [](Node& node) { node.prepare(); });
    forEachNode(&last, [&last](Node& node) { node.graphRect = last.outputRect; });
    computePeaks(last, ImageDescriptor::of(output));
    host.progressLevels().startRender(last.totalPasses());

    ResultPair result{borrowImage(output), nullptr};
    bool ownsResult = false;
    last.render(host, output, result, ownsResult, 0);
}

// The whole of a render of the graph ending in `last` into `output`.
template <class Host>
void prepareGraph(FilterBase<Host>& last, Host& host, ImageBuffer& output) {
    using Node = FilterBase<Host>;

    // A temporary root stands for the caller, so that the last node too can be replaced or cut out.
    struct Root final : Node {
        explicit Root(Node& input) : Node({&input}) {}
        ~Root() override { detachInputs<Node>(*this); }
        const char* name() const override { return "root"; }
    } root(last);

    optimiseGraph<Host>(root);
    forEachNode<Node>(&root, [&host](Node& node) { node.splitPasses(host); });
    pruneGraph<Host>(root);
    optimiseGraph<Host>(root);
    pruneGraph<Host>(root);

    // The link back from the last node stays while it renders, so that it counts the caller as one
    // consumer.
    Node& top = *root.inputs.at(0);
    renderGraph(top, host, output);
}

}  // namespace Tw::Image
