// What the filter graph needs of the host it runs in. The After Effects adapter and the standalone host
// both provide it; filters are templates over the host and never name either.
#pragma once

#include <concepts>
#include <cstdint>

#include "image/core/CpuFeatures.h"
#include "image/core/ImageHost.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// Runs once per slice: `slice` of `sliceCount`, on the worker with the stable index `threadIndex`, 0 being
// the calling thread. The result is ignored; failures travel as exceptions.
using ThreadFunction = int (*)(uint32_t slice, uint32_t sliceCount, uint32_t threadIndex, void* closure);

template <class H>
concept GraphHost = std::derived_from<H, ImageHost> &&
    requires(H& host, ThreadFunction function, void* closure, uint32_t index, uint64_t amount) {
    // Runs `function` once per worker (threads 0 = as many as the host has) and returns when all are
    // done, turning the workers' failures into one exception on the calling thread.
    host.thread(function, closure, index);
    // Throw Tw::Interrupted once the host has asked to stop; only thread 0 asks the host itself.
    host.checkAbort(index);
    host.reportProgress(index, amount, amount);
    { host.progressLevels() } -> std::same_as<ProgressLevels&>;
    // The processor's feature word, as kernels choose their code variant by it.
    { host.cpuFeatures() } -> std::same_as<CpuFeatures>;
};

}  // namespace Tw::Image
