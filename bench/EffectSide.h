// Our side of a comparison: one effect object that renders the same frames at every call, as a host
// renders the frames of a clip, so that from the second call on it reuses the pixel blocks its host kept.
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "bench/pairs/Comparison.h"
#include "host/param/Parameters.h"
#include "host/standalone/Host.h"
#include "image/core/ImageBuffer.h"

namespace Tw::Bench {

namespace Param = ::Tw::Host::Param;
using Host = Tw::Host::Standalone::Host;

// `Plugin` over `input` into an output of its size and format, with its parameters at their defaults
// but for what `settings` sets, and further layers in the order of the effect's layer parameters. The output
// is written once here, so that it counts among the setup's frames.
template <class Plugin>
Side effectSide(Image::ImageBuffer input, const std::function<void(Param::Parameters&)>& settings = {},
                std::vector<Image::ImageBuffer> layers = {}) {
    struct Render {
        Plugin effect;
        Param::Parameters params;
        Image::ImageBuffer input;
        Image::ImageBuffer output;
        std::vector<Image::ImageBuffer> layers;
        std::vector<Image::ImageBuffer*> layerPointers;
    };
    auto render = std::make_shared<Render>();
    render->effect.threadCount = kThreads;
    render->effect.defineParameters(render->params);
    if (settings) settings(render->params);
    render->input = std::move(input);
    render->output.allocate(render->input.rect, render->input.pixelFormat());
    render->output.clear(render->output.rect);
    render->layers = std::move(layers);
    for (Image::ImageBuffer& layer : render->layers)
        render->layerPointers.push_back(&layer);
    return [render] {
        render->effect.render(render->params, render->input, render->output, render->layerPointers);
    };
}

}  // namespace Tw::Bench
