// "Presets": finishes a skin retouch. It mixes a smoothed copy of the frame (the "Key Source" layer, which
// "Smoothing" made) into the frame only where the smoothed colours fall in a range that stands for skin,
// and offers around that mix the return of small detail, sharpening, colour correction and the removal of
// shine, or shows the key itself. "Use Mask" puts the sharpening and the correction before or inside the
// mix, so that they reach skin alone; without it they act on the finished frame.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "host/param/FourCharCode.h"
#include "host/param/Parameters.h"
#include "image/filters/retouch/ColorKeyCCFilter.h"
#include "image/filters/retouch/ColorKeyFilter.h"
#include "image/filters/retouch/ColorKeySpace.h"
#include "image/filters/retouch/CopyAlphaFilter.h"
#include "image/filters/retouch/GrainFilter.h"
#include "image/filters/retouch/MaskFilter.h"
#include "image/filters/retouch/ShineFilter.h"
#include "image/filters/spatial/SharpenFilter.h"
#include "image/filters/tone/CCFilter.h"
#include "plugins/Downsample.h"
#include "plugins/EffectInputs.h"
#include "plugins/FilterPlugin.h"

namespace Tw::Plugins {

namespace Param = ::Tw::Host::Param;

// Parameter indices, in host order.
namespace PresetsParam {
enum : int {
    Locked,
    MaskLocked,
    KeySource,
    Foreground,
    OutputType,
    MaskGroup,
    DarkColor,
    LightColor,
    HueRange,
    SaturationRange,
    ValueRange,
    MaskGroupEnd,
    PreserveSmallDetail,
    SharpenGroup,
    SharpenUsesMask,
    SharpenAmount,
    SharpenGroupEnd,
    CorrectionGroup,
    CorrectionUsesMask,
    AdjustHue,
    AdjustSaturation,
    AdjustBrightness,
    CorrectionGroupEnd,
    ShineGroup,
    ShineAmount,
    ShineGroupEnd,
    Count
};
}  // namespace PresetsParam

// What "Output Type" shows, in the order of its items.
enum class PresetsOutput : int32_t { Normal, Mask, QuickMask, BlurOnly, Transparent };

// The fixed key of shine: from a bright skin tone to white, given by the two colours' ratios to the white
// point. Their hue range runs from about -0.1758 to 0.1192. The lower end is what the ratios give through
// single-precision cube roots, as the key space computes them; rounder figures for it (-0.1755) are not
// what renders, and the key keeps the computed one.
inline Image::SkinKey shineKey() {
    return Image::makeKeyRange(
        Image::keySpaceOfWhiteRatios(0.6502138376235962f, 0.5370203256607056f, 0.32642418146133423f),
        Image::keySpaceOfWhiteRatios(1.000031590461731f, 1.0f, 1.0001561641693115f), {1.0f, 0.05f, 0.1f});
}

template <class Host>
struct PresetsPluginFilters {
    using Node = Image::FilterBase<Host>;

