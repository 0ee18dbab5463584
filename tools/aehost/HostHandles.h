// The host's memory handles, as PF_UtilCallbacks hands them out: a handle points at a master pointer that
// points at the bytes, so that the bytes may move when the handle is resized. The table knows every live
// handle, so that a caller can tell that nothing leaked and a call with a stranger's handle is a fault.
// Thread-safe: the adapter allocates from its workers.
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/ae/sdk/AeSdk.h"
#include "tools/aehost/HostAudit.h"

namespace Tw::Tools::AeHost {

class HostHandles {
public:
    explicit HostHandles(HostAudit& audit) : audit_(audit) {}
    HostHandles(const HostHandles&) = delete;
    HostHandles& operator=(const HostHandles&) = delete;

    PF_Handle allocate(std::size_t size);
    void* lock(PF_Handle handle);
    void unlock(PF_Handle handle);
    void dispose(PF_Handle handle);
    std::size_t size(PF_Handle handle);
    // A copy of the handle's bytes, for the host's own checks.
    std::string bytes(PF_Handle handle);
    // Keeps the bytes up to the smaller size; the master pointer moves, the handle stays.
    PF_Err resize(std::size_t size, PF_Handle handle);

    std::size_t liveCount() const;
    bool isLive(PF_Handle handle) const;

private:
    struct Block {
        void* master = nullptr;
        std::vector<std::byte> bytes;
        int locks = 0;
    };
    // Null, with a fault recorded, for a handle this table didn't make or already disposed of.
    Block* find(PF_Handle handle, const char* call);

    HostAudit& audit_;
    mutable std::mutex mutex_;
    std::unordered_map<PF_Handle, std::unique_ptr<Block>> blocks_;
};

}  // namespace Tw::Tools::AeHost
