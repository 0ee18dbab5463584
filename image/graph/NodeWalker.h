// NodeWalker: a depth-first walk from one node through `inputs`, visiting each node once.
//
// Stepping pops the current node and pushes its inputs not yet visited, so the last input of a node is
// visited first. The walk may be told that the current node was replaced by another.
#pragma once

#include <algorithm>
#include <vector>

namespace Tw::Image {

template <class Node>
class NodeWalker {
public:
    explicit NodeWalker(Node* start) { enter(start); }

    bool done() const { return stack_.empty(); }
    Node* current() const { return stack_.back(); }

    void replaceCurrent(Node* node) {
        stack_.pop_back();
        enter(node);
    }

    void step() {
        Node* node = stack_.back();
        stack_.pop_back();
        for (Node* input : node->inputs) {
            if (!wasVisited(input)) enter(input);
        }
    }

private:
    // Graphs hold tens of nodes at most, so a flat list beats a hash set here.
    bool wasVisited(Node* node) const {
        return std::find(visited_.begin(), visited_.end(), node) != visited_.end();
    }
    void enter(Node* node) {
        stack_.push_back(node);
        visited_.push_back(node);
    }

    std::vector<Node*> stack_;
    std::vector<Node*> visited_;
};

template <class Node, class Visit>
void forEachNode(Node* start, Visit&& visit) {
    for (NodeWalker<Node> walker(start); !walker.done(); walker.step())
        visit(*walker.current());
}

}  // namespace Tw::Image
