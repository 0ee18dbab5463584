// How a failure on one of the host's workers reaches the thread that spread the work. A host's thread call
// carries only a code back from each worker (After Effects' iterate_generic is a C interface), so every
// host turns a worker's exception into a code there, and the code back into an exception on the caller.
#pragma once

#include <cstdint>
#include <new>

#include "image/core/Exception.h"

namespace Tw::Image::WorkerFailure {

// The hosts' own numbers for them.
inline constexpr int32_t kNone = 0;
inline constexpr int32_t kOutOfMemory = 4;
inline constexpr int32_t kInternal = 512;
inline constexpr int32_t kInterrupted = 517;

// The code of the exception being handled; call it inside a catch block. An interruption is no failure
// of the worker's own: the abort code already holds it, and the master thread reports it.
inline int32_t currentCode() noexcept {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        return kOutOfMemory;
    } catch (const Interrupted&) {
        return kNone;
    } catch (...) {
        return kInternal;
    }
}

// On the calling thread once the workers are done: returns when they ended well and no abort is pending,
// and otherwise throws what `code` stands for. `place` starts the message of a failure of any other kind,
// whose own message is lost on the way.
inline void rethrow(int32_t code, bool aborted, const char* place) {
    switch (code) {
        case kNone:
            if (aborted) throw Interrupted();
            return;
        case kInterrupted:
            throw Interrupted();
        case kOutOfMemory:
            throw std::bad_alloc();
        default:
            throw Exception(place, "An unknown error occurred in a thread.");
    }
}

}  // namespace Tw::Image::WorkerFailure
