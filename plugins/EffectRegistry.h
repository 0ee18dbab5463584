// The effect registry: the bundle's effects as a table, the same for every host. The After Effects entry
// points, the command-line tool and the frei0r plug-ins all read it. The effects themselves are listed in
// plugins/EffectList.h; a host's build compiles the table and each effect once (EffectRegistry.cmake), so
// that reading the table costs a caller nothing.
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "plugins/EffectInputs.h"

namespace Tw::Plugins {

template <class Host>
struct EffectEntry {
    const char* entryName;    // "BalanceRGBEntry"
    const char* displayName;  // "Balance RGB"
    EffectInputs inputs;
    std::unique_ptr<Host> (*create)();
    // Settings as a user types them ("Gamma=1.8"), declared beside each effect's parameters: `busy` puts
    // every kernel of the effect to work, `neutral` makes it give back its input unchanged (empty for a
    // generator, which has no input to give back).
    std::span<const char* const> busySettings;
    std::span<const char* const> neutralSettings;
    // How many of its layer parameters, in list order, a host of frame mixers (frei0r) fills from its
    // further inputs: at most 2. See mixerLayersOf.
    int mixerLayers = 2;
    // False for an effect that no setting turns into an identity: `neutral` is then empty and means
    // nothing. See hasNeutralSettingsOf.
    bool hasNeutralSettings = true;

    // The entry name without its "Entry": how the command line and file names know an effect.
    std::string_view shortName() const {
        const std::string_view name(entryName);
        return name.substr(0, name.size() - std::string_view("Entry").size());
    }
};

// An effect's `mixerLayers`, or 2 when it declares none: every layer parameter that a three-input mixer
// can fill. An effect whose further layers past the first are seldom used declares 1, so that it is a
// two-input mixer, the only kind that MLT (and so Kdenlive and Shotcut) loads.
template <class Plugin>
constexpr int mixerLayersOf() {
    if constexpr (requires { Plugin::mixerLayers; }) {
        return Plugin::mixerLayers;
    } else {
        return 2;
    }
}

// An effect's `hasNeutralSettings`, or true when it declares none: a filter whose every setting changes
// the frame (a recolouring by luminance, say) declares false.
template <class Plugin>
constexpr bool hasNeutralSettingsOf() {
    if constexpr (requires { Plugin::hasNeutralSettings; }) {
        return Plugin::hasNeutralSettings;
    } else {
        return true;
    }
}

// Every effect of the list, in list order, made for `Host`.
template <class Host>
std::span<const EffectEntry<Host>> effectRegistry();

}  // namespace Tw::Plugins
