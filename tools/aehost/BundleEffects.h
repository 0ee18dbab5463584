// The effects of a loaded bundle and how a user names them. Every exported function is taken for an
// entry point; the display name of an entry this project builds comes from the effect registry, since
// the bundle itself says it only in the resources of the macOS and Windows packages.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/aehost/BundleLibrary.h"

namespace Tw::Tools::AeHost {

struct BundleEffect {
    std::string entryName;    // "BalanceRGBEntry"
    std::string displayName;  // "Balance RGB", or empty for an entry the registry doesn't know
};

// In the order of their entry names.
std::vector<BundleEffect> effectsOf(const BundleLibrary& bundle);

// The entry name without its "Entry", as a user may type it.
std::string_view shortNameOf(std::string_view entryName);

// The effect whose entry name, with or without its "Entry", or whose display name is `name`, in any case.
// A display name may be shared; a name that fits several effects, or none, throws ToolError with
// ExitCode::UnknownName, the message naming the choices.
const BundleEffect& findEffect(std::string_view name, const std::vector<BundleEffect>& effects);

}  // namespace Tw::Tools::AeHost
