// Host handles as the adapter uses them: blocks of memory the host owns, reached through in_data->utils.
// The text parameters keep their text in one, followed by its terminator.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "host/ae/sdk/AeSdk.h"

namespace Tw::Host::AE {

// A text parameter's refcon is its identifier (below 4096) with this bit set. The arbitrary-data callback
// answers only for a refcon whose bits from this one up are this bit alone, so never for another's data.
inline constexpr std::intptr_t textRefconMark = 4096;

// A handle locked for the object's life. A null handle or a lock the host refuses leaves it empty, and an
// empty one unlocks nothing.
class LockedHandle {
public:
    LockedHandle(const PF_UtilCallbacks& utils, PF_Handle handle)
        : utils_(utils),
          handle_(handle),
          bytes_(handle ? static_cast<char*>(utils.host_lock_handle(handle)) : nullptr) {}
    ~LockedHandle() {
        if (bytes_) utils_.host_unlock_handle(handle_);
    }
    LockedHandle(const LockedHandle&) = delete;
    LockedHandle& operator=(const LockedHandle&) = delete;

    explicit operator bool() const { return bytes_ != nullptr; }
    char* bytes() const { return bytes_; }
    std::size_t size() const { return static_cast<std::size_t>(utils_.host_get_handle_size(handle_)); }
    // The text the handle holds: up to its terminator, never past its end.
    std::string_view text() const {
        return {bytes_, static_cast<std::size_t>(std::find(bytes_, bytes_ + size(), '\0') - bytes_)};
    }

private:
    const PF_UtilCallbacks& utils_;
    PF_Handle handle_;
    char* bytes_;
};

// A null handle or a refused lock reads as empty.
inline std::string handleText(const PF_UtilCallbacks& utils, PF_Handle handle) {
    const LockedHandle locked(utils, handle);
    return locked ? std::string(locked.text()) : std::string();
}

// `handle` resized to hold `text` and its terminator, or a new handle when it is null. Null when the host
// has no memory, and then `handle` is as it was. A refused lock leaves the handle's bytes unwritten.
inline PF_Handle storeText(const PF_UtilCallbacks& utils, PF_Handle handle, const std::string& text) {
    const std::size_t size = text.size() + 1;
    if (!handle) {
        handle = utils.host_new_handle(size);
        if (!handle) return nullptr;
    } else if (utils.host_resize_handle(size, &handle) != PF_Err_NONE) {
        return nullptr;
    }
    const LockedHandle locked(utils, handle);
    if (locked) std::memcpy(locked.bytes(), text.c_str(), size);
    return handle;
}

}  // namespace Tw::Host::AE
