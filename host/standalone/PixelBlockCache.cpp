#include "host/standalone/PixelBlockCache.h"

#include <algorithm>

#include "image/core/ImageHost.h"

namespace Tw::Host::Standalone {

PixelBlockCache::~PixelBlockCache() {
    for (const auto& [bytes, block] : blocks_)
        Image::releaseAlignedPixels(block);
}

std::byte* PixelBlockCache::take(std::size_t bytes) {
    const std::lock_guard lock(mutex_);
    const auto found =
        std::find_if(blocks_.begin(), blocks_.end(), [&](const auto& kept) { return kept.first == bytes; });
    if (found == blocks_.end()) return nullptr;
    std::byte* block = found->second;
    blocks_.erase(found);
    bytesKept_ -= bytes;
    return block;
}

void PixelBlockCache::keep(std::byte* block, std::size_t bytes, std::size_t limit) noexcept {
    {
        const std::lock_guard lock(mutex_);
        if (bytesKept_ + bytes <= limit) {
            try {
                blocks_.emplace_back(bytes, block);
                bytesKept_ += bytes;
                return;
            } catch (...) {
                // No room to note it: the block goes back to the system below.
            }
        }
    }
    Image::releaseAlignedPixels(block);
}

std::size_t PixelBlockCache::bytesKept() const {
    const std::lock_guard lock(mutex_);
    return bytesKept_;
}

}  // namespace Tw::Host::Standalone
