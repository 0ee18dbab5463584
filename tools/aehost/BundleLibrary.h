// A plug-in bundle as a host loads it: opened with dlopen, its entry points found with dlsym, and the
// functions it exports read from its dynamic symbol table, since a bundle built for Linux has no resource
// that lists its effects. The bundle stays loaded while the object lives.
#pragma once

#include <string>
#include <vector>

#include "host/ae/sdk/AeSdk.h"

namespace Tw::Tools::AeHost {

class BundleLibrary {
public:
    // Throws std::runtime_error with the loader's reason if the file can't be loaded.
    explicit BundleLibrary(std::string path);
    ~BundleLibrary();
    BundleLibrary(const BundleLibrary&) = delete;
    BundleLibrary& operator=(const BundleLibrary&) = delete;

    // The entry point called `name`; throws std::invalid_argument if the bundle exports none.
    PF_FilterProc entry(const std::string& name) const;
    // The names of the functions the bundle exports, in the order of its symbol table.
    const std::vector<std::string>& exportedFunctions() const { return exported_; }
    const std::string& path() const { return path_; }

private:
    std::string path_;
    void* handle_ = nullptr;
    std::vector<std::string> exported_;
};

}  // namespace Tw::Tools::AeHost
