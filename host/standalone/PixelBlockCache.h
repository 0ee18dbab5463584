// Pixel blocks a host has released, kept for its next allocations of the same size. Rendering frame after
// frame asks for the same sizes each time, and memory fresh from the system is faulted in page by page on
// its first write, which costs more than some whole passes over the pixels.
#pragma once

#include <cstddef>
#include <mutex>
#include <utility>
#include <vector>

namespace Tw::Host::Standalone {

class PixelBlockCache {
public:
    PixelBlockCache() = default;
    PixelBlockCache(const PixelBlockCache&) = delete;
    PixelBlockCache& operator=(const PixelBlockCache&) = delete;
    ~PixelBlockCache();

    // A kept block of exactly `bytes`, now the caller's, or null.
    std::byte* take(std::size_t bytes);
    // Keeps `block` of `bytes` if the cache then holds at most `limit` bytes; frees it otherwise.
    void keep(std::byte* block, std::size_t bytes, std::size_t limit) noexcept;

    std::size_t bytesKept() const;

private:
    mutable std::mutex mutex_;
    std::vector<std::pair<std::size_t, std::byte*>> blocks_;
    std::size_t bytesKept_ = 0;
};

}  // namespace Tw::Host::Standalone
