// One render of an effect of the registry, set up as a user would: a test frame, a second frame on the
// first further layer it reads where it has one, and the settings it declares for the tests typed in as a
// user types them. The registry suite and the digests that compare architectures both render this way.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/standalone/Host.h"
#include "image/graph/LayerRequest.h"
#include "plugins/EffectRegistry.h"
#include "tests/support/NodeRender.h"
#include "tests/support/PatternImage.h"
#include "tests/support/TestLayer.h"

namespace Tw::Test {

using RegistryEntry = Plugins::EffectEntry<StandaloneHost>;

inline constexpr Image::PixelRect kTestFrame = {0, 0, 61, 43};
// A further layer smaller than the frame and off its origin, so that both its edges and the frame's show.
inline constexpr Image::PixelRect kTestLayerFrame = {-7, 5, 40, 52};

enum class EffectSettings { Defaults, Busy, Neutral };

inline const char* nameOf(EffectSettings settings) {
    return settings == EffectSettings::Busy      ? "Busy"
           : settings == EffectSettings::Neutral ? "Neutral"
                                                 : "Defaults";
}

inline std::string formatText(Image::PixelFormat format) {
    return std::string(reinterpret_cast<const char*>(&format), 4);
}

class EffectRender {
public:
    EffectRender(const RegistryEntry& effect, EffectSettings settings, Image::PixelFormat format)
        : effect_(effect.create()), input_(patternImage(kTestFrame, format, 1)) {
        effect_->defineParameters(params_);
        const auto typed = settings == EffectSettings::Busy      ? effect.busySettings
                           : settings == EffectSettings::Neutral ? effect.neutralSettings
                                                                 : std::span<const char* const>{};
        applySettings(params_, typed, effect.displayName);
        // Neutral settings leave the further layers unset, as a user switching the effect off would.
        if (settings == EffectSettings::Neutral) return;
        if (const auto taker = firstReadLayer(*effect_, params_)) {
            layer_ = patternImage(kTestLayerFrame, format, 2);
            layers_.assign(static_cast<std::size_t>(taker->ordinal), nullptr);
            layers_.back() = &layer_;
        }
    }

    StandaloneHost& host() { return *effect_; }
    const Image::ImageBuffer& input() const { return input_; }

    // Renders `rect` into `output`; the host's code for the render.
    int32_t run(Image::ImageBuffer& output, const Image::PixelRect& rect) {
        output.allocate(rect, input_.pixelFormat());
        return effect_->render(params_, input_, output, layers_);
    }

    // The same as a host that hands over no more of the input than the effect asks for: the input cut to
    // the rectangle that the effect's inputRect names for `rect`, so that a region asked too small shows
    // in the pixels. Further layers go whole: before a render the effect can only take them to extend as
    // far as the frame, and a layer that reaches beyond it (as the test's does) would be cut short.
    int32_t runOnAskedInput(Image::ImageBuffer& output, const Image::PixelRect& rect) {
        std::vector<Image::LayerRequest> requests;
        const Image::PixelRect asked = effect_->inputRect(params_, rect, input_.rect, requests);
        Image::ImageBuffer input = cutTo(input_, asked);
        // Such a host still knows the whole layer, which points are fractions of.
        effect_->layerRect = input_.rect;
        output.allocate(rect, input_.pixelFormat());
        return effect_->render(params_, input, output, layers_);
    }

private:
    static Image::ImageBuffer cutTo(const Image::ImageBuffer& image, const Image::PixelRect& rect) {
        Image::ImageBuffer cut;
        cut.allocate(rect.intersect(image.rect), image.pixelFormat());
        cut.copyFrom(image);
        return cut;
    }

    std::unique_ptr<StandaloneHost> effect_;
    Tw::Host::Param::Parameters params_;
    Image::ImageBuffer input_;
    Image::ImageBuffer layer_;
    std::vector<Image::ImageBuffer*> layers_;
};

}  // namespace Tw::Test
