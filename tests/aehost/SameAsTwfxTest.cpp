// The two programs agree: `aehost render` of the bundled portrait through every effect of the bundle, at
// the busy settings the effect declares, writes the same pixels as `twfx render` with the same arguments.
// Both programs run as a user runs them, as processes.
#include <gtest/gtest.h>

#include <OpenImageIO/imagebufalgo.h>
#include <OpenImageIO/imageio.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "host/standalone/Host.h"
#include "plugins/EffectRegistry.h"
#include "tests/aehost/AehostFixture.h"
#include "tests/support/TestLayer.h"

namespace Tw::Tools::AeHost {
namespace TW_FILE_LOCAL {

using Effect = Plugins::EffectEntry<Host::Standalone::Host>;

std::string quoted(const std::string& argument) {
    std::string text = "'";
    for (const char c : argument)
        text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
}

int run(const std::vector<std::string>& command) {
    std::string line;
    for (const std::string& argument : command)
        line += quoted(argument) + " ";
    return std::system(line.c_str());
}

std::vector<unsigned char> pixelsOf(const std::string& path, OIIO::ImageSpec& spec) {
    auto input = OIIO::ImageInput::open(path);
    if (!input) return {};
    spec = input->spec();
    std::vector<unsigned char> pixels(spec.image_pixels() * spec.nchannels);
    input->read_image(0, 0, 0, spec.nchannels, OIIO::TypeDesc::UINT8, pixels.data());
    return pixels;
}

class SameAsTwfx : public AehostFixture {};

TEST_F(SameAsTwfx, EveryEffectOfTheBundleOnThePortrait) {
#if defined(__SANITIZE_ADDRESS__)
    // Two program starts per effect, each loading the instrumented programs, take a minute here. What
    // the sanitizers would see is what aehost's in-process renders and the registry's suite show them.
    GTEST_SKIP() << "the two programs' pixels are compared in the optimised build";
#endif
    // A further layer unlike the input, so that an effect that passes a layer on shows it.
    const std::string layer = file("upside-down.png");
    ASSERT_TRUE(OIIO::ImageBufAlgo::flip(OIIO::ImageBuf(kPortrait)).write(layer));
    for (const Effect& effect : Plugins::effectRegistry<Host::Standalone::Host>()) {
        SCOPED_TRACE(effect.entryName);
        std::vector<std::string> arguments = {"-i", kPortrait};
        for (const char* setting : effect.busySettings) {
            arguments.push_back("--set");
            arguments.push_back(setting);
        }
        if (const auto taker = ::Tw::Test::firstReadLayer(effect, effect.busySettings)) {
            arguments.push_back("--layer");
            arguments.push_back(taker->key + "=" + layer);
        }
        std::vector<std::string> aehost = {TW_AEHOST_PATH,   "render", kBundle,
                                           effect.entryName, "-o",     file("ae.png")};
        std::vector<std::string> twfx = {TW_TWFX_PATH, "render", std::string(effect.shortName()), "-o",
                                         file("tw.png")};
        aehost.insert(aehost.end(), arguments.begin(), arguments.end());
        twfx.insert(twfx.end(), arguments.begin(), arguments.end());
        ASSERT_EQ(run(aehost), 0);
        ASSERT_EQ(run(twfx), 0);

        OIIO::ImageSpec bundleSpec, twfxSpec, portraitSpec;
        const std::vector<unsigned char> bundle = pixelsOf(file("ae.png"), bundleSpec);
        const std::vector<unsigned char> standalone = pixelsOf(file("tw.png"), twfxSpec);
        ASSERT_FALSE(bundle.empty());
        EXPECT_EQ(bundleSpec.width, twfxSpec.width);
        EXPECT_EQ(bundleSpec.nchannels, twfxSpec.nchannels);
        EXPECT_TRUE(bundle == standalone) << "the two programs wrote different pixels";
        EXPECT_NE(bundle, pixelsOf(kPortrait, portraitSpec)) << "the busy settings should show";
    }
}

// The retouch as an editor sets it up in After Effects: "Smoothing" on a duplicate of the layer, and
// "Presets" on the layer with the duplicate as its "Key Source". At 8 bits the smoothed layer holds the
// same values in a file as inside twfx's one graph, so the two renders agree.
TEST_F(SameAsTwfx, TheRetouchChainOnThePortrait) {
    ASSERT_EQ(run({TW_AEHOST_PATH, "render", kBundle, "SmoothingEntry", "-i", kPortrait, "-o",
                   file("smoothed.png")}),
              0);
    ASSERT_EQ(run({TW_AEHOST_PATH, "render", kBundle, "PresetsEntry", "-i", kPortrait, "--layer",
                   "Key Source=" + file("smoothed.png"), "-o", file("ae.png")}),
              0);
    ASSERT_EQ(run({TW_TWFX_PATH, "retouch", "-i", kPortrait, "-o", file("tw.png")}), 0);
    OIIO::ImageSpec spec;
    const std::vector<unsigned char> bundle = pixelsOf(file("ae.png"), spec);
    ASSERT_FALSE(bundle.empty());
    EXPECT_TRUE(bundle == pixelsOf(file("tw.png"), spec)) << "the two programs wrote different pixels";
    EXPECT_NE(bundle, pixelsOf(kPortrait, spec));
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::AeHost
