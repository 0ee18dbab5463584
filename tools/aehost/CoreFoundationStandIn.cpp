#include "tools/aehost/CoreFoundationStandIn.h"

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <set>

#include "tools/aehost/HostState.h"

namespace Tw::Tools::AeHost {
namespace {

struct CFStringStandIn {
    std::string text;
};

struct MainBundle {
    std::mutex mutex;
    // Identifier strings are never freed, so that a pointer handed out stays good after a change.
    std::map<std::string, std::unique_ptr<CFStringStandIn>> identifiers;
    std::atomic<const CFStringStandIn*> identifier{nullptr};
    std::atomic<uint32_t> version{0};
    std::set<const CFStringStandIn*> created;
};

MainBundle& mainBundle() {
    static MainBundle bundle;
    return bundle;
}

// A misuse is the fault of the command that made it; outside any command it can't be told to anyone.
void misuse(const std::string& what) {
    if (HostState* host = HostState::current()) host->audit.fault(what);
}

const CFStringStandIn* stringOf(const void* object) {
    return static_cast<const CFStringStandIn*>(object);
}

}  // namespace

void setMainBundle(const std::string& identifier, uint32_t version) {
    MainBundle& bundle = mainBundle();
    const std::lock_guard lock(bundle.mutex);
    auto& entry = bundle.identifiers[identifier];
    if (!entry) entry = std::make_unique<CFStringStandIn>(CFStringStandIn{identifier});
    bundle.identifier = entry.get();
    bundle.version = version;
}

int liveCreatedStrings() {
    MainBundle& bundle = mainBundle();
    const std::lock_guard lock(bundle.mutex);
    return static_cast<int>(bundle.created.size());
}

}  // namespace Tw::Tools::AeHost

using Tw::Tools::AeHost::CFStringStandIn;
using Tw::Tools::AeHost::mainBundle;

extern "C" void* CFBundleGetMainBundle(void) {
    return &mainBundle();
}

extern "C" const void* CFBundleGetIdentifier(void* bundle) {
    if (bundle != &mainBundle())
        Tw::Tools::AeHost::misuse("CFBundleGetIdentifier of something that is no bundle");
    return mainBundle().identifier.load();
}

extern "C" uint32_t CFBundleGetVersionNumber(void* bundle) {
    if (bundle != &mainBundle())
        Tw::Tools::AeHost::misuse("CFBundleGetVersionNumber of something that is no bundle");
    return mainBundle().version.load();
}

extern "C" const void* CFStringCreateWithCString(const void* /*allocator*/, const char* text,
                                                 uint32_t /*encoding*/) {
    if (!text) return nullptr;
    auto* string = new CFStringStandIn{text};
    const std::lock_guard lock(mainBundle().mutex);
    mainBundle().created.insert(string);
    return string;
}

extern "C" long CFStringCompare(const void* a, const void* b, unsigned long /*options*/) {
    if (!a || !b) {
        Tw::Tools::AeHost::misuse("CFStringCompare of a null string");
        return -1;
    }
    const int order = Tw::Tools::AeHost::stringOf(a)->text.compare(Tw::Tools::AeHost::stringOf(b)->text);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

extern "C" void CFRelease(const void* object) {
    auto* string = const_cast<CFStringStandIn*>(Tw::Tools::AeHost::stringOf(object));
    {
        const std::lock_guard lock(mainBundle().mutex);
        if (mainBundle().created.erase(string) == 0) string = nullptr;
    }
    if (!string) {
        Tw::Tools::AeHost::misuse("CFRelease of an object the caller doesn't own");
        return;
    }
    delete string;
}