    static Node& makeFilters(FilterChain<Host>& chain, Param::Parameters& params) {
        using namespace Image;
        namespace P = PresetsParam;
        const auto output = static_cast<PresetsOutput>(params.getInt(P::OutputType));
        const bool transparent = output == PresetsOutput::Transparent;
        const bool normal = output == PresetsOutput::Normal;
        Node* keySource = usable(chain.layer(1));
        Node* foreground = usable(chain.layer(2));
        const float detail = percent(params, P::PreserveSmallDetail);
        const float sharpen = percent(params, P::SharpenAmount);
        const bool sharpenUsesMask = params.getBool(P::SharpenUsesMask);
        const bool correctionUsesMask = params.getBool(P::CorrectionUsesMask);
        const auto hue = static_cast<float>(params.getFloat(P::AdjustHue)) / 360.0f;
        const float saturation = percent(params, P::AdjustSaturation);
        const float brightness = percent(params, P::AdjustBrightness);
        // A hue of a whole turn still counts: the correction runs although it turns every colour back.
        const bool correct = hue != 0 || saturation != 0 || brightness != 0;
        const float shine = percent(params, P::ShineAmount);
        const SkinKey skin = skinKey(params);

        Node& input = chain.source();
        Node* current = &input;
        // "Transparent" takes its smoothed copy as "Normal" does.
        const PresetsOutput source = transparent ? PresetsOutput::Mask : output;
        if (source != PresetsOutput::Normal || keySource) {
            if (source != PresetsOutput::QuickMask && keySource) current = keySource;
            if (output == PresetsOutput::BlurOnly) return *current;
            if (current != &input) {
                if (detail > 0) current = &chain.template add<GrainFilter<Host>>(input, *current, detail);
                if (sharpen > 0 && sharpenUsesMask)
                    current = &chain.template add<SharpenFilter<Host>>(*current, sharpen);
            }
        }

        Node* node = nullptr;
        // The key's mix into the input, where the graph has one.
        ColorKeyFilter<Host, ColorKeySampleComp>* inputMix = nullptr;
        if (transparent) {
            auto& strength = chain.template add<ColorKeyFilter<Host, ColorKeySampleMask<MaskGetAlpha>>>(
                input, *current, skin, false);
            node = &chain.template add<CopyAlphaFilter<Host>>(*current, strength);
        } else if (normal && foreground) {
            auto& strength = chain.template add<ColorKeyFilter<Host, ColorKeySampleMask<MaskGetAlpha>>>(
                input, *current, skin, false);
            Node* over = foreground;
            if (correct && correctionUsesMask)
                over = &chain.template add<CCFilter<Host>>(*foreground, hue, saturation, brightness);
            node = &chain.template add<MaskFilter<Host>>(input, *over, strength, false);
        } else if (normal) {
            if (correct && correctionUsesMask) {
                inputMix = &chain.template add<ColorKeyCCFilter<Host>>(input, *current, skin, false, hue,
                                                                       saturation, brightness);
            } else {
                inputMix = &chain.template add<ColorKeyFilter<Host, ColorKeySampleComp>>(input, *current,
                                                                                         skin, false);
            }
            node = inputMix;
        } else {
            node = &chain.template add<ColorKeyFilter<Host, ColorKeySampleMask<MaskGetRGB>>>(input, *current,
                                                                                             skin, false);
        }

        const bool finishing = transparent || normal;
        if (sharpen > 0 && (transparent || (normal && !sharpenUsesMask)))
            node = &chain.template add<SharpenFilter<Host>>(*node, sharpen);
        if (finishing && shine > 0) {
            const DomainTransformParams blur{
                30.0f * static_cast<float>(downsampleFactor(chain.host().downsampleX)),
                30.0f * static_cast<float>(downsampleFactor(chain.host().downsampleY)), 0.4f, 3};
            auto& darkened = chain.template add<ShineFilter<Host>>(*node, blur, shine);
            node = &chain.template add<ColorKeyFilter<Host, ColorKeySampleComp>>(*node, darkened, shineKey(),
                                                                                 false);
        }
        if (correct && (transparent || (normal && !correctionUsesMask)))
            node = &chain.template add<CCFilter<Host>>(*node, hue, saturation, brightness);
        if (transparent) return *node;
        // The input's alpha goes back on. Where the mix into the input is the last node, it takes that
        // alpha itself, the same values without a pass over the frame of their own.
        if (node == inputMix) {
            inputMix->keepsBaseAlpha = true;
            return *node;
        }
        return chain.template add<CopyAlphaFilter<Host>>(*node, input);
    }

private:
    static float percent(const Param::Parameters& params, int index) {
        return static_cast<float>(params.getFloat(index)) / 100.0f;
    }
    // A layer counts when one is chosen and it has pixels.
    static Node* usable(Node* layer) { return layer && !layer->bounds().isEmpty() ? layer : nullptr; }
    static Image::SkinKey skinKey(const Param::Parameters& params) {
        namespace P = PresetsParam;
        const auto point = [&](int index) {
            const Param::ParamColor c = params.getColor(index);
            return Image::rgbToKeySpace(static_cast<float>(c.red), static_cast<float>(c.green),
                                        static_cast<float>(c.blue));
        };
        return Image::makeKeyRange(point(P::DarkColor), point(P::LightColor),
                                   {percent(params, P::HueRange), percent(params, P::SaturationRange),
                                    percent(params, P::ValueRange)});
    }
};

template <class Host>
class PresetsPlugin final : public FilterPlugin<Host, PresetsPluginFilters<Host>> {
public:
    static constexpr const char* displayName = "Presets";
    static constexpr bool pixelIndependent = false;
    static constexpr EffectInputs inputs = EffectInputs::Layers;
    static constexpr std::array<const char*, 7> busySettings{
        "Preserve Small Detail=40", "Sharpen/Amount=60",       "Adjust Hue=25", "Adjust Saturation=-20",
        "Adjust Brightness=10",     "Shine Removal/Amount=70", "Hue Range=30"};
    static constexpr std::array<const char*, 0> neutralSettings{};
    // A frame mixer feeds "Key Source" alone: the smoothed track is what the effect needs, "Foreground"
    // is seldom set, and MLT loads no mixer of three inputs.
    static constexpr int mixerLayers = 1;
    // Saved projects know the parameters by these numbers: list index 0 has 1, index 1 has 26, and every
    // later index its own number.
    static constexpr int32_t diskParameterIds[PresetsParam::Count] = {
        1, 26, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25};

