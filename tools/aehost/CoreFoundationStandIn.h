// The CoreFoundation calls by which the adapter tells which application hosts it and its version. On
// macOS they come from the system; on Linux the adapter looks them up in the host process, and the
// simulated host defines them with C linkage in the programs that link it (which must export them: CMake's
// ENABLE_EXPORTS). The main bundle is process-wide, as in a real process; each command sets it from its
// host's settings before it runs.
//
// Ownership follows CoreFoundation's rules: a string from CFStringCreateWithCString is the caller's and
// must be released once; the bundle's identifier is the bundle's and must not be released.
#pragma once

#include <cstdint>
#include <string>

extern "C" {
void* CFBundleGetMainBundle(void);
const void* CFBundleGetIdentifier(void* bundle);
uint32_t CFBundleGetVersionNumber(void* bundle);
const void* CFStringCreateWithCString(const void* allocator, const char* text, uint32_t encoding);
long CFStringCompare(const void* a, const void* b, unsigned long options);
void CFRelease(const void* object);
}

namespace Tw::Tools::AeHost {

void setMainBundle(const std::string& identifier, uint32_t version);
// Strings made by CFStringCreateWithCString and not yet released, over the whole process.
int liveCreatedStrings();

}  // namespace Tw::Tools::AeHost
