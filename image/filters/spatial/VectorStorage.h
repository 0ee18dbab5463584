// VectorStorage: a worker's line buffer of vectors, allocated once for a whole pass.
//
// Not std::vector<V>: g++ 12 gives a generic vector type the alignment of the instruction set of the code
// around it, so that storage which the baseline code allocated may be too loosely aligned for the wider
// variants' aligned loads; and it drops the vector attribute of a dependent alias named directly as a
// class template argument. Raw storage aligned for the widest vector avoids both.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <utility>

namespace Tw::Image {

class VectorStorage {
public:
    static constexpr std::align_val_t kAlignment{64};

    // Room for `count` vectors of type V; std::bad_alloc when no address range could hold them.
    template <class V>
    static VectorStorage of(uint64_t count) {
        if (count > uint64_t(std::numeric_limits<std::ptrdiff_t>::max()) / sizeof(V)) throw std::bad_alloc();
        return VectorStorage(static_cast<std::size_t>(count * sizeof(V)));
    }
    VectorStorage(VectorStorage&& other) noexcept : bytes_(std::exchange(other.bytes_, nullptr)) {}
    VectorStorage& operator=(VectorStorage&&) = delete;
    ~VectorStorage() {
        if (bytes_) ::operator delete(bytes_, kAlignment);
    }

    template <class V>
    V* as() const {
        return reinterpret_cast<V*>(bytes_);
    }

private:
    explicit VectorStorage(std::size_t bytes)
        : bytes_(static_cast<std::byte*>(::operator new(bytes, kAlignment))) {}

    std::byte* bytes_;
};

}  // namespace Tw::Image
