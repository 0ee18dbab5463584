// "Smoothing": flattens skin while keeping its fine texture and the strong edges of a face. Two
// edge-preserving blurs of the same spatial width: a wide range one that smooths, and a narrow range one
// whose difference from the image is the texture, added back in a measure. Local contrast, the range of a
// minimum and a maximum box, may stop the smoothing blur as extra edges.
#pragma once

#include <array>

#include <algorithm>
#include <cstdint>

#include "host/param/Parameters.h"
#include "image/filters/retouch/BlurLayersFilter.h"
#include "image/filters/retouch/DifferenceFilter.h"
#include "image/filters/spatial/MinMaxFilter.h"
#include "plugins/Downsample.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

// Parameter indices, in host order.
namespace SmoothingParam {
enum : int { Locked, Amount, DetailSmoothing, ContrastEnhance };
}

template <class Host>
struct SmoothingPluginFilters {
    static Image::FilterBase<Host>& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        // Both axes take the horizontal factor, also for an anamorphic downsample: rendered results
        // depend on it.
        const auto rx = static_cast<float>(downsampleFactor(chain.host().downsampleX));
        const float sigma = static_cast<float>(params.getFloat(SmoothingParam::Amount)) * rx;
        const float detail = static_cast<float>(params.getFloat(SmoothingParam::DetailSmoothing)) / 100.0f;
        const float contrast = static_cast<float>(params.getFloat(SmoothingParam::ContrastEnhance)) / 100.0f;
        const int32_t radius =
            contrast > 0 ? static_cast<int32_t>((40.0f * contrast + 10.0f) * rx + 0.5f) : 0;
        const float edgeWeight = contrast > 0 ? std::min(contrast + 0.5f, 1.0f) : contrast;

        if (!(sigma > 0)) return chain.source();
        auto& layers = chain.template add<Image::BlurLayersFilter<Host>>(
            chain.source(), Image::DomainTransformParams{sigma, sigma, 0.4f, 3},
            Image::DomainTransformParams{sigma, sigma, 0.1f, 3}, 0.0f, 1.0f - detail);
        if (radius >= 1 && edgeWeight > 0) {
            auto& minimum =
                chain.template add<Image::MinMaxFilter<Host, Image::MinOp>>(chain.source(), radius, radius);
            auto& maximum =
                chain.template add<Image::MinMaxFilter<Host, Image::MaxOp>>(chain.source(), radius, radius);
            auto& range = chain.template add<Image::DifferenceFilter<Host>>(minimum, maximum);
            // The local contrast stops the smoothing blur only; the texture blur never sees it.
            layers.textureBlurA.guideIsInput1 = false;
            layers.textureBlurA.appendInput(range);
            layers.textureBlurA.edgeScale = edgeWeight;
        }
        return layers;
    }
};

template <class Host>
class SmoothingPlugin final : public FilterPlugin<Host, SmoothingPluginFilters<Host>> {
public:
    static constexpr const char* displayName = "Smoothing";
    static constexpr bool pixelIndependent = false;
    static constexpr EffectInputs inputs = EffectInputs::Filter;
    static constexpr std::array<const char*, 3> busySettings{
        "Smoothing Amount=12", "Skin Detail Smoothing=20", "Contrast Enhance=40"};
    static constexpr std::array<const char*, 1> neutralSettings{"Smoothing Amount=0"};

    using FilterPlugin<Host, SmoothingPluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        // Locked: read by nothing; kept so that saved projects still find it.
        list.records.push_back(Param::ParamRecord::checkbox("Locked", false));
        // The host's bit 2 on "Smoothing Amount" is carried as it always was; nothing here reads it.
        constexpr uint32_t kAmountFlags = 4;
        list.records.push_back(Param::ParamRecord::floatSlider("Smoothing Amount", 30, 0, 200, kAmountFlags));
        list.records.push_back(Param::ParamRecord::floatSlider("Skin Detail Smoothing", 40, -400, 100));
        list.records.push_back(Param::ParamRecord::floatSlider("Contrast Enhance", 25, 0, 100));
    }
};

}  // namespace Tw::Plugins
