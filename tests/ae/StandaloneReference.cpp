#include "tests/ae/StandaloneReference.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "host/standalone/Host.h"
#include "plugins/EffectRegistry.h"
#include "tests/ae/HostWorld.h"

namespace Tw::Test::AE {
namespace {

namespace Param = ::Tw::Host::Param;
using StandaloneHost = ::Tw::Host::Standalone::Host;

// How the adapter reads a colour: the host's colour suite gives single-precision floats.
double colorComponent(uint8_t value) {
    return static_cast<double>(static_cast<float>(value / 255.0));
}

void applySetting(Param::Parameters& params, const Setting& setting) {
    const auto record = std::find_if(params.records.begin(), params.records.end(),
                                     [&](const Param::ParamRecord& r) { return r.label == setting.label; });
    if (record == params.records.end())
        throw std::invalid_argument("no parameter is labelled " + setting.label);
    const int index = static_cast<int>(record - params.records.begin());
    if (const auto* number = std::get_if<double>(&setting.value)) {
        if (record->kind == Param::ParamKind::IntSlider) {
            params.setInt(static_cast<int32_t>(std::lround(*number)), index);
        } else {
            params.setFloat(index, *number);
        }
    } else if (const auto* checked = std::get_if<bool>(&setting.value)) {
        params.setBool(*checked, index);
    } else if (const auto* popup = std::get_if<PopupChoice>(&setting.value)) {
        params.setInt(popup->choice - 1, index);
    } else {
        const Color8& color = std::get<Color8>(setting.value);
        params.setColor({colorComponent(color.red), colorComponent(color.green), colorComponent(color.blue)},
                        index);
    }
}

}  // namespace

void applySettings(SimulatedHost& host, const std::vector<Setting>& settings) {
    for (const Setting& setting : settings) {
        if (const auto* number = std::get_if<double>(&setting.value)) {
            host.setSlider(setting.label, *number);
        } else if (const auto* checked = std::get_if<bool>(&setting.value)) {
            host.setCheckbox(setting.label, *checked);
        } else if (const auto* popup = std::get_if<PopupChoice>(&setting.value)) {
            host.setPopup(setting.label, popup->choice);
        } else {
            const Color8& color = std::get<Color8>(setting.value);
            host.setColor(setting.label, color.red, color.green, color.blue);
        }
    }
}

TestFrame renderStandalone(const StandaloneRender& render) {
    const auto registry = Plugins::effectRegistry<StandaloneHost>();
    const auto entry = std::find_if(registry.begin(), registry.end(),
                                    [&](const auto& e) { return render.entryName == e.entryName; });
    if (entry == registry.end()) throw std::invalid_argument("no effect " + render.entryName);
    const std::unique_ptr<StandaloneHost> host = entry->create();
    host->downsampleX = render.downsampleX;
    host->downsampleY = render.downsampleY;
    Param::Parameters params;
    host->defineParameters(params);
    for (const Setting& setting : render.settings)
        applySetting(params, setting);

    TestFrame input = render.input;
    const PF_LRect part = render.part.value_or(PF_LRect{0, 0, input.width, input.height});
    TestFrame output =
        TestFrame::blank(part.right - part.left, part.bottom - part.top, input.depth, input.order);
    std::fill(output.pixels.begin(), output.pixels.end(), HostWorld::kUnwritten);
    std::vector<TestFrame> layerFrames;
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

}  // namespace Tw::Test::AE
