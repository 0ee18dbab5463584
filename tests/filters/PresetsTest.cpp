// "Presets": the graph each output type builds, seen in its pixels, with the choices that look like slips
// and that saved projects rely on.
#include <gtest/gtest.h>

#include <vector>

#include "plugins/PresetsPlugin.h"
#include "tests/support/NodeRender.h"
#include "tests/support/PatternImage.h"

namespace Tw::Plugins {
namespace TW_FILE_LOCAL {

namespace P = PresetsParam;
using Image::ImageBuffer;
using Tw::Test::Pixel;

constexpr Image::PixelRect kFrame{0, 0, 37, 29};

// Presets over a pattern frame, with a second pattern (or none) as its "Key Source".
class PresetsRender {
public:
    explicit PresetsRender(Image::PixelFormat format)
        : input_(Tw::Test::patternImage(kFrame, format, 1)),
          keySource_(Tw::Test::patternImage(kFrame, format, 2)) {
        effect_.defineParameters(params_);
        // A skin range wide enough that the pattern's colours fall partly inside it.
        params_.setFloat(P::HueRange, 15);
        params_.setFloat(P::SaturationRange, 20);
        params_.setFloat(P::ValueRange, 20);
    }

    Tw::Host::Param::Parameters& params() { return params_; }
    void setOutput(PresetsOutput output) { params_.setInt(static_cast<int32_t>(output), P::OutputType); }

    std::vector<Pixel> render(bool withKeySource) {
        ImageBuffer output;
        output.allocate(kFrame, input_.pixelFormat());
        std::vector<ImageBuffer*> layers{withKeySource ? &keySource_ : nullptr, nullptr};
        EXPECT_EQ(effect_.render(params_, input_, output, layers), 0);
        return Tw::Test::pixelsOf(output);
    }
    std::vector<Pixel> input() const { return Tw::Test::pixelsOf(input_); }
    std::vector<Pixel> keySource() const { return Tw::Test::pixelsOf(keySource_); }

private:
    PresetsPlugin<Tw::Test::StandaloneHost> effect_;
    Tw::Host::Param::Parameters params_;
    ImageBuffer input_, keySource_;
};

TEST(Presets, OutputTypesShowTheirPartsOfTheGraph) {
    for (const Image::PixelFormat format : Tw::Test::kEveryFormat) {
        SCOPED_TRACE(Image::formatDepth(format));
        PresetsRender presets(format);
        // "Normal" puts back the input's alpha over the mix, with and without steps after the key.
        for (const float shine : {0.0f, 50.0f}) {
            presets.params().setFloat(P::ShineAmount, shine);
            const std::vector<Pixel> normal = presets.render(true), input = presets.input();
            for (std::size_t i = 0; i < normal.size(); ++i)
                ASSERT_EQ(normal[i][3], input[i][3]) << i;
        }
        presets.params().setFloat(P::ShineAmount, 0);

        presets.setOutput(PresetsOutput::BlurOnly);
        EXPECT_EQ(presets.render(true), presets.keySource());
        EXPECT_EQ(presets.render(false), presets.input());

        // "Quick Mask" keys the input's own colours whatever the key source.
        presets.setOutput(PresetsOutput::QuickMask);
        const std::vector<Pixel> quick = presets.render(true);
        EXPECT_EQ(quick, presets.render(false));

        // "Mask" keys the key source; nothing after the key reaches a mask.
        presets.setOutput(PresetsOutput::Mask);
        const std::vector<Pixel> mask = presets.render(true);
        EXPECT_NE(mask, quick);
        presets.params().setFloat(P::SharpenAmount, 80);
        presets.params().setFloat(P::ShineAmount, 60);
        presets.params().setFloat(P::AdjustHue, 30);
        EXPECT_EQ(presets.render(true), mask);

        // "Transparent" is the key source with the key's strength as alpha, which "Mask" shows in colour.
        presets.params().setFloat(P::SharpenAmount, 0);
        presets.params().setFloat(P::ShineAmount, 0);
        presets.params().setFloat(P::AdjustHue, 0);
        presets.setOutput(PresetsOutput::Transparent);
        const std::vector<Pixel> transparent = presets.render(true);
        const std::vector<Pixel> keySource = presets.keySource();
        const double white = Tw::Test::whiteOf(format);
        bool someKeyed = false, someNot = false;
        for (std::size_t i = 0; i < transparent.size(); ++i) {
            EXPECT_EQ(transparent[i][3], mask[i][0]) << i;
            for (int c = 0; c < 3; ++c)
                EXPECT_EQ(transparent[i][c], keySource[i][c]) << i;
            someKeyed |= transparent[i][3] > 0.5 * white;
            someNot |= transparent[i][3] < 0.01 * white;
        }
        EXPECT_TRUE(someKeyed && someNot);
    }
}

TEST(Presets, UseMaskChoicesRenderAsSavedProjectsExpect) {
    PresetsRender presets(Image::fourCC("argb"));
    const std::vector<Pixel> normal = presets.render(true);
    EXPECT_NE(normal, presets.input());

    // Sharpening "with the mask" and no key source: nothing is sharpened at all.
    presets.params().setBool(true, P::SharpenUsesMask);
    presets.params().setFloat(P::SharpenAmount, 100);
    EXPECT_EQ(presets.render(false), presets.input());
    presets.params().setBool(false, P::SharpenUsesMask);
    EXPECT_NE(presets.render(false), presets.input());

    // "Transparent" sharpens before the key as well when the box is set: twice in all.
    presets.setOutput(PresetsOutput::Transparent);
    const std::vector<Pixel> once = presets.render(true);
    presets.params().setBool(true, P::SharpenUsesMask);
    EXPECT_NE(presets.render(true), once);
    presets.params().setFloat(P::SharpenAmount, 0);

    // ... but corrects colour after the key over the whole frame, box set or not.
    presets.params().setFloat(P::AdjustSaturation, -50);
    const std::vector<Pixel> corrected = presets.render(true);
    presets.params().setBool(true, P::CorrectionUsesMask);
    EXPECT_EQ(presets.render(true), corrected);

    // A hue turn of a whole turn still runs the correction, which rounds colours on their way round.
    presets.params().setFloat(P::AdjustSaturation, 0);
    presets.params().setBool(false, P::CorrectionUsesMask);
    presets.setOutput(PresetsOutput::Normal);
    presets.params().setFloat(P::AdjustHue, 360);
    EXPECT_NE(presets.render(true), normal);
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Plugins
