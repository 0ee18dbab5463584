// Plug-in descriptions and instances, driven directly: the frames a host hands over, the inputs in their
// order, and what is left in the output when a render fails.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "host/frei0r/PluginInstance.h"
#include "image/core/ImageBuffer.h"
#include "tests/frei0r/HostValues.h"

namespace Tw::Host::Frei0r {
namespace TW_FILE_LOCAL {

using Image::ImageBuffer;
using Param::ParamRecord;
using Plugins::EffectInputs;

constexpr Image::PixelFormat kBgra = Image::fourCC("bgra");

// An effect for these tests alone: its parameters, and a render of its own.
class TestEffect : public StandaloneHost {
public:
    const char* effectName() const override { return "test"; }
    void renderFrame(Param::Parameters&, ImageBuffer&, ImageBuffer&, ImageBuffer&,
                     Image::LayerImages) override {}
    Image::PixelRect inputRect(Param::Parameters&, const Image::PixelRect& request, const Image::PixelRect&,
                               std::vector<Image::LayerRequest>&) override {
        return request;
    }
};

// Writes, per pixel, the blue of its input, of its first and of its second layer (7 and 9 for none).
class LayerProbe final : public TestEffect {
public:
    void defineParameters(Param::Parameters& list) override {
        list.records.push_back(ParamRecord::layer("Under"));
        list.records.push_back(ParamRecord::floatSlider("Gain", 1, 0, 2));
        list.records.push_back(ParamRecord::layer("Over"));
    }
    void renderFrame(Param::Parameters&, ImageBuffer& in, ImageBuffer& out, ImageBuffer&,
                     Image::LayerImages layers) override {
        for (int32_t y = out.rect.top; y < out.rect.bottom; ++y) {
            for (int32_t x = out.rect.left; x < out.rect.right; ++x) {
                const auto blue = [&](const ImageBuffer* image, std::byte none) {
                    return image ? *image->pixelAddress(x, y) : none;
                };
                std::byte* pixel = out.pixelAddress(x, y);
                pixel[0] = blue(&in, std::byte{0});
                pixel[1] = blue(layers[0], std::byte{7});
                pixel[2] = blue(layers[1], std::byte{9});
                pixel[3] = std::byte{255};
            }
        }
    }
};

class FailingEffect final : public TestEffect {
public:
    void defineParameters(Param::Parameters&) override {}
    void renderFrame(Param::Parameters&, ImageBuffer&, ImageBuffer& out, ImageBuffer&,
                     Image::LayerImages) override {
        out.clear(out.rect);
        throw std::runtime_error("failed halfway");
    }
};

// Two controls labelled alike, in two groups, and records a host shows nothing for.
class GroupedLabels final : public TestEffect {
public:
    void defineParameters(Param::Parameters& list) override {
        list.records.push_back(ParamRecord::groupStart("Sharpen"));
        list.records.push_back(ParamRecord::floatSlider("Amount", 50, 0, 100));
        list.records.push_back(ParamRecord::groupEnd());
        list.records.push_back(ParamRecord::groupStart("Grain"));
        list.records.push_back(ParamRecord::floatSlider("Amount", 20, 0, 100));
        list.records.push_back(ParamRecord::checkbox("Internal", false, Param::ParamFlag::Hidden));
        list.records.push_back(ParamRecord::groupEnd());
        list.records.push_back(ParamRecord::color("Tint", {0.5, 0.5, 0.5}));
    }
};

// Holds its first render until a second render, on another thread, has finished, and notes which effect
// object made each.
class SliceRenders final : public TestEffect {
public:
    void defineParameters(Param::Parameters&) override {}
    void renderFrame(Param::Parameters&, ImageBuffer&, ImageBuffer&, ImageBuffer&,
                     Image::LayerImages) override {
        const int render = started++;
        renderedBy[render] = this;
        if (render == 0) {
            const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(5);
            while (!secondFinished && std::chrono::steady_clock::now() < giveUp)
                std::this_thread::yield();
            firstSawTheSecondFinish = secondFinished.load();
        } else {
            secondFinished = true;
        }
    }

