// The host's worker threads, progress and abort. The adapter starts no thread of its own: `thread` spreads
// one slice per worker through the host's iterate_generic, and only the master thread (index 0) talks to
// the host about progress and abort. An abort seen there reaches the other workers at their next check.
#include <new>

#include "host/ae/Host.h"
#include "image/core/Exception.h"
#include "image/graph/WorkerFailure.h"

namespace Tw::Host::AE {
namespace {

// iterate_generic first appeared with this version of the effect interface.
constexpr int kIterateGenericMajorVersion = 12;

struct ThreadRun {
    Image::ThreadFunction function;
    void* closure;
    Host* host;
};

PF_Err countWorkers(void* refcon, A_long /*threadIndex*/, A_long slice, A_long iterations) {
    if (slice == 0) *static_cast<A_long*>(refcon) = iterations;
    return PF_Err_NONE;
}

// One slice on one of the host's workers. Failures become host errors, which make the host stop handing
// out slices; an interruption on a worker other than the master is left for the master to report.
PF_Err runSlice(void* refcon, A_long threadIndex, A_long slice, A_long iterations) {
    auto& run = *static_cast<ThreadRun*>(refcon);
    try {
        run.function(static_cast<uint32_t>(slice), static_cast<uint32_t>(iterations),
                     static_cast<uint32_t>(threadIndex), run.closure);
    } catch (const Host::Error& error) {
        return error.code;
    } catch (...) {
        if (const PF_Err code = Image::WorkerFailure::currentCode()) return code;
    }
    return threadIndex == 0 ? run.host->abortCode() : PF_Err_NONE;
}

}  // namespace

void Host::thread(Image::ThreadFunction function, void* closure, uint32_t threads) {
    const PF_UtilCallbacks* utils = inData ? inData->utils : nullptr;
    const bool hostThreads =
        utils && utils->iterate_generic && inData->version.major >= kIterateGenericMajorVersion;
    A_long count = 1;
    if (threads != 0) {
        count = static_cast<A_long>(threads);
    } else if (threadCount != 0) {
        count = static_cast<A_long>(threadCount);
    } else if (hostThreads) {
        utils->iterate_generic(PF_Iterations_ONCE_PER_PROCESSOR, &count, &countWorkers);
    }
    if (count <= 1 || !hostThreads) {
        function(0, 1, 0, closure);
        return;
    }
    ThreadRun run{function, closure, this};
    const A_long iterations = threads != 0 || threadCount != 0 ? count : PF_Iterations_ONCE_PER_PROCESSOR;
    const PF_Err code = utils->iterate_generic(iterations, &run, &runSlice);
    if (code == PF_Interrupt_CANCEL) abortCode_.store(code, std::memory_order_relaxed);
    Image::WorkerFailure::rethrow(code, abortCode() != PF_Err_NONE, "AEHost::thread");
}

void Host::stop(int32_t code) {
    abortCode_.store(code, std::memory_order_relaxed);
    throw Interrupted();
}

void Host::checkAbort(uint32_t threadIndex) {
    if (abortCode() != PF_Err_NONE) throw Interrupted();
    // The host's abort callback is only safe on the master thread.
    if (threadIndex != 0 || !inData || !inData->inter.abort) return;
    if (const PF_Err code = inData->inter.abort(inData->effect_ref)) stop(code);
}

void Host::reportProgress(uint32_t threadIndex, uint64_t done, uint64_t total) {
    if (abortCode() != PF_Err_NONE) throw Interrupted();
    if (threadIndex != 0 || !inData || !inData->inter.progress) return;
    const auto [foldedDone, foldedTotal] = progressLevels_.fold(done, total);
    if (const PF_Err code = inData->inter.progress(inData->effect_ref, static_cast<A_long>(foldedDone),
                                                  static_cast<A_long>(foldedTotal)))
        stop(code);
}

}  // namespace Tw::Host::AE
