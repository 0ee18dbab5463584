#include "tests/ae/StandaloneReference.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

#include "host/standalone/Host.h"
#include "plugins/EffectRegistry.h"
#include "tools/aehost/HostWorld.h"
#include "tools/common/ParameterLabels.h"
#include "tools/common/ParameterValues.h"

namespace Tw::Tools::AeHost {
namespace {

using StandaloneHost = ::Tw::Host::Standalone::Host;

const Plugins::EffectEntry<StandaloneHost>& registryEntry(const std::string& entryName) {
    const auto registry = Plugins::effectRegistry<StandaloneHost>();
    const auto entry = std::find_if(registry.begin(), registry.end(),
                                    [&](const auto& e) { return entryName == e.entryName; });
    if (entry == registry.end()) throw std::invalid_argument("no effect " + entryName);
    return *entry;
}

// "LABEL=VALUE" split at its first "=".
std::pair<std::string_view, std::string_view> labelAndValue(std::string_view setting) {
    const std::size_t equals = setting.find('=');
    return {setting.substr(0, equals), setting.substr(equals + 1)};
}

}  // namespace

void applySettings(SimulatedHost& host, Settings settings) {
    for (const char* setting : settings) {
        const auto [label, value] = labelAndValue(setting);
        host.set(label, value);
    }
}

Settings busySettingsOf(const std::string& entryName) {
    return registryEntry(entryName).busySettings;
}

Frame renderStandalone(const StandaloneRender& render) {
    const std::unique_ptr<StandaloneHost> host = registryEntry(render.entryName).create();
    host->downsampleX = render.downsampleX;
    host->downsampleY = render.downsampleY;
    Param::Parameters params;
    host->defineParameters(params);
    std::ostringstream warnings;
    for (const char* setting : render.settings) {
        const auto [label, value] = labelAndValue(setting);
        setParameterFromText(params, findParameter(params, label, render.entryName), value, warnings);
    }
    if (render.upsideDown) {
        const double height = render.input.height;
        for (Param::ParamRecord& record : params.records) {
            if (record.kind != Param::ParamKind::Point || record.hasFlag(Param::ParamFlag::UnscaledPoint))
                continue;
            const Param::ParamPoint point = record.value.asPoint();
            record.value.setPoint({point.x, (height - 1 - point.y * height) / height});
        }
    }

    Frame input = render.input;
    const PF_LRect part = render.part.value_or(PF_LRect{0, 0, input.width, input.height});
    Frame output = Frame::blank(part.right - part.left, part.bottom - part.top, input.depth, input.order);
    std::fill(output.pixels.begin(), output.pixels.end(), HostWorld::kUnwritten);
    std::vector<Frame> layerFrames;
    layerFrames.reserve(render.layers.size());
    std::vector<Image::ImageBuffer> layerImages;
    layerImages.reserve(render.layers.size());
    std::vector<Image::ImageBuffer*> layers;
    for (const auto& layer : render.layers) {
        if (!layer) {
            layers.push_back(nullptr);
            continue;
        }
        layerFrames.push_back(layer->frame);
        layerImages.push_back(layerFrames.back().view(layer->left, layer->top));
        layers.push_back(&layerImages.back());
    }
    Image::ImageBuffer in = input.view();
    Image::ImageBuffer out = output.view(part.left, part.top);
    if (host->render(params, in, out, layers) != 0) throw std::runtime_error("the standalone render stopped");
    return output;
}

}  // namespace Tw::Tools::AeHost
