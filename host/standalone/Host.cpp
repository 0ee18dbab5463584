#include "host/standalone/Host.h"

#include <new>

#include "host/standalone/FrameParameters.h"
#include "image/graph/WorkerFailure.h"

namespace Tw::Host::Standalone {
namespace {

struct ThreadRun {
    Image::ThreadFunction function;
    void* closure;
    uint32_t sliceCount;
    Host* host;
    // The first failure of any worker; later slices are not started once it is set.
    std::atomic<int32_t> error{ErrorCode::kNone};
};

void runSlice(void* context, uint32_t slice, uint32_t threadIndex) {
    auto& run = *static_cast<ThreadRun*>(context);
    if (run.error.load(std::memory_order_relaxed) != ErrorCode::kNone) return;
    int32_t code = ErrorCode::kNone;
    try {
        run.function(slice, run.sliceCount, threadIndex, run.closure);
    } catch (...) {
        // An interruption on worker 0 is passed on below; the others leave it to worker 0 and the caller.
        code = Image::WorkerFailure::currentCode();
    }
    if (code == ErrorCode::kNone && threadIndex == 0) code = run.host->abortCode();
    if (code != ErrorCode::kNone) {
        int32_t none = ErrorCode::kNone;
        run.error.compare_exchange_strong(none, code, std::memory_order_relaxed);
    }
}

}  // namespace

void Host::thread(Image::ThreadFunction function, void* closure, uint32_t threads) {
    const uint32_t count = threads ? threads : threadCount ? threadCount : pool_.workerCount();
    if (count == 1) {
        function(0, 1, 0, closure);
        return;
    }
    ThreadRun run{function, closure, count, this};
    pool_.run(count, &runSlice, &run);
    const int32_t code = run.error.load();
    if (code == ErrorCode::kInterrupted) abortCode_.store(code, std::memory_order_relaxed);
    Image::WorkerFailure::rethrow(code, abortCode() != ErrorCode::kNone, "Host::thread");
}

int32_t Host::render(Param::Parameters& params, Image::ImageBuffer& input, Image::ImageBuffer& output,
                     Image::LayerImages layers) {
    setOutputFrame(&output);
    Image::ImageBuffer aux(this);
    aux.rect = input.rect;
    try {
        if (FrameParameters::readsPoints(params)) {
            FrameParameters framed(params, layerRect.isEmpty() ? input.rect : layerRect);
            renderFrame(framed, input, output, aux, layers);
        } else {
            renderFrame(params, input, output, aux, layers);
        }
    } catch (const Interrupted&) {
        setOutputFrame(nullptr);
        return abortCode();
    } catch (...) {
        setOutputFrame(nullptr);
        throw;
    }
    setOutputFrame(nullptr);
    return ErrorCode::kNone;
}

void Host::checkAbort(uint32_t threadIndex) {
    if (abortCode() != ErrorCode::kNone) throw Interrupted();
    if (threadIndex != 0) return;
    if (cancelRequested()) stop();
}

void Host::reportProgress(uint32_t threadIndex, uint64_t done, uint64_t total) {
    if (abortCode() != ErrorCode::kNone) throw Interrupted();
    if (threadIndex != 0) return;
    const auto [foldedDone, foldedTotal] = progressLevels_.fold(done, total);
    if (cancelRequested() || (progressCallback_ && !progressCallback_(foldedDone, foldedTotal))) stop();
}

std::byte* Host::allocatePixels(std::size_t bytes) {
    const std::size_t held = bytesInUse_.fetch_add(bytes) + bytes;
    if (memoryLimit && held > memoryLimit) {
        bytesInUse_.fetch_sub(bytes);
        throw std::bad_alloc();
    }
    std::byte* pixels = blockCache_.take(bytes);
    if (!pixels) {
        try {
            pixels = Image::allocateAlignedPixels(bytes);
        } catch (...) {
            bytesInUse_.fetch_sub(bytes);
            throw;
        }
        allocationCount_.fetch_add(1);
    }
    for (std::size_t peak = peakBytes_.load();
         held > peak && !peakBytes_.compare_exchange_weak(peak, held);) {
    }
    return pixels;
}

// An effect's next render asks for the same blocks again: keep up to what it once held at a time.
void Host::releasePixels(std::byte* pixels, std::size_t bytes) noexcept {
    blockCache_.keep(pixels, bytes, peakBytes_.load());
    bytesInUse_.fetch_sub(bytes);
}

}  // namespace Tw::Host::Standalone
