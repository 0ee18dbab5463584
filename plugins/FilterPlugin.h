// FilterPlugin: the template that turns a filter chain into an effect.
//
// An effect says three things: its parameters (`defineParameters`), how to build its nodes from their
// values (`makeFilters` of its filter set), and its names. Everything else is one body here, the same for
// every effect and every host: the chain is built afresh for each question, so the rectangles asked
// before a render come from the same nodes that then render, and no separate bounds logic can drift.
// Chains hold no state between questions and their constructors do no pixel work.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include <algorithm>

#include "host/param/Parameters.h"
#include "image/graph/Filter.h"
#include "image/graph/LayerRequest.h"
#include "image/graph/NodeWalker.h"
#include "image/graph/Scheduler.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

// The nodes of one question, in creation order, with the sources they start from. Deletes its nodes, in
// that order, when the question is answered.
template <class Host>
class FilterChain {
public:
    using Node = Image::FilterBase<Host>;

    // `layers` are the nodes that stand for the effect's further layers: their sources, or the last node
    // of another effect's chain where one effect feeds another within one graph.
    FilterChain(Host& host, Image::FilterLayer<Host>& source, std::span<Node* const> layers)
        : host_(host), source_(source), layers_(layers), nodes_(&ownNodes_) {}
    // The same question with other further layers: the nodes it adds live as long as `owner`'s.
    FilterChain(FilterChain& owner, std::span<Node* const> layers)
        : host_(owner.host_), source_(owner.source_), layers_(layers), nodes_(owner.nodes_) {}
    FilterChain(const FilterChain&) = delete;
    FilterChain& operator=(const FilterChain&) = delete;
    ~FilterChain() {
        for (auto& node : ownNodes_)
            node.reset();
    }

    // Creates a node that lives as long as the chain.
    template <class NodeType, class... Arguments>
    NodeType& add(Arguments&&... arguments) {
        auto node = std::make_unique<NodeType>(std::forward<Arguments>(arguments)...);
        NodeType& added = *node;
        nodes_->push_back(std::move(node));
        return added;
    }

    Host& host() { return host_; }
    // The effect's own layer.
    Image::FilterLayer<Host>& source() { return source_; }
    // The node of the `ordinal`-th layer parameter, counted from 1; null when the effect has no such
    // parameter or no layer is chosen in it.
    Node* layer(int ordinal) {
        const auto index = static_cast<std::size_t>(ordinal - 1);
        return ordinal >= 1 && index < layers_.size() ? layers_[index] : nullptr;
    }

private:
    Host& host_;
    Image::FilterLayer<Host>& source_;
    std::span<Node* const> layers_;
    std::vector<std::unique_ptr<Node>> ownNodes_;
    std::vector<std::unique_ptr<Node>>* nodes_;
};

template <class Host, class Filters>
class FilterPlugin : public Host {
public:
    using Host::Host;

    // Builds the chain over `in` and evaluates it into `out`.
    void renderFrame(Param::Parameters& params, Image::ImageBuffer& in, Image::ImageBuffer& out,
                     Image::ImageBuffer& /*aux*/, Image::LayerImages layers) override {
        Image::FilterLayer<Host> source(&in);
        LayerSources sources(layers);
        FilterChain<Host> chain(*this, source, sources.nodes);
        Image::prepareGraph(Filters::makeFilters(chain, params), static_cast<Host&>(*this), out);
    }

    // The region of the effect's own layer needed for `request`, with one request per further layer that
    // the chain reads, appended to `requests`. The layers are taken to extend to `limit`. A layer the
    // chain leaves out gets no request, so that a host checks out only the layers a render uses.
    Image::PixelRect inputRect(Param::Parameters& params, const Image::PixelRect& request,
                               const Image::PixelRect& limit,
                               std::vector<Image::LayerRequest>& requests) override {
        Image::FilterLayer<Host> source(nullptr, limit);
        LayerSources sources(layerCount(params), limit);
        FilterChain<Host> chain(*this, source, sources.nodes);
        Image::FilterBase<Host>& result = Filters::makeFilters(chain, params);
        Image::requestRegion(result, request);
        std::vector<const Image::FilterBase<Host>*> read;
        Image::forEachNode(&result, [&](const Image::FilterBase<Host>& node) { read.push_back(&node); });
        for (std::size_t i = 0; i < sources.nodes.size(); ++i) {
            if (std::find(read.begin(), read.end(), sources.nodes[i]) == read.end()) continue;
            requests.push_back({static_cast<int>(i) + 1, sources.nodes[i]->outputRect, 0});
        }
        return source.outputRect;
    }

    // What a host that shows them asks (the After Effects adapter, whose defaults these replace): the same
    // for every effect of the bundle.
    const char* versionString() const { return "4.0.10"; }
    void versionNumbers(int32_t& major, int32_t& minor, int32_t& bugfix) const {
        major = 4;
        minor = 0;
        bugfix = 10;
    }
    void tileSize(Param::Parameters& /*params*/, int32_t& width, int32_t& height) const {
        width = 1024;
        height = 1024;
    }

    // False when the chain over `rect` is the source itself: the effect has nothing to do.
    bool chainIsActive(Param::Parameters& params, const Image::PixelRect& rect) {
        Image::FilterLayer<Host> source(nullptr, rect);
        LayerSources sources(layerCount(params), rect);
        FilterChain<Host> chain(*this, source, sources.nodes);
        return &Filters::makeFilters(chain, params) != &source;
    }

private:
    static std::size_t layerCount(const Param::Parameters& params) {
        return static_cast<std::size_t>(
            std::count_if(params.records.begin(), params.records.end(),
                          [](const auto& r) { return r.kind == Param::ParamKind::Layer; }));
    }

    // Source nodes of the further layers, for one question.
    struct LayerSources {
        // Over images; a layer that is not chosen has no node.
        explicit LayerSources(Image::LayerImages images) {
            for (Image::ImageBuffer* image : images)
                add(image ? std::make_unique<Image::FilterLayer<Host>>(image) : nullptr);
        }
        // Over rectangles alone, before any image exists.
        LayerSources(std::size_t count, const Image::PixelRect& limit) {
            for (std::size_t i = 0; i < count; ++i)
                add(std::make_unique<Image::FilterLayer<Host>>(nullptr, limit));
        }
        void add(std::unique_ptr<Image::FilterLayer<Host>> node) {
            nodes.push_back(node.get());
            owned.push_back(std::move(node));
        }
        std::vector<std::unique_ptr<Image::FilterLayer<Host>>> owned;
        std::vector<Image::FilterBase<Host>*> nodes;
    };
};

}  // namespace Tw::Plugins
