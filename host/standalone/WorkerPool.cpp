#include "host/standalone/WorkerPool.h"

#include <algorithm>
#include <system_error>

namespace Tw::Host::Standalone {
namespace {

// Spinning covers the short gap between two nodes of one render; yielding then hands the core over when
// the machine is busier than the pool is wide; only after both does a worker sleep.
constexpr int kSpinRounds = 2000;
constexpr int kYieldRounds = 50;

inline void pause() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#endif
}

template <class T>
void waitWhileEqual(const std::atomic<T>& value, T old) {
    for (int i = 0; i < kSpinRounds && value.load(std::memory_order_acquire) == old; ++i)
        pause();
    for (int i = 0; i < kYieldRounds && value.load(std::memory_order_acquire) == old; ++i)
        std::this_thread::yield();
    value.wait(old, std::memory_order_acquire);
}

}  // namespace

WorkerPool::WorkerPool(uint32_t workerCount) {
    const uint32_t count = std::max(workerCount, 1u);
    threads_.reserve(count - 1);
    for (uint32_t index = 1; index < count; ++index) {
        // A system that can start no more threads (a limit on memory or on processes) gets a narrower
        // pool: the threads already running must not be dropped unjoined.
        try {
            threads_.emplace_back([this, index] { workerLoop(index); });
        } catch (const std::system_error&) {
            break;
        }
    }
}

WorkerPool::~WorkerPool() {
    stopping_.store(true, std::memory_order_release);
    generation_.fetch_add(1, std::memory_order_release);
    generation_.notify_all();
    for (std::thread& thread : threads_)
        thread.join();
}

WorkerPool& WorkerPool::shared() {
    static WorkerPool pool(std::max(std::thread::hardware_concurrency(), 1u));
    return pool;
}

void WorkerPool::run(uint32_t sliceCount, Task task, void* context) {
    std::unique_lock lock(runMutex_, std::try_to_lock);
    if (!lock.owns_lock() || threads_.empty()) {
        for (uint32_t slice = 0; slice < sliceCount; ++slice)
            task(context, slice, 0);
        return;
    }
    task_ = task;
    context_ = context;
    sliceCount_ = sliceCount;
    nextSlice_.store(0, std::memory_order_relaxed);
    busyWorkers_.store(static_cast<uint32_t>(threads_.size()), std::memory_order_relaxed);
    generation_.fetch_add(1, std::memory_order_release);
    generation_.notify_all();

    takeSlices(0);
    for (uint32_t busy; (busy = busyWorkers_.load(std::memory_order_acquire)) != 0;)
        waitWhileEqual(busyWorkers_, busy);
}

void WorkerPool::takeSlices(uint32_t threadIndex) {
    for (uint32_t slice; (slice = nextSlice_.fetch_add(1, std::memory_order_relaxed)) < sliceCount_;) {
        task_(context_, slice, threadIndex);
    }
}

void WorkerPool::workerLoop(uint32_t threadIndex) {
    uint64_t seen = 0;
    for (;;) {
        waitWhileEqual(generation_, seen);
        seen = generation_.load(std::memory_order_acquire);
        if (stopping_.load(std::memory_order_acquire)) return;
        takeSlices(threadIndex);
        if (busyWorkers_.fetch_sub(1, std::memory_order_acq_rel) == 1) busyWorkers_.notify_one();
    }
}

}  // namespace Tw::Host::Standalone
