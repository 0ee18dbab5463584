#include "tests/ae/RefusedAllocations.h"

#include <dlfcn.h>

#include <cstdlib>
#include <new>

#include "tests/ae/BuiltBundle.h"

namespace Tw::Tools::AeHost {
namespace {

thread_local bool refusing = false;
thread_local int refusals = 0;
// Where the bundle is loaded, found before refusing starts.
const void* bundleBase = nullptr;

bool calledFromBundle(const void* returnAddress) {
    Dl_info info{};
    return dladdr(returnAddress, &info) != 0 && info.dli_fbase == bundleBase;
}

}  // namespace

RefusedAllocations::RefusedAllocations() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(bundleEntry("BalanceEntry")), &info))
        bundleBase = info.dli_fbase;
    refusals = 0;
    refusing = true;
}

RefusedAllocations::~RefusedAllocations() {
    refusing = false;
}

int RefusedAllocations::refused() const {
    return refusals;
}

}  // namespace Tw::Tools::AeHost

void* operator new(std::size_t size) {
    if (Tw::Tools::AeHost::refusing && Tw::Tools::AeHost::calledFromBundle(__builtin_return_address(0))) {
        ++Tw::Tools::AeHost::refusals;
        throw std::bad_alloc();
    }
    if (void* memory = std::malloc(size ? size : 1)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

// Every other form goes to the same malloc and free, so that no block crosses between this allocator and
// the library's (which AddressSanitizer reports as a mismatch).
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return std::malloc(size ? size : 1);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}

void* operator new[](std::size_t size) {
    return operator new(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return std::malloc(size ? size : 1);
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    std::free(memory);
}
