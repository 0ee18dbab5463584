// WorkerPool: threads started once and reused by every render.
//
// A run hands out slices 0..n-1 to the calling thread (worker index 0) and the pool's threads (indices 1
// and up); each slice runs exactly once, and `run` returns when all are done. Idle workers spin briefly
// before they sleep, so the nodes of one render, which run one after another, find them awake.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <thread>
#include <vector>

namespace Tw::Host::Standalone {

class WorkerPool {
public:
    using Task = void (*)(void* context, uint32_t slice, uint32_t threadIndex);

    // `workerCount` counts the calling thread; the pool starts one thread fewer, or as many as the system
    // lets it start.
    explicit WorkerPool(uint32_t workerCount);
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    uint32_t workerCount() const { return static_cast<uint32_t>(threads_.size()) + 1; }

    // Runs task(context, slice, threadIndex) for every slice. The task must not throw. While another
    // caller has the pool, the slices run one after another on the calling thread, as worker 0.
    void run(uint32_t sliceCount, Task task, void* context);

    // One pool per process, as wide as the processor.
    static WorkerPool& shared();

private:
    void workerLoop(uint32_t threadIndex);
    void takeSlices(uint32_t threadIndex);

    std::vector<std::thread> threads_;
    std::mutex runMutex_;
    std::atomic<uint64_t> generation_{0};
    std::atomic<uint32_t> nextSlice_{0};
    std::atomic<uint32_t> busyWorkers_{0};
    std::atomic<bool> stopping_{false};
    // Written by the caller before it publishes a new generation.
    Task task_ = nullptr;
    void* context_ = nullptr;
    uint32_t sliceCount_ = 0;
};

}  // namespace Tw::Host::Standalone
