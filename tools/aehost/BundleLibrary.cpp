#include "tools/aehost/BundleLibrary.h"

#include <dlfcn.h>

#include <stdexcept>

#include "tools/aehost/ExportedFunctions.h"

namespace Tw::Tools::AeHost {

BundleLibrary::BundleLibrary(std::string path) : path_(std::move(path)) {
    // A name without a slash would send dlopen searching the library path instead of opening the file.
    const std::string file = path_.find('/') == std::string::npos ? "./" + path_ : path_;
    handle_ = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle_) throw std::runtime_error(dlerror());
    exported_ = AeHost::exportedFunctions(file);
}

BundleLibrary::~BundleLibrary() {
    dlclose(handle_);
}

PF_FilterProc BundleLibrary::entry(const std::string& name) const {
    void* symbol = dlsym(handle_, name.c_str());
    if (!symbol) throw std::invalid_argument(path_ + " exports no " + name);
    return reinterpret_cast<PF_FilterProc>(symbol);
}

}  // namespace Tw::Tools::AeHost
