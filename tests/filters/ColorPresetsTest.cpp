// "Color Presets": which layer the colours choose. Preset 3 wins whenever its colours are finite; a preset
// falls only to colours that are not numbers or not finite, and then the one below it is asked.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "plugins/ColorPresetsPlugin.h"
#include "tests/support/NodeRender.h"
#include "tests/support/PatternImage.h"

namespace Tw::Plugins {
namespace TW_FILE_LOCAL {

using Image::ImageBuffer;
using Tw::Host::Param::ParamColor;
using Tw::Test::Pixel;

constexpr Image::PixelRect kFrame{0, 0, 23, 17};

// List indices of each preset's two colours: the current pair takes 0 and 1, and each group has its start
// record before its colours and, from preset 1 on, five records in all.
int darkColorOf(int preset) {
    return preset == 0 ? 3 : 7 + 5 * (preset - 1);
}

// The effect over a pattern frame, with a pattern of its own on each preset's layer.
class ColorPresetsRender {
public:
    explicit ColorPresetsRender(Image::PixelFormat format)
        : input_(Tw::Test::patternImage(kFrame, format, 1)) {
        for (uint32_t preset = 1; preset <= 3; ++preset)
            presetLayers_.push_back(Tw::Test::patternImage(kFrame, format, 10 + preset));
        effect_.defineParameters(params_);
    }

    void setPresetColors(int preset, ParamColor dark, ParamColor light) {
        params_.setColor(dark, darkColorOf(preset));
        params_.setColor(light, darkColorOf(preset) + 1);
    }

    // `layers` by preset from 1; null where the preset has none.
    std::vector<Pixel> render(const std::vector<ImageBuffer*>& layers) {
        ImageBuffer output;
        output.allocate(kFrame, input_.pixelFormat());
        EXPECT_EQ(effect_.render(params_, input_, output, layers), 0);
        return Tw::Test::pixelsOf(output);
    }
    std::vector<Pixel> render() { return render({&presetLayers_[0], &presetLayers_[1], &presetLayers_[2]}); }
    std::vector<Pixel> input() const { return Tw::Test::pixelsOf(input_); }
    std::vector<Pixel> layer(int preset) const { return Tw::Test::pixelsOf(presetLayers_[preset - 1]); }
    ImageBuffer& layerImage(int preset) { return presetLayers_[preset - 1]; }

private:
    ColorPresetsPlugin<Tw::Test::StandaloneHost> effect_;
    Tw::Host::Param::Parameters params_;
    ImageBuffer input_;
    std::vector<ImageBuffer> presetLayers_;
};

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(ColorPresets, ColoursThatAreNotFiniteHandTheChoiceDownToTheNextPreset) {
    for (const Image::PixelFormat format : Tw::Test::kEveryFormat) {
        SCOPED_TRACE(Image::formatDepth(format));
        ColorPresetsRender effect(format);
        // At the defaults preset 3 holds black, far from the current skin tone, and still wins.
        EXPECT_EQ(effect.render(), effect.layer(3));
        effect.setPresetColors(3, {0.2, kNaN, 0.1}, {0, 0, 0});
        EXPECT_EQ(effect.render(), effect.layer(2));
        effect.setPresetColors(2, {0, 0, 0}, {kInfinity, 0, 0});
        EXPECT_EQ(effect.render(), effect.layer(1));
        effect.setPresetColors(1, {-kInfinity, 0, 0}, {0, 0, 0});
        EXPECT_EQ(effect.render(), effect.input());
        // A finite colour as far off as the limit fails the test as well.
        effect.setPresetColors(1, {1e38, 0, 0}, {0, 0, 0});
        EXPECT_EQ(effect.render(), effect.input());
        effect.setPresetColors(1, {0.5, 0.5, 0.5}, {0.5, 0.5, 0.5});
        EXPECT_EQ(effect.render(), effect.layer(1));
    }
}

TEST(ColorPresets, PresetsOneAndTwoCountForNothingWhilePresetThreeIsFinite) {
    ColorPresetsRender effect(Image::fourCC("ae32"));
    const ParamColor skin{1.0, 0.73, 0.6};
    // Presets 1 and 2 match the current pair exactly, preset 3 is as far from it as colours go.
    effect.setPresetColors(1, skin, skin);
    effect.setPresetColors(2, skin, skin);
    effect.setPresetColors(3, {0, 1, 1}, {0, 1, 1});
    EXPECT_EQ(effect.render(), effect.layer(3));
}

TEST(ColorPresets, AChosenPresetWithoutPixelsPassesTheInput) {
    ColorPresetsRender effect(Image::fourCC("argb"));
    EXPECT_EQ(effect.render({&effect.layerImage(1), &effect.layerImage(2), nullptr}), effect.input());
    EXPECT_EQ(effect.render({&effect.layerImage(1), &effect.layerImage(2)}), effect.input());
    ImageBuffer empty;
    EXPECT_EQ(effect.render({&effect.layerImage(1), &effect.layerImage(2), &empty}), effect.input());
}

// A layer smaller than the frame leaves the rest of the frame transparent black.
TEST(ColorPresets, AChosenLayerSmallerThanTheFrameIsAllThatShows) {
    ColorPresetsRender effect(Image::fourCC("Bgra"));
    ImageBuffer small = Tw::Test::patternImage({4, 3, 12, 9}, Image::fourCC("Bgra"), 20);
    const std::vector<Pixel> shown = effect.render({nullptr, nullptr, &small});
    const std::vector<Pixel> layer = Tw::Test::pixelsOf(small);
    std::size_t inside = 0;
    for (int32_t y = kFrame.top; y < kFrame.bottom; ++y) {
        for (int32_t x = kFrame.left; x < kFrame.right; ++x) {
            const Pixel& pixel = shown[static_cast<std::size_t>(y * kFrame.width() + x)];
            if (x >= 4 && x < 12 && y >= 3 && y < 9) {
                EXPECT_EQ(pixel, layer[inside++]) << x << "," << y;
            } else {
                EXPECT_EQ(pixel, Pixel{}) << x << "," << y;
            }
        }
    }
}

// Before a render the effect names only the chosen preset's layer, so a host fetches no other.
TEST(ColorPresets, AsksOnlyForTheChosenLayer) {
    ColorPresetsPlugin<Tw::Test::StandaloneHost> effect;
    Tw::Host::Param::Parameters params;
    effect.defineParameters(params);
    std::vector<Image::LayerRequest> requests;
    EXPECT_TRUE(effect.inputRect(params, kFrame, kFrame, requests).isEmpty());
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests.front().ordinal, 3);
    EXPECT_EQ(requests.front().rect, kFrame);
    params.setColor({kNaN, 0, 0}, darkColorOf(3));
    requests.clear();
    effect.inputRect(params, kFrame, kFrame, requests);
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests.front().ordinal, 2);
    params.setColor({kNaN, 0, 0}, darkColorOf(2));
    params.setColor({kNaN, 0, 0}, darkColorOf(1));
    requests.clear();
    EXPECT_EQ(effect.inputRect(params, kFrame, kFrame, requests), kFrame);
    EXPECT_TRUE(requests.empty());
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Plugins
