#include "tests/ae/BundleLibrary.h"

#include <dlfcn.h>

#include <stdexcept>

namespace Tw::Test::AE {

BundleLibrary::BundleLibrary() : path_(TW_AE_BUNDLE_PATH) {
    handle_ = dlopen(path_.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle_) throw std::runtime_error(std::string("cannot load the bundle: ") + dlerror());
}

const BundleLibrary& BundleLibrary::instance() {
    static const BundleLibrary bundle;
    return bundle;
}

PF_FilterProc BundleLibrary::entry(const std::string& name) const {
    void* symbol = dlsym(handle_, name.c_str());
    if (!symbol) throw std::invalid_argument("the bundle exports no " + name);
    return reinterpret_cast<PF_FilterProc>(symbol);
}

}  // namespace Tw::Test::AE
