// Edits of the links between nodes, as the graph's reductions make them. Each keeps `inputs` and
// `consumers` mirror images of one another.
#pragma once

#include <algorithm>
#include <vector>

namespace Tw::Image {

template <class Node>
void eraseAll(std::vector<Node*>& nodes, const Node* node) {
    nodes.erase(std::remove(nodes.begin(), nodes.end(), node), nodes.end());
}

// Cuts `node` from its inputs, both ways.
template <class Node>
void detachInputs(Node& node) {
    for (Node* input : node.inputs)
        eraseAll(input->consumers, &node);
    node.inputs.clear();
}

// Makes every consumer of `old` read `replacement` instead, then cuts `old` from its inputs.
template <class Node>
void replaceNode(Node& old, Node& replacement) {
    for (Node* consumer : old.consumers) {
        std::replace(consumer->inputs.begin(), consumer->inputs.end(), &old, &replacement);
    }
    replacement.consumers.insert(replacement.consumers.end(), old.consumers.begin(), old.consumers.end());
    old.consumers.clear();
    detachInputs(old);
}

// `node` absorbed `folded`: it now reads what `folded` read, and `folded` is cut loose.
template <class Node>
void foldInput(Node& node, Node& folded) {
    detachInputs(node);
    for (Node* input : folded.inputs) {
        node.inputs.push_back(input);
        input->consumers.push_back(&node);
    }
    detachInputs(folded);
}

}  // namespace Tw::Image
