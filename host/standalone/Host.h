// Tw::Host::Standalone::Host: what runs the filter graph where no After Effects host exists (the
// command-line tool, the frei0r plug-ins, the tests). Like the After Effects adapter, it is the base of
// every effect: the plug-in template supplies the effect's operations, and `render` drives them.
//
// It spreads work over a persistent WorkerPool with the same worker numbering and band split as a host's
// threads, folds progress through the same levels, and stops a render the same way: once the caller's
// progress callback declines or its cancel flag is set, `abortCode` holds 517, every later check throws
// Tw::Interrupted on any thread, and the render unwinds, releasing every image. One Host serves one
// render at a time. Keep one for a sequence of frames: the pixel blocks one render releases serve the
// next. A cancelled host stays cancelled; the next render needs a new one (they are cheap; the pool is
// shared).
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "host/param/Parameters.h"
#include "host/standalone/PixelBlockCache.h"
#include "host/standalone/WorkerPool.h"
#include "image/core/CpuFeatures.h"
#include "image/core/Exception.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/GraphHost.h"
#include "image/graph/LayerRequest.h"
#include "image/graph/Progress.h"

namespace Tw::Host::Standalone {

// The codes a render ends with, as the hosts name them.
namespace ErrorCode {
inline constexpr int32_t kNone = 0;
inline constexpr int32_t kOutOfMemory = 4;
inline constexpr int32_t kInternal = 512;
inline constexpr int32_t kInterrupted = 517;
}  // namespace ErrorCode

class Host : public Image::ImageHost {
public:
    // Receives the render's folded progress on the calling thread; returning false cancels the render.
    using ProgressCallback = std::function<bool(uint64_t done, uint64_t total)>;

    explicit Host(WorkerPool& pool = WorkerPool::shared()) : pool_(pool) {}
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    virtual ~Host() = default;

    // The effect, as the plug-in template supplies it.
    virtual const char* effectName() const = 0;
    virtual void defineParameters(Param::Parameters& list) = 0;
    virtual void renderFrame(Param::Parameters& params, Image::ImageBuffer& in, Image::ImageBuffer& out,
                             Image::ImageBuffer& aux, Image::LayerImages layers) = 0;
    virtual Image::PixelRect inputRect(Param::Parameters& params, const Image::PixelRect& request,
                                       const Image::PixelRect& limit,
                                       std::vector<Image::LayerRequest>& requests) = 0;

    // Renders the effect over `input` into `output`, reading further layers by ordinal. Returns 0, or the
    // abort code when the render was cancelled; other failures are thrown.
    int32_t render(Param::Parameters& params, Image::ImageBuffer& input, Image::ImageBuffer& output,
                   Image::LayerImages layers = {});

    void setProgressCallback(ProgressCallback callback) { progressCallback_ = std::move(callback); }
    // A flag the caller may set from any thread or a signal handler; the render stops at its next check.
    void setCancelFlag(const std::atomic<bool>* flag) { cancelFlag_ = flag; }
    // The frame the render writes into: new images of its depth take its pixel format.
    void setOutputFrame(const Image::ImageBuffer* frame) { outputFrame_ = frame; }

    // Runs function(i, n, threadIndex, closure) once per worker, the calling thread being worker 0.
    // `threads` 0 means `threadCount`, and that 0 means every worker of the pool. Failures in workers
    // reach the caller as one exception: std::bad_alloc, Tw::Interrupted, or Tw::Exception.
    void thread(Image::ThreadFunction function, void* closure, uint32_t threads);
    void checkAbort(uint32_t threadIndex);
    void reportProgress(uint32_t threadIndex, uint64_t done, uint64_t total);
    Image::ProgressLevels& progressLevels() { return progressLevels_; }
    Image::CpuFeatures cpuFeatures() const { return Image::cpuFeatures() & featureMask; }
    int32_t abortCode() const { return abortCode_.load(std::memory_order_relaxed); }

    std::byte* allocatePixels(std::size_t bytes) override;
    void releasePixels(std::byte* pixels, std::size_t bytes) noexcept override;
    const Image::ImageBuffer* outputFrame() const override { return outputFrame_; }

    // Pixel memory taken through this host: blocks taken from the system, bytes held now, and the most
    // held at once. Released blocks stay with the host for its next render (`bytesCached`), never more
    // than the most held at once, until the host goes; a kept block that serves a request is no new
    // allocation.
    std::size_t allocationCount() const { return allocationCount_.load(); }
    std::size_t bytesInUse() const { return bytesInUse_.load(); }
    std::size_t peakBytes() const { return peakBytes_.load(); }
    std::size_t bytesCached() const { return blockCache_.bytesKept(); }

    // The resolution of the frame as a fraction of full resolution, per axis (0.5: every other pixel).
    // Effects scale their radii by it, since radii are given in full-resolution pixels.
    double downsampleX = 1.0;
    double downsampleY = 1.0;
    // The effect's whole layer, whose width and height point parameters are fractions of. Empty: the
    // input's rectangle, which is the whole layer unless the caller hands over only part of it.
    Image::PixelRect layerRect = Image::PixelRect::empty();
    // Workers to use; 0 means every worker of the pool.
    uint32_t threadCount = 0;
    // Processor features the kernels may use; clearing bits selects narrower code variants.
    Image::CpuFeatures featureMask = ~Image::CpuFeatures{0};
    // Refuses pixel allocations that would hold more than this many bytes at once; 0 means no limit.
    std::size_t memoryLimit = 0;

private:
    [[noreturn]] void stop() {
        abortCode_.store(ErrorCode::kInterrupted, std::memory_order_relaxed);
        throw Interrupted();
    }
    bool cancelRequested() const { return cancelFlag_ && cancelFlag_->load(std::memory_order_relaxed); }

    WorkerPool& pool_;
    ProgressCallback progressCallback_;
    const std::atomic<bool>* cancelFlag_ = nullptr;
    const Image::ImageBuffer* outputFrame_ = nullptr;
    // Written by worker 0 or the caller, read by every worker; once set it never goes back.
    std::atomic<int32_t> abortCode_{ErrorCode::kNone};
    Image::ProgressLevels progressLevels_;
    std::atomic<std::size_t> allocationCount_{0};
    std::atomic<std::size_t> bytesInUse_{0};
    std::atomic<std::size_t> peakBytes_{0};
    PixelBlockCache blockCache_;
};

static_assert(Image::GraphHost<Host>);

}  // namespace Tw::Host::Standalone
