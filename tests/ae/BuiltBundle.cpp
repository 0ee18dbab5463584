#include "tests/ae/BuiltBundle.h"

namespace Tw::Tools::AeHost {

const BundleLibrary& builtBundle() {
    static const BundleLibrary bundle(TW_AE_BUNDLE_PATH);
    return bundle;
}

}  // namespace Tw::Tools::AeHost
