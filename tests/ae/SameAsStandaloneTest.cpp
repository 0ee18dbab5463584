// The bundle through the simulated host renders exactly the pixels the standalone host renders for the
// same frame and the same settings, typed once in the tools' value syntax: every effect of the registry, at
// its defaults and at its busy settings, at every depth, in After Effects' ARGB worlds and Premiere Pro's
// BGRA worlds, by smart and by plain render; downsampled, in worlds whose rows run up in memory, and on
// hosts that differ in threads and suites.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "host/standalone/Host.h"
#include "plugins/EffectRegistry.h"
#include "tests/ae/BuiltBundle.h"
#include "tests/ae/StandaloneReference.h"
#include "tests/ae/TestFrames.h"
#include "tests/support/TestLayer.h"
#include "tools/aehost/SimulatedHost.h"

namespace Tw::Tools::AeHost {
namespace TW_FILE_LOCAL {

using ::testing::IsEmpty;
using Effect = Plugins::EffectEntry<Host::Standalone::Host>;

constexpr int32_t kWidth = 64;
constexpr int32_t kHeight = 48;

ComponentOrder orderOf(const HostSettings& settings) {
    return settings.application == Application::PremierePro ? ComponentOrder::Bgra : ComponentOrder::Argb;
}

// Gives the first layer parameter that the effect reads at `settings` a layer in both hosts: `layer` in
// the bundle's, `referenceLayer` in the standalone one's.
void setTestLayer(const Effect& effect, Settings settings, SimulatedHost& host, const Frame& layer,
                  StandaloneRender& reference, const Frame& referenceLayer) {
    const auto taker = ::Tw::Test::firstReadLayer(effect, settings);
    if (!taker) return;
    host.setLayer(taker->key, layer);
    reference.layers.resize(static_cast<std::size_t>(taker->ordinal));
    reference.layers.back() = PlacedLayer{referenceLayer, 0, 0};
}

enum class Command { SmartRender, PlainRender };

// One effect on one frame through both hosts: the bundle's render and the standalone host's. An effect
// that takes layers gets `layer` on the first layer parameter it reads, which the standalone host places
// at the input's top left (the two are the same size).
struct Comparison {
    Frame bundle;
    Frame standalone;
};

Comparison renderBoth(const Effect& effect, Settings settings, const HostSettings& hostSettings,
                      const Frame& input, const Frame& layer, Command command = Command::SmartRender) {
    SimulatedHost host(bundleEntry(effect.entryName), hostSettings);
    EXPECT_EQ(host.globalSetup(), PF_Err_NONE);
    EXPECT_EQ(host.paramsSetup(), PF_Err_NONE);
    host.setInput(input);
    applySettings(host, settings);
    StandaloneRender reference{effect.entryName, input, settings};
    setTestLayer(effect, settings, host, layer, reference, layer);
    reference.downsampleX = static_cast<double>(hostSettings.downsampleX.num) / hostSettings.downsampleX.den;
    reference.downsampleY = static_cast<double>(hostSettings.downsampleY.num) / hostSettings.downsampleY.den;
    const RenderOutcome outcome = command == Command::SmartRender ? host.renderSmart() : host.render();
    EXPECT_EQ(outcome.error, PF_Err_NONE);
    EXPECT_THAT(host.faults(), IsEmpty());
    EXPECT_EQ(host.handles().liveCount(), 0u) << "pixel memory taken from the host was not given back";
    return {outcome.output, renderStandalone(reference)};
}

TEST(SameAsStandalone, EveryEffectOfTheRegistryInBothHostsWorldsAtEveryDepth) {
    for (const Effect& effect : Plugins::effectRegistry<Host::Standalone::Host>()) {
        for (const Settings settings : {Settings{}, effect.busySettings}) {
            for (const Application application : {Application::AfterEffects, Application::PremierePro}) {
                for (const int depth : {8, 16, 32}) {
                    for (const Command command : {Command::SmartRender, Command::PlainRender}) {
                        SCOPED_TRACE(
                            ::testing::Message()
                            << effect.entryName << (settings.empty() ? " at its defaults" : " busy")
                            << (application == Application::PremierePro ? " in Premiere Pro"
                                                                        : " in After Effects")
                            << " at " << depth << " bits"
                            << (command == Command::SmartRender ? ", smart render" : ", plain render"));
                        HostSettings host;
                        host.application = application;
                        host.depth = depth;
                        const Frame input = patternFrame(kWidth, kHeight, depth, orderOf(host), 1);
                        const Frame layer =
                            patternFrame(kWidth, kHeight, depth, orderOf(host), 40).flippedVertically();
                        const Comparison result = renderBoth(effect, settings, host, input, layer, command);
                        EXPECT_TRUE(result.bundle == result.standalone)
                            << firstDifference(result.bundle, result.standalone);
                        if (!settings.empty()) {
                            EXPECT_NE(result.bundle, input) << "busy settings change the picture";
                        }
                    }
                }
            }
        }
    }
}

const Effect& effectNamed(const std::string& entryName) {
    for (const Effect& effect : Plugins::effectRegistry<Host::Standalone::Host>())
        if (entryName == effect.entryName) return effect;
    throw std::invalid_argument("no effect " + entryName);
}

// A frame rendered at a fraction of its resolution shrinks the radii by the same fraction.
TEST(SameAsStandalone, DownsampledRendersScaleTheRadii) {
    struct Case {
        const char* entry;
        PF_RationalScale x, y;
    };
    for (const Case& c : {Case{"BlurEntry", {1, 2}, {1, 2}}, Case{"BlurEntry", {1, 2}, {1, 1}},
                          Case{"MaxEntry", {1, 3}, {1, 3}}, Case{"SmoothingEntry", {1, 2}, {1, 2}}}) {
        SCOPED_TRACE(std::string(c.entry) + " at " + std::to_string(c.x.num) + "/" + std::to_string(c.x.den) +
                     " by " + std::to_string(c.y.num) + "/" + std::to_string(c.y.den));
        HostSettings settings;
        settings.downsampleX = c.x;
        settings.downsampleY = c.y;
        const Frame input = patternFrame(kWidth, kHeight, 8, ComponentOrder::Argb, 3);
        const Effect& effect = effectNamed(c.entry);
        const Comparison result = renderBoth(effect, effect.busySettings, settings, input, input);
        EXPECT_TRUE(result.bundle == result.standalone) << firstDifference(result.bundle, result.standalone);
    }
}

// With negative row bytes the adapter walks every world in memory order, from the picture's bottom row
// up: the effect renders the picture upside down, and so the result is the standalone render of the
// flipped frame, flipped back. For an effect that treats rows alike, such as Balance, that is the plain
// render itself. Points turn upside down with the picture, as the adapter hands them over in memory order.
TEST(SameAsStandalone, WorldsWithNegativeRowBytesRenderTheFlippedPicture) {
    for (const Application application : {Application::AfterEffects, Application::PremierePro}) {
        HostSettings settings;
        settings.application = application;
        settings.negativeRowBytes = true;
        const Frame input = patternFrame(kWidth, kHeight, 8, orderOf(settings), 4);
        const Frame layer = patternFrame(kWidth, kHeight, 8, orderOf(settings), 60);
        for (const Effect& effect : Plugins::effectRegistry<Host::Standalone::Host>()) {
            SCOPED_TRACE(std::string(effect.entryName) + (application == Application::PremierePro
                                                              ? " in Premiere Pro"
                                                              : " in After Effects"));
            SimulatedHost host(bundleEntry(effect.entryName), settings);
            ASSERT_EQ(host.paramsSetup(), PF_Err_NONE);
            host.setInput(input);
            applySettings(host, effect.busySettings);
            StandaloneRender flipped{effect.entryName, input.flippedVertically(), effect.busySettings};
            flipped.upsideDown = true;
            setTestLayer(effect, effect.busySettings, host, layer, flipped, layer.flippedVertically());
            const RenderOutcome outcome = host.renderSmart();
            ASSERT_EQ(outcome.error, PF_Err_NONE);
            const Frame expected = renderStandalone(flipped).flippedVertically();
            EXPECT_TRUE(outcome.output == expected) << firstDifference(outcome.output, expected);
            if (effect.entryName == std::string("BalanceEntry")) {
                const Frame plain = renderStandalone({effect.entryName, input, effect.busySettings});
                EXPECT_TRUE(outcome.output == plain) << firstDifference(outcome.output, plain);
            }
            EXPECT_THAT(host.faults(), IsEmpty());
        }
    }
}

// Hosts differ in their workers, their interface version and the suites they offer; the pixels don't.
TEST(SameAsStandalone, HostsWithOtherThreadsAndSuitesRenderTheSamePixels) {
    struct Case {
        const char* what;
        int workers;
        A_short apiMajor;
        bool optionalSuites;
        bool basicSuite;
        int depth;
    };
    for (const Case& c :
         {Case{"one worker", 1, 13, true, true, 8}, Case{"three workers", 3, 13, true, true, 16},
          Case{"seven workers", 7, 13, true, true, 32},
          Case{"interface 11, without iterate_generic", 4, 11, true, true, 8},
          Case{"the optional suites refused", 4, 13, false, true, 32},
          Case{"no basic suite", 4, 13, true, false, 8},
          Case{"no basic suite, deep worlds", 4, 13, true, false, 16}}) {
        HostSettings settings;
        settings.workerCount = c.workers;
        settings.apiMajor = c.apiMajor;
        settings.optionalSuites = c.optionalSuites;
        settings.basicSuite = c.basicSuite;
        settings.depth = c.depth;
        const Frame input = patternFrame(kWidth, kHeight, c.depth, ComponentOrder::Argb, 5);
        for (const char* entry : {"SmoothingEntry", "BlurEntry", "MinEntry"}) {
            SCOPED_TRACE(std::string(entry) + " with " + c.what);
            SimulatedHost host(bundleEntry(entry), settings);
            ASSERT_EQ(host.paramsSetup(), PF_Err_NONE);
            host.setInput(input);
            applySettings(host, busySettingsOf(entry));
            const RenderOutcome outcome = host.renderSmart();
            ASSERT_EQ(outcome.error, PF_Err_NONE);
            const Frame expected = renderStandalone({entry, input, busySettingsOf(entry)});
            EXPECT_TRUE(outcome.output == expected) << firstDifference(outcome.output, expected);
            EXPECT_EQ(host.iterateCalls() > 0, c.apiMajor >= 12)
                << "iterate_generic is there from interface 12 on";
            EXPECT_THAT(host.faults(), IsEmpty());
        }
    }
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::AeHost
