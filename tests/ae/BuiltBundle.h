// The bundle this build makes, loaded once for the life of a test program.
#pragma once

#include <string>

#include "tools/aehost/BundleLibrary.h"

namespace Tw::Tools::AeHost {

const BundleLibrary& builtBundle();

// The entry point called `name`, such as "BlurEntry".
inline PF_FilterProc bundleEntry(const std::string& name) {
    return builtBundle().entry(name);
}

}  // namespace Tw::Tools::AeHost