    using FilterPlugin<Host, PresetsPluginFilters<Host>>::FilterPlugin;
    const char* effectName() const override { return displayName; }
    void defineParameters(Param::Parameters& list) override {
        using Record = Param::ParamRecord;
        using Param::ParamFlag::Angle;
        using Param::ParamFlag::Percent;
        using Param::ParamFlag::StartCollapsed;
        // The key's controls carry a bit of their own that nothing reads; saved projects hold it.
        constexpr uint32_t kKeyControl = 0x40000;
        const auto range = [&](const char* label, double value) {
            return Record::floatSlider(label, value, 0, 100, kKeyControl | Percent);
        };
        auto& r = list.records;
        // "Locked" and "Mask Locked" are read by nothing; projects store them.
        r.push_back(Record::checkbox("Locked", true));
        r.push_back(Record::checkbox("Mask Locked", false));
        r.push_back(Record::layer("Key Source"));
        r.push_back(Record::layer("Foreground"));
        r.push_back(
            Record::popup("Output Type", {"Normal", "Mask", "Quick Mask", "Blur Only", "Transparent"}, 0)
                .withItemCodes({Param::fourCharCode("1SbB"), Param::fourCharCode("2SbB"),
                                Param::fourCharCode("3SbB"), 0, 0}));
        r.push_back(Record::groupStart("Mask"));
        r.push_back(Record::color("Dark Color", {222 / 255.0, 180 / 255.0, 166 / 255.0}, kKeyControl));
        r.push_back(Record::color("Light Color", {1.0, 202 / 255.0, 176 / 255.0}, kKeyControl));
        r.push_back(range("Hue Range", 8));
        r.push_back(range("Saturation Range", 15));
        r.push_back(range("Value Range", 15));
        r.push_back(Record::groupEnd());
        r.push_back(Record::floatSlider("Preserve Small Detail", 0, 0, 100, Percent));
        r.push_back(Record::groupStart("Sharpen", StartCollapsed));
        r.push_back(Record::checkbox("Use Mask", false));
        r.push_back(Record::floatSlider("Amount", 0, 0, 300));
        r.push_back(Record::groupEnd());
        r.push_back(Record::groupStart("Color Correction", StartCollapsed));
        r.push_back(Record::checkbox("Use Mask", false));
        r.push_back(Record::floatSlider("Adjust Hue", 0, -360, 360, Angle));
        r.push_back(Record::floatSlider("Adjust Saturation", 0, -100, 100));
        r.push_back(Record::floatSlider("Adjust Brightness", 0, -100, 100));
        r.push_back(Record::groupEnd());
        r.push_back(Record::groupStart("Shine Removal", StartCollapsed));
        r.push_back(Record::floatSlider("Amount", 0, 0, 100));
        r.push_back(Record::groupEnd());
    }
};

}  // namespace Tw::Plugins
