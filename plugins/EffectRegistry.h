// The effect registry: the one list of the bundle's effects. The After Effects entry points, the
// command-line tool and the frei0r plug-ins all read it; nothing else lists effects.
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "plugins/BalancePlugin.h"
#include "plugins/BalanceRGBPlugin.h"
#include "plugins/BlurPlugin.h"
#include "plugins/EffectInputs.h"
#include "plugins/MinMaxPlugin.h"
#include "plugins/SmoothingPlugin.h"

// Every effect, once: its exported entry name and its plug-in class template over the host.
#define TW_FOR_EACH_EFFECT(EFFECT)            \
    EFFECT(BalanceEntry, BalancePlugin)       \
    EFFECT(BalanceRGBEntry, BalanceRGBPlugin) \
    EFFECT(BlurEntry, BlurPlugin)             \
    EFFECT(MaxEntry, MaxPlugin)               \
    EFFECT(MinEntry, MinPlugin)               \
    EFFECT(SmoothingEntry, SmoothingPlugin)

namespace Tw::Plugins {

template <class Host>
struct EffectEntry {
    const char* entryName;    // "BalanceRGBEntry"
    const char* displayName;  // "Balance RGB"
    EffectInputs inputs;
    std::unique_ptr<Host> (*create)();

    // The entry name without its "Entry": how the command line and file names know an effect.
    std::string_view shortName() const {
        const std::string_view name(entryName);
        return name.substr(0, name.size() - std::string_view("Entry").size());
    }
};

template <class Plugin, class Host>
std::unique_ptr<Host> createEffect() {
    return std::make_unique<Plugin>();
}

template <class Host>
std::span<const EffectEntry<Host>> effectRegistry() {
#define TW_REGISTRY_ENTRY(entry, Plugin)                                       \
    EffectEntry<Host>{#entry, Plugin<Host>::displayName, Plugin<Host>::inputs, \
                      &createEffect<Plugin<Host>, Host>},
    static const EffectEntry<Host> entries[] = {TW_FOR_EACH_EFFECT(TW_REGISTRY_ENTRY)};
#undef TW_REGISTRY_ENTRY
    return entries;
}

}  // namespace Tw::Plugins