    static inline std::atomic<int> started{0};
    static inline std::atomic<bool> secondFinished{false};
    static inline bool firstSawTheSecondFinish = false;
    static inline const StandaloneHost* renderedBy[2] = {};
};

template <class Effect>
std::unique_ptr<StandaloneHost> make() {
    return std::make_unique<Effect>();
}

const EffectEntry kTestEffects[] = {
    {"LayerProbeEntry", "Probe", EffectInputs::Layers, &make<LayerProbe>, {}, {}},
    {"FailingEntry", "Failing", EffectInputs::Filter, &make<FailingEffect>, {}, {}},
    {"FailingSourceEntry", "Failing", EffectInputs::Generator, &make<FailingEffect>, {}, {}},
    {"GroupedEntry", "Grouped", EffectInputs::Filter, &make<GroupedLabels>, {}, {}},
    {"SliceRendersEntry", "Slices", EffectInputs::Filter, &make<SliceRenders>, {}, {}},
};

// Pixels that differ from one to the next in every component.
std::vector<uint32_t> testFrame(int width, int height, uint32_t seed) {
    std::vector<uint32_t> frame(static_cast<std::size_t>(width) * height);
    for (uint32_t& pixel : frame) {
        seed = seed * 1664525u + 1013904223u;
        pixel = seed;
    }
    return frame;
}

// The frame as the command-line tool renders it: the standalone host over its own, padded images.
std::vector<uint32_t> renderedByTheHost(const PluginInstance& instance, const EffectEntry& entry, int width,
                                        int height, const std::vector<uint32_t>& in,
                                        const std::vector<uint32_t>& layer) {
    const auto image = [&](const std::vector<uint32_t>& pixels) {
        ImageBuffer frame;
        frame.allocate({0, 0, width, height}, kBgra);
        for (int y = 0; y < height; ++y)
            std::memcpy(frame.pixelAddress(0, y), &pixels[static_cast<std::size_t>(y) * width], width * 4u);
        return frame;
    };
    ImageBuffer input = image(in);
    ImageBuffer output = image(std::vector<uint32_t>(in.size()));
    ImageBuffer layerImage = image(layer);
    std::vector<ImageBuffer*> layers{&layerImage};
    Param::Parameters params;
    params.records = instance.parameters().records;
    EXPECT_EQ(entry.create()->render(params, input, output, layers), 0);
    std::vector<uint32_t> result(in.size());
    for (int y = 0; y < height; ++y)
        std::memcpy(&result[static_cast<std::size_t>(y) * width], output.pixelAddress(0, y), width * 4u);
    return result;
}

TEST(PluginInstance, RendersEveryEffectInTheHostsUnpaddedFramesAsTheHostDoes) {
    // An odd width leaves the rows without the padding the host's own images have, so a kernel that
    // read past a row's end would read past the frame.
    constexpr int kWidth = 37, kHeight = 9;
    const std::vector<uint32_t> in = testFrame(kWidth, kHeight, 1);
    const std::vector<uint32_t> layer = testFrame(kWidth, kHeight, 2);
    for (const EffectEntry& entry : Plugins::effectRegistry<StandaloneHost>()) {
        SCOPED_TRACE(entry.entryName);
        const PluginDescription plugin(entry);
        PluginInstance instance(plugin, kWidth, kHeight);
        const std::vector<uint32_t> expected = renderedByTheHost(instance, entry, kWidth, kHeight, in, layer);

        std::vector<uint32_t> input = in;
        std::vector<uint32_t> out(in.size());
        const uint32_t* const layers[] = {layer.data(), nullptr};
        instance.update(input.data(), layers, out.data());
        EXPECT_EQ(out, expected);
        EXPECT_EQ(input, in);

        // One frame for input and output: the effect still reads the input as it was.
        instance.update(input.data(), layers, input.data());
        EXPECT_EQ(input, expected);
    }
}

TEST(PluginInstance, TheSecondFrameOfEveryEffectTakesNoNewPixelMemory) {
    constexpr int kWidth = 64, kHeight = 48;
    for (const EffectEntry& entry : Plugins::effectRegistry<StandaloneHost>()) {
        SCOPED_TRACE(entry.entryName);
        const PluginDescription plugin(entry);
        PluginInstance instance(plugin, kWidth, kHeight);
        const uint32_t* const layers[] = {nullptr, nullptr};
        // One frame for input and output, so that every effect takes at least a copy of its input.
        std::vector<uint32_t> frame = testFrame(kWidth, kHeight, 4);
        instance.update(frame.data(), layers, frame.data());
        const std::size_t firstFrame = instance.pixelAllocations();
        EXPECT_GT(firstFrame, 0u);
        frame = testFrame(kWidth, kHeight, 5);
        instance.update(frame.data(), layers, frame.data());
        EXPECT_EQ(instance.pixelAllocations(), firstFrame);
    }
}

// MLT renders slices of a frame through one instance at once, each call with a slice of its own.
TEST(PluginInstance, RendersCallsOnSeveralThreadsAtOnceWithAnEffectEach) {
    const PluginDescription plugin(kTestEffects[4], kTestEffects);
    PluginInstance instance(plugin, 4, 2);
    std::vector<uint32_t> in(8, 1), top(8), bottom(8);
    std::thread first([&] { instance.update(in.data(), {}, top.data()); });
    while (SliceRenders::started == 0)
        std::this_thread::yield();
    instance.update(in.data(), {}, bottom.data());
    first.join();
    EXPECT_TRUE(SliceRenders::firstSawTheSecondFinish) << "the second call waited for the first";
    EXPECT_NE(SliceRenders::renderedBy[0], SliceRenders::renderedBy[1]);
}

TEST(PluginInstance, GivesTheMixersFurtherInputsToTheLayerParametersInOrder) {
    const PluginDescription probe(kTestEffects[0], kTestEffects);
    EXPECT_EQ(probe.pluginType(), F0R_PLUGIN_TYPE_MIXER3);
    EXPECT_EQ(probe.layerInputs(), 2);
    PluginInstance instance(probe, 2, 1);
    const std::vector<uint32_t> in{0x01, 0x02}, under{0x11, 0x12}, over{0x21, 0x22};
    std::vector<uint32_t> out(2);
    const uint32_t* const both[] = {under.data(), over.data()};
    instance.update(in.data(), both, out.data());
    EXPECT_EQ(out, (std::vector<uint32_t>{0xff211101, 0xff221202}));
    // A layer the host leaves out is no layer.
    const uint32_t* const firstOnly[] = {under.data(), nullptr};
    instance.update(in.data(), firstOnly, out.data());
    EXPECT_EQ(out, (std::vector<uint32_t>{0xff091101, 0xff091202}));
    // A missing input frame is transparent black.
    instance.update(nullptr, both, out.data());
    EXPECT_EQ(out, (std::vector<uint32_t>{0xff211100, 0xff221200}));
}

TEST(PluginInstance, AFailedRenderLeavesTheInputInTheOutput) {
    const std::vector<uint32_t> in = testFrame(5, 3, 3);
    std::vector<uint32_t> out(in.size(), 0x12345678);
    const PluginDescription failing(kTestEffects[1], kTestEffects);
    PluginInstance filter(failing, 5, 3);
    filter.update(in.data(), {}, out.data());
    EXPECT_EQ(out, in);

    // A source has no input: its frame is left transparent.
    const PluginDescription source(kTestEffects[2], kTestEffects);
    EXPECT_EQ(source.pluginType(), F0R_PLUGIN_TYPE_SOURCE);
    PluginInstance generator(source, 5, 3);
    generator.update(nullptr, {}, out.data());
    EXPECT_EQ(out, std::vector<uint32_t>(in.size(), 0));
}

TEST(PluginDescription, NamesEveryControlSoThatAHostCanTellThemApart) {
    const PluginDescription grouped(kTestEffects[3], kTestEffects);
    ASSERT_EQ(grouped.parameters().size(), 3u);
    EXPECT_EQ(grouped.parameters()[0].name, "Sharpen/Amount");
    EXPECT_EQ(grouped.parameters()[1].name, "Grain/Amount");
    EXPECT_EQ(grouped.parameters()[1].recordIndex, 4);
    EXPECT_EQ(grouped.parameters()[2].name, "Tint");
    EXPECT_EQ(grouped.parameters()[2].kind, F0R_PARAM_COLOR);

    // The two effects the registry shows as "MinMax" are told apart by their short names.
    const PluginDescription max(effectNamed("MaxEntry"));
    f0r_plugin_info_t info{};
    max.fillInfo(info);
    EXPECT_STREQ(info.name, "MinMax (Max)");
    EXPECT_EQ(info.plugin_type, F0R_PLUGIN_TYPE_FILTER);
    EXPECT_EQ(info.color_model, F0R_COLOR_MODEL_BGRA8888);
    EXPECT_EQ(info.num_params, 1);
    EXPECT_THROW(effectNamed("NoSuchEntry"), Exception);
}

TEST(PluginInstance, ReadsBackWhatTheHostSetOrWhatTheRangeLimitedItTo) {
    const PluginDescription grouped(kTestEffects[3], kTestEffects);
    PluginInstance instance(grouped, 4, 4);
    instance.setParameter(0, numberValue(0.123456789));
    EXPECT_EQ(instance.parameter(0)->number, 0.123456789);
    instance.setParameter(1, numberValue(7));
    EXPECT_EQ(instance.parameter(1)->number, 1.0);
    EXPECT_EQ(instance.parameters().getFloat(4), 100.0);
    instance.setParameter(2, colorValue(0.1f, 0.2f, 0.3f));
    EXPECT_EQ(instance.parameter(2)->color.g, 0.2f);
    EXPECT_EQ(instance.parameter(3), nullptr);
    instance.setParameter(-1, HostValue{});
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Host::Frei0r
