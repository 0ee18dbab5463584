// The list of the bundle's effects, once: the one place that names them. Each host compiles the list into
// its registry (plugins/EffectRegistry.cmake), one effect per file.
#pragma once

#include <cstddef>
#include <tuple>

#include "plugins/AutoBalancePlugin.h"
#include "plugins/BalancePlugin.h"
#include "plugins/BalanceRGBPlugin.h"
#include "plugins/BlendPlugin.h"
#include "plugins/BlurPlugin.h"
#include "plugins/BrightnessContrastPlugin.h"
#include "plugins/CIECCPlugin.h"
#include "plugins/ColorCorrectionPlugin.h"
#include "plugins/ColorPresetsPlugin.h"
#include "plugins/CompoundBlurPlugin.h"
#include "plugins/EdgesPlugin.h"
#include "plugins/GlowPlugin.h"
#include "plugins/GradientPlugin.h"
#include "plugins/LightBurstPlugin.h"
#include "plugins/MinMaxPlugin.h"
#include "plugins/PresetsPlugin.h"
#include "plugins/RampPlugin.h"
#include "plugins/SharpenPlugin.h"
#include "plugins/SmoothingPlugin.h"
#include "plugins/TintPlugin.h"

// Every effect: its exported entry name and its plug-in class template over the host. The build reads
// the entry names from the lines below, one per line.
#define TW_FOR_EACH_EFFECT(EFFECT)                            \
    EFFECT(AutoBalanceEntry, AutoBalancePlugin)               \
    EFFECT(BalanceEntry, BalancePlugin)                       \
    EFFECT(BalanceRGBEntry, BalanceRGBPlugin)                 \
    EFFECT(BlendEntry, BlendPlugin)                           \
    EFFECT(BlurEntry, BlurPlugin)                             \
    EFFECT(BrightnessContrastEntry, BrightnessContrastPlugin) \
    EFFECT(CIECCEntry, CIE_CC_Plugin)                         \
    EFFECT(ColorCorrectionEntry, ColorCorrectionPlugin)       \
    EFFECT(ColorPresetsEntry, ColorPresetsPlugin)             \
    EFFECT(CompoundBlurEntry, CompoundBlurPlugin)             \
    EFFECT(EdgesEntry, EdgesPlugin)                           \
    EFFECT(GlowEntry, GlowPlugin)                             \
    EFFECT(GradientEntry, GradientPlugin)                     \
    EFFECT(LightBurstEntry, LightBurstPlugin)                 \
    EFFECT(MaxEntry, MaxPlugin)                               \
    EFFECT(MinEntry, MinPlugin)                               \
    EFFECT(PresetsEntry, PresetsPlugin)                       \
    EFFECT(RampEntry, RampPlugin)                             \
    EFFECT(SharpenEntry, SharpenPlugin)                       \
    EFFECT(SmoothingEntry, SmoothingPlugin)                   \
    EFFECT(TintEntry, TintPlugin)

namespace Tw::Plugins {

// The plug-in classes in list order. The void closes the list the macro leaves open with a comma; no
// tuple of these is ever made.
#define TW_PLUGIN_TYPE(entry, Plugin) Plugin<Host>,
template <class Host>
using EffectPlugins = std::tuple<TW_FOR_EACH_EFFECT(TW_PLUGIN_TYPE) void>;
#undef TW_PLUGIN_TYPE

template <class Host>
inline constexpr std::size_t effectCount = std::tuple_size_v<EffectPlugins<Host>> - 1;

template <std::size_t index, class Host>
using PluginAt = std::tuple_element_t<index, EffectPlugins<Host>>;

}  // namespace Tw::Plugins
