// The bundle through the simulated host renders exactly the pixels the standalone host renders for the
// same frame and parameters: every effect, at every depth, in After Effects' ARGB worlds and Premiere Pro's
// BGRA worlds, by smart and plain render, downsampled, in worlds whose rows run up in memory, and on hosts
// that differ in threads and suites.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "host/standalone/Host.h"
#include "plugins/EffectRegistry.h"
#include "tests/ae/EffectSettings.h"
#include "tests/ae/SimulatedHost.h"
#include "tests/ae/StandaloneReference.h"

namespace Tw::Test::AE {
namespace {

using ::testing::IsEmpty;

constexpr int32_t kWidth = 64;
constexpr int32_t kHeight = 48;

std::vector<std::string> entryNames() {
    std::vector<std::string> names;
    for (const auto& entry : Plugins::effectRegistry<Host::Standalone::Host>())
        names.emplace_back(entry.entryName);
    return names;
}

ComponentOrder orderOf(const HostSettings& settings) {
    return settings.application == Application::PremierePro ? ComponentOrder::BGRA : ComponentOrder::ARGB;
}

enum class Command { SmartRender, PlainRender };

// One effect on one frame, through both hosts.
struct Comparison {
    TestFrame bundle;
    TestFrame standalone;
};

// Renders `entry` with its test settings over `input`; Blend gets `layer` in its "Layer" parameter, which
// the standalone host places at the input's top left (the two are the same size).
Comparison renderBoth(const std::string& entry, const HostSettings& settings, const TestFrame& input,
                      const TestFrame& layer, Command command = Command::SmartRender) {
    SimulatedHost host(entry, settings);
    EXPECT_EQ(host.globalSetup(), PF_Err_NONE);
    EXPECT_EQ(host.paramsSetup(), PF_Err_NONE);
    host.setInput(input);
    const std::vector<Setting> settingList = settingsFor(entry);
    applySettings(host, settingList);
    StandaloneRender reference = StandaloneRender::of(entry, input, settingList);
    if (entry == "BlendEntry") {
        host.setLayer("Layer", layer);
        reference.layers.push_back(PlacedLayer{layer, 0, 0});
    }
    reference.downsampleX = static_cast<double>(settings.downsampleX.num) / settings.downsampleX.den;
    reference.downsampleY = static_cast<double>(settings.downsampleY.num) / settings.downsampleY.den;
    const RenderOutcome outcome = command == Command::SmartRender ? host.renderSmart() : host.render();
    EXPECT_EQ(outcome.error, PF_Err_NONE);
    EXPECT_THAT(host.faults(), IsEmpty());
    EXPECT_EQ(host.handles().liveCount(), 0u) << "pixel memory taken from the host was not given back";
    return {outcome.output, renderStandalone(reference)};
}

TEST(SameAsStandalone, EveryEffectAtEveryDepthInBothHostsWorlds) {
    for (const Application application : {Application::AfterEffects, Application::PremierePro}) {
        for (const int depth : {8, 16, 32}) {
            HostSettings settings;
            settings.application = application;
            settings.depth = depth;
            const TestFrame input = TestFrame::pattern(kWidth, kHeight, depth, orderOf(settings), 1);
            const TestFrame layer =
                TestFrame::pattern(kWidth, kHeight, depth, orderOf(settings), 40).flippedVertically();
            for (const std::string& entry : entryNames()) {
                SCOPED_TRACE(
                    entry +
                    (application == Application::PremierePro ? " in Premiere Pro" : " in After Effects") +
                    " at " + std::to_string(depth) + " bits");
                const Comparison result = renderBoth(entry, settings, input, layer);
                EXPECT_TRUE(result.bundle == result.standalone)
                    << firstDifference(result.bundle, result.standalone);
                EXPECT_NE(result.bundle, input) << "the settings should change the picture";
            }
        }
    }
}

TEST(SameAsStandalone, PlainRenderWithTheParameterArray) {
    for (const int depth : {8, 32}) {
        HostSettings settings;
        settings.depth = depth;
        const TestFrame input = TestFrame::pattern(kWidth, kHeight, depth, ComponentOrder::ARGB, 2);
        const TestFrame layer = TestFrame::pattern(kWidth, kHeight, depth, ComponentOrder::ARGB, 50);
        for (const char* entry : {"BalanceEntry", "BlurEntry", "BlendEntry"}) {
            SCOPED_TRACE(std::string(entry) + " at " + std::to_string(depth) + " bits");
            const Comparison result = renderBoth(entry, settings, input, layer, Command::PlainRender);
            EXPECT_TRUE(result.bundle == result.standalone)
                << firstDifference(result.bundle, result.standalone);
        }
    }
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
        const TestFrame input = TestFrame::pattern(kWidth, kHeight, 8, ComponentOrder::ARGB, 3);
        const Comparison result = renderBoth(c.entry, settings, input, input);
        EXPECT_TRUE(result.bundle == result.standalone) << firstDifference(result.bundle, result.standalone);
    }
}

// With negative row bytes the adapter walks every world in memory order, from the picture's bottom row
// up: the effect renders the picture upside down, and so the result is the standalone render of the
// flipped frame, flipped back. For an effect that treats rows alike, such as Balance, that is the plain
// render itself.
TEST(SameAsStandalone, WorldsWithNegativeRowBytesRenderTheFlippedPicture) {
    for (const Application application : {Application::AfterEffects, Application::PremierePro}) {
        HostSettings settings;
        settings.application = application;
        settings.negativeRowBytes = true;
        const TestFrame input = TestFrame::pattern(kWidth, kHeight, 8, orderOf(settings), 4);
        const TestFrame layer = TestFrame::pattern(kWidth, kHeight, 8, orderOf(settings), 60);
        for (const std::string& entry : entryNames()) {
            SCOPED_TRACE(
                entry + (application == Application::PremierePro ? " in Premiere Pro" : " in After Effects"));
            SimulatedHost host(entry, settings);
            ASSERT_EQ(host.paramsSetup(), PF_Err_NONE);
            host.setInput(input);
            applySettings(host, settingsFor(entry));
            StandaloneRender flipped =
                StandaloneRender::of(entry, input.flippedVertically(), settingsFor(entry));
            if (entry == "BlendEntry") {
                host.setLayer("Layer", layer);
                flipped.layers.push_back(PlacedLayer{layer.flippedVertically(), 0, 0});
            }
            const RenderOutcome outcome = host.renderSmart();
            ASSERT_EQ(outcome.error, PF_Err_NONE);
            const TestFrame expected = renderStandalone(flipped).flippedVertically();
            EXPECT_TRUE(outcome.output == expected) << firstDifference(outcome.output, expected);
            if (entry == "BalanceEntry") {
                const TestFrame plain =
                    renderStandalone(StandaloneRender::of(entry, input, settingsFor(entry)));
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
        const TestFrame input = TestFrame::pattern(kWidth, kHeight, c.depth, ComponentOrder::ARGB, 5);
        for (const char* entry : {"SmoothingEntry", "BlurEntry", "MinEntry"}) {
            SCOPED_TRACE(std::string(entry) + " with " + c.what);
            SimulatedHost host(entry, settings);
            ASSERT_EQ(host.paramsSetup(), PF_Err_NONE);
            host.setInput(input);
            applySettings(host, settingsFor(entry));
            const RenderOutcome outcome = host.renderSmart();
            ASSERT_EQ(outcome.error, PF_Err_NONE);
            const TestFrame expected =
                renderStandalone(StandaloneRender::of(entry, input, settingsFor(entry)));
            EXPECT_TRUE(outcome.output == expected) << firstDifference(outcome.output, expected);
            EXPECT_EQ(host.iterateCalls() > 0, c.apiMajor >= 12)
                << "iterate_generic is there from interface 12 on";
            EXPECT_THAT(host.faults(), IsEmpty());
        }
    }
}

}  // namespace
}  // namespace Tw::Test::AE
