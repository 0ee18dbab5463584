#include "bench/PlainCopy.h"

#include <cstring>
#include <memory>

#include "host/standalone/WorkerPool.h"
#include "image/graph/Filter.h"

namespace Tw::Bench {
namespace {

struct FrameCopy {
    Image::ImageBuffer in;
    Image::ImageBuffer out;

    static void copyBand(void* context, uint32_t slice, uint32_t /*threadIndex*/) {
        auto& copy = *static_cast<FrameCopy*>(context);
        const Image::PixelRect band = Image::bandOf(copy.in.rect, slice, kThreads);
        const auto bytes =
            static_cast<std::size_t>(copy.in.rowStride()) * static_cast<std::size_t>(band.height());
        std::memcpy(copy.out.pixelAddress(band.left, band.top), copy.in.pixelAddress(band.left, band.top),
                    bytes);
    }
};

}  // namespace

Side plainCopySide(Image::ImageBuffer frame) {
    auto copy = std::make_shared<FrameCopy>();
    copy->in = std::move(frame);
    copy->out.allocate(copy->in.rect, copy->in.pixelFormat());
    copy->out.clear(copy->out.rect);
    return [copy] {
        Tw::Host::Standalone::WorkerPool::shared().run(kThreads, &FrameCopy::copyBand, copy.get());
    };
}

}  // namespace Tw::Bench
