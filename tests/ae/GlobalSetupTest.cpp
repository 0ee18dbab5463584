// PF_Cmd_GLOBAL_SETUP of every entry: the version and flags the host reads, and the pixel formats each
// effect registers, under After Effects and under the versions of Premiere Pro that differ.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "host/standalone/Host.h"
#include "plugins/EffectRegistry.h"
#include "tests/ae/BuiltBundle.h"
#include "tests/ae/RefusedAllocations.h"
#include "tools/aehost/CoreFoundationStandIn.h"
#include "tools/aehost/SimulatedHost.h"

namespace Tw::Tools::AeHost {
namespace TW_FILE_LOCAL {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr A_u_long kVersion4_0_10 = 0x205601;
constexpr A_long kOutFlags = 0x1040 | PF_OutFlag_DEEP_COLOR_AWARE;
constexpr A_long kOutFlags2 =
    0xC00408 | PF_OutFlag2_FLOAT_COLOR_AWARE | PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS;
constexpr uint32_t kPremiere9_0_2 = 0x09028000;
constexpr uint32_t kPremiere9_0_3 = 0x09038000;

std::vector<std::string> entryNames() {
    std::vector<std::string> names;
    for (const auto& entry : Plugins::effectRegistry<Host::Standalone::Host>())
        names.emplace_back(entry.entryName);
    return names;
}

bool isPixelIndependent(const std::string& entry) {
    static const std::set<std::string> independent = {
        "BalanceEntry", "BalanceRGBEntry",      "BlendEntry",    "BrightnessContrastEntry",
        "CIECCEntry",   "ColorCorrectionEntry", "GradientEntry", "RampEntry",
        "TintEntry"};
    return independent.contains(entry);
}

// The formats in registration order, as their four letters lie in memory.
std::vector<std::string> formatNames(const std::vector<PixelFormatRegistration>& registrations) {
    std::vector<std::string> names;
    for (const PixelFormatRegistration& registration : registrations) {
        std::string name;
        for (int shift = 0; shift < 32; shift += 8)
            name += static_cast<char>((registration.format >> shift) & 0xff);
        names.push_back(name);
    }
    return names;
}

std::set<int> suiteVersions(const std::vector<PixelFormatRegistration>& registrations) {
    std::set<int> versions;
    for (const PixelFormatRegistration& registration : registrations)
        versions.insert(registration.suiteVersion);
    return versions;
}

TEST(GlobalSetup, EveryEntryReportsItsVersionFlagsAndFormats) {
    for (const bool suite2 : {true, false}) {
        for (const std::string& entry : entryNames()) {
            SCOPED_TRACE(entry + (suite2 ? " with both pixel format suites" : " with version 1 alone"));
            HostSettings settings;
            settings.pixelFormatSuite2 = suite2;
            SimulatedHost host(bundleEntry(entry), settings);
            EXPECT_EQ(host.globalSetup(), PF_Err_NONE);
            EXPECT_EQ(host.outData().my_version, kVersion4_0_10);
            EXPECT_EQ(host.outData().out_flags,
                      kOutFlags | (isPixelIndependent(entry) ? PF_OutFlag_PIX_INDEPENDENT : 0));
            EXPECT_EQ(host.outData().out_flags2, kOutFlags2);
            EXPECT_THAT(formatNames(host.pixelFormats()),
                        ElementsAre("bgra", "Bgra", "Argb", "BGra", "ARgb"));
            EXPECT_EQ(suiteVersions(host.pixelFormats()), std::set<int>{suite2 ? 2 : 1});
            EXPECT_THAT(host.faults(), IsEmpty());
        }
    }
}

// Premiere Pro 9.0.2 fails to render an effect with a layer parameter that registered pixel formats.
TEST(GlobalSetup, UnderPremiere902AnEffectWithALayerParameterRegistersNoFormat) {
    struct Case {
        Application application;
        uint32_t version;
        const char* entry;
        std::size_t formats;
    };
    for (const Case& c : {Case{Application::PremierePro, kPremiere9_0_2, "BlendEntry", 0},
                          Case{Application::PremierePro, kPremiere9_0_2, "BalanceEntry", 5},
                          Case{Application::PremierePro, kPremiere9_0_3, "BlendEntry", 5},
                          Case{Application::AfterEffects, kPremiere9_0_2, "BlendEntry", 5}}) {
        SCOPED_TRACE(std::string(c.entry) + " at version " + std::to_string(c.version >> 16) +
                     (c.application == Application::PremierePro ? " of Premiere Pro" : " of After Effects"));
        HostSettings settings;
        settings.application = c.application;
        settings.bundleVersion = c.version;
        SimulatedHost host(bundleEntry(c.entry), settings);
        EXPECT_EQ(host.globalSetup(), PF_Err_NONE);
        EXPECT_EQ(host.pixelFormats().size(), c.formats);
        EXPECT_EQ(host.outData().my_version, kVersion4_0_10);
        EXPECT_EQ(liveCreatedStrings(), 0) << "a CFString made by the adapter was not released";
        EXPECT_THAT(host.faults(), IsEmpty());
    }
}

// The entry sets the version and its flags whatever became of the setup: here the effect runs out of
// memory while it looks for layer parameters under Premiere Pro 9.0.2.
TEST(GlobalSetup, AFailedSetupStillReportsTheVersionAndFlags) {
    for (const char* entry : {"BlendEntry", "BlurEntry"}) {
        SCOPED_TRACE(entry);
        HostSettings settings;
        settings.application = Application::PremierePro;
        settings.bundleVersion = kPremiere9_0_2;
        SimulatedHost host(bundleEntry(entry), settings);
        PF_Err result;
        {
            const RefusedAllocations refusal;
            result = host.globalSetup();
            ASSERT_GT(refusal.refused(), 0) << "the setup allocated nothing that could be refused";
        }
        EXPECT_EQ(result, PF_Err_OUT_OF_MEMORY);
        EXPECT_STREQ(host.outData().return_msg, "Out of memory!");
        EXPECT_EQ(host.outData().my_version, kVersion4_0_10);
        EXPECT_TRUE(host.outData().out_flags & PF_OutFlag_DISPLAY_ERROR_MESSAGE);
        EXPECT_EQ((host.outData().out_flags & PF_OutFlag_PIX_INDEPENDENT) != 0, isPixelIndependent(entry));
        EXPECT_TRUE(host.outData().out_flags2 & PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS);
        EXPECT_THAT(host.faults(), IsEmpty());
    }
}

// Without the basic suite nothing can be registered, and nothing else fails.
TEST(GlobalSetup, AHostWithoutSuitesGetsNoFormatsAndNoError) {
    HostSettings settings;
    settings.basicSuite = false;
    SimulatedHost host(bundleEntry("SmoothingEntry"), settings);
    EXPECT_EQ(host.globalSetup(), PF_Err_NONE);
    EXPECT_THAT(host.pixelFormats(), IsEmpty());
    EXPECT_EQ(host.outData().my_version, kVersion4_0_10);
    EXPECT_EQ(host.outData().out_flags2, kOutFlags2);
    EXPECT_THAT(host.faults(), IsEmpty());
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::AeHost
