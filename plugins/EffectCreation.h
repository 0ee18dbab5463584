// How the registry makes an effect, for the files that compile the effects. The table's file only
// declares it, so that it compiles none of them itself.
#pragma once

#include <memory>

namespace Tw::Plugins {

template <class Plugin, class Host>
std::unique_ptr<Host> createEffect() {
    return std::make_unique<Plugin>();
}

}  // namespace Tw::Plugins
