// Which version of Premiere Pro or After Effects is calling. On macOS the application's bundle says so
// through CoreFoundation. Linux has no application bundles; there the same CoreFoundation calls are looked
// up in the host process itself, so a host that provides them (the simulated host of our tests does) is
// identified the same way, and any other host reads as version 0: unknown, no workaround applied.
#include <dlfcn.h>

#include <cstdint>

#include "host/ae/Host.h"

namespace Tw::Host::AE {
namespace {

using CFBundle = void*;
using CFString = const void*;

struct CoreFoundation {
    CFBundle (*getMainBundle)();
    CFString (*getIdentifier)(CFBundle);
    uint32_t (*getVersionNumber)(CFBundle);
    CFString (*createWithCString)(const void* allocator, const char* text, uint32_t encoding);
    long (*compare)(CFString, CFString, unsigned long options);
    void (*release)(const void*);

    // Null members when the host process doesn't provide the calls.
    static CoreFoundation find() {
        const auto look = [](auto& slot, const char* name) {
            slot = reinterpret_cast<std::remove_reference_t<decltype(slot)>>(dlsym(RTLD_DEFAULT, name));
            return slot != nullptr;
        };
        CoreFoundation calls{};
        const bool complete = look(calls.getMainBundle, "CFBundleGetMainBundle") &&
                              look(calls.getIdentifier, "CFBundleGetIdentifier") &&
                              look(calls.getVersionNumber, "CFBundleGetVersionNumber") &&
                              look(calls.createWithCString, "CFStringCreateWithCString") &&
                              look(calls.compare, "CFStringCompare") && look(calls.release, "CFRelease");
        return complete ? calls : CoreFoundation{};
    }
};

constexpr uint32_t kCFStringEncodingUTF8 = 0x08000100;
constexpr long kCFCompareEqualTo = 0;

}  // namespace

int32_t Host::hostVersion(int32_t applId) const {
    if (!inData || inData->appl_id != applId) return 0;
    const CoreFoundation calls = CoreFoundation::find();
    if (!calls.getMainBundle) return 0;
    const CFBundle bundle = calls.getMainBundle();
    if (!bundle) return 0;
    const char* expected = applId == kTwPremiereProApplId ? "com.adobe.AdobePremierePro"
                                                                             : "com.adobe.AfterEffects";
    const CFString identifier = calls.getIdentifier(bundle);
    const CFString wanted = calls.createWithCString(nullptr, expected, kCFStringEncodingUTF8);
    const bool same = identifier && wanted && calls.compare(identifier, wanted, 0) == kCFCompareEqualTo;
    if (wanted) calls.release(wanted);
    return same ? static_cast<int32_t>(calls.getVersionNumber(bundle) >> 16) : 0;
}

}  // namespace Tw::Host::AE
