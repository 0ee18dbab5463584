#include "tools/aehost/HostHandles.h"

#include <algorithm>
#include <string>

namespace Tw::Tools::AeHost {

HostHandles::Block* HostHandles::find(PF_Handle handle, const char* call) {
    const auto found = blocks_.find(handle);
    if (found != blocks_.end()) return found->second.get();
    audit_.fault(std::string(call) + " with a handle the host never made or already disposed of");
    return nullptr;
}

PF_Handle HostHandles::allocate(std::size_t size) {
    auto block = std::make_unique<Block>();
    // One byte more, so that an empty handle still has an address to lock.
    block->bytes.resize(size + 1);
    block->bytes.resize(size);
    block->master = block->bytes.data();
    const auto handle = reinterpret_cast<PF_Handle>(&block->master);
    const std::lock_guard lock(mutex_);
    blocks_.emplace(handle, std::move(block));
    return handle;
}

void* HostHandles::lock(PF_Handle handle) {
    const std::lock_guard lock(mutex_);
    Block* block = find(handle, "host_lock_handle");
    if (!block) return nullptr;
    ++block->locks;
    return block->master;
}

void HostHandles::unlock(PF_Handle handle) {
    const std::lock_guard lock(mutex_);
    Block* block = find(handle, "host_unlock_handle");
    if (!block) return;
    if (block->locks == 0) audit_.fault("host_unlock_handle of a handle that isn't locked");
    block->locks = std::max(block->locks - 1, 0);
}

void HostHandles::dispose(PF_Handle handle) {
    const std::lock_guard lock(mutex_);
    if (find(handle, "host_dispose_handle")) blocks_.erase(handle);
}

std::size_t HostHandles::size(PF_Handle handle) {
    const std::lock_guard lock(mutex_);
    const Block* block = find(handle, "host_get_handle_size");
    return block ? block->bytes.size() : 0;
}

std::string HostHandles::bytes(PF_Handle handle) {
    const std::lock_guard lock(mutex_);
    const Block* block = find(handle, "the host's own read");
    return block ? std::string(reinterpret_cast<const char*>(block->bytes.data()), block->bytes.size()) : "";
}

PF_Err HostHandles::resize(std::size_t size, PF_Handle handle) {
    const std::lock_guard lock(mutex_);
    Block* block = find(handle, "host_resize_handle");
    if (!block) return PF_Err_BAD_CALLBACK_PARAM;
    if (block->locks > 0) audit_.fault("host_resize_handle of a locked handle");
    std::vector<std::byte> moved(size + 1);
    moved.resize(size);
    std::copy_n(block->bytes.begin(), std::min(size, block->bytes.size()), moved.begin());
    block->bytes = std::move(moved);
    block->master = block->bytes.data();
    return PF_Err_NONE;
}

std::size_t HostHandles::liveCount() const {
    const std::lock_guard lock(mutex_);
    return blocks_.size();
}

bool HostHandles::isLive(PF_Handle handle) const {
    const std::lock_guard lock(mutex_);
    return blocks_.count(handle) != 0;
}

}  // namespace Tw::Tools::AeHost
