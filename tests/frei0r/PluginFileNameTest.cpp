// The plug-in file names hosts load the effects by.
#include <gtest/gtest.h>

#include "host/frei0r/PluginFileName.h"

namespace Tw::Host::Frei0r {
namespace TW_FILE_LOCAL {

TEST(PluginFileName, FoldsTheEntryNameToLowerSnakeCase) {
    EXPECT_EQ(pluginFileName("SmoothingEntry", "Smoothing"), "tw_smoothing");
    EXPECT_EQ(pluginFileName("BalanceRGBEntry", "Balance RGB"), "tw_balance_rgb");
    EXPECT_EQ(pluginFileName("BrightnessContrastEntry", "Brightness & Contrast"), "tw_brightness_contrast");
    EXPECT_EQ(pluginFileName("AutoBalanceEntry", "Auto-Balance"), "tw_auto_balance");
    // Capitals alone can't split "CIECC"; the display name's words can.
    EXPECT_EQ(pluginFileName("CIECCEntry", "CIE CC"), "tw_cie_cc");
}

TEST(PluginFileName, FallsBackOnCapitalsWhereTheDisplayNameSpellsSomethingElse) {
    // The two "MinMax" effects keep their own names.
    EXPECT_EQ(pluginFileName("MaxEntry", "MinMax"), "tw_max");
    EXPECT_EQ(pluginFileName("MinEntry", "MinMax"), "tw_min");
    EXPECT_EQ(pluginFileName("BalanceRGBEntry", "Colour balance"), "tw_balance_rgb");
    EXPECT_EQ(pluginFileName("LightBurstEntry", "Burst"), "tw_light_burst");
    EXPECT_EQ(pluginFileName("HDRToneEntry", ""), "tw_hdr_tone");
    EXPECT_EQ(pluginFileName("CIECCEntry", "CIE-C"), "tw_ciecc");
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Host::Frei0r
