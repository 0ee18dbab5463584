// The plug-in bundle as a host loads it: opened once with dlopen, its entry points found with dlsym. The
// path is the build's (TW_AE_BUNDLE_PATH); the bundle stays loaded for the life of the test program.
#pragma once

#include <string>

#include "host/ae/sdk/AeSdk.h"

namespace Tw::Test::AE {

class BundleLibrary {
public:
    // The loaded bundle; throws std::runtime_error with dlerror's text if it can't be loaded.
    static const BundleLibrary& instance();

    // The entry point called `name`; throws std::invalid_argument if the bundle exports none.
    PF_FilterProc entry(const std::string& name) const;
    const std::string& path() const { return path_; }

private:
    BundleLibrary();

    std::string path_;
    void* handle_ = nullptr;
};

}  // namespace Tw::Test::AE
