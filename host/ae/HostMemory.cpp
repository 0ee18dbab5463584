// Pixel memory of the images the graph makes, taken from the host as memory handles. The handle sits
// just before the pixels, so that releasing needs the pixel address alone.
#include <cstring>
#include <new>

#include "host/ae/Host.h"

namespace Tw::Host::AE {
namespace {

constexpr std::size_t kHandleSlot = sizeof(PF_Handle);

const PF_UtilCallbacks* handleCallbacks(const PF_InData* inData) {
    const PF_UtilCallbacks* utils = inData ? inData->utils : nullptr;
    return utils && utils->host_new_handle && utils->host_lock_handle && utils->host_dispose_handle ? utils
                                                                                                   : nullptr;
}

}  // namespace

std::byte* Host::allocatePixels(std::size_t bytes) {
    const PF_UtilCallbacks* utils = handleCallbacks(inData);
    if (!utils) return Image::allocateAlignedPixels(bytes);
    for (;;) {
        PF_Handle handle = nullptr;
        void* base = nullptr;
        {
            // The host's handle calls aren't safe when workers allocate at once.
            const std::lock_guard lock(handleMutex_);
            handle = utils->host_new_handle(bytes + Image::kPixelAlignment + kHandleSlot);
            if (handle) base = utils->host_lock_handle(handle);
            if (handle && !base) utils->host_dispose_handle(handle);
        }
        if (base) {
            const auto address = reinterpret_cast<std::uintptr_t>(base) + kHandleSlot;
            auto* pixels = reinterpret_cast<std::byte*>((address + Image::kPixelAlignment - 1) &
                                                        ~(std::uintptr_t{Image::kPixelAlignment} - 1));
            std::memcpy(pixels - kHandleSlot, &handle, kHandleSlot);
            return pixels;
        }
        const std::new_handler handler = std::get_new_handler();
        if (!handler) throw std::bad_alloc();
        handler();
    }
}

void Host::releasePixels(std::byte* pixels, std::size_t /*bytes*/) noexcept {
    const PF_UtilCallbacks* utils = handleCallbacks(inData);
    if (!utils) return Image::releaseAlignedPixels(pixels);
    PF_Handle handle;
    std::memcpy(&handle, pixels - kHandleSlot, kHandleSlot);
    const std::lock_guard lock(handleMutex_);
    if (utils->host_unlock_handle) utils->host_unlock_handle(handle);
    utils->host_dispose_handle(handle);
}

}  // namespace Tw::Host::AE
