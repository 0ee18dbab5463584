#include "image/filters/retouch/DomainTransformPass.h"

#if defined(__x86_64__) || defined(__i386__)
#include <xmmintrin.h>
#endif

#include <type_traits>

#include "image/filters/retouch/DomainTransformColumns.h"
#include "image/filters/retouch/DomainTransformRows.h"
#include "image/graph/KernelDispatch.h"

namespace Tw::Image {

namespace {

// Where asked to, has the processor flush results below the smallest normal float to zero while it lives;
// then puts its control word back as it was, also when an interruption passes.
//
// The recursion at integer depths meets such results where a weight is tiny (a strong edge, a narrow
// reach) and the accumulator sits near the pixel it steps toward, and each costs the processor a slow
// path of a hundred cycles or more. Flushing them leaves every stored value as it was: a tiny product is
// added either to a whole number, which absorbs it entirely, or to zero, where the accumulator stays far
// below the 0.5 that rounding to a stored value could see, and the first whole number it meets absorbs
// it again. Float images keep their tiny values, so they run without this.
class FlushTinyResults {
public:
    explicit FlushTinyResults(bool flush) : saved_(read()) {
        if (flush) write(saved_ | kFlushToZero);
    }
    ~FlushTinyResults() { write(saved_); }
    FlushTinyResults(const FlushTinyResults&) = delete;
    FlushTinyResults& operator=(const FlushTinyResults&) = delete;

private:
#if defined(__x86_64__) || defined(__i386__)
    using Word = unsigned;
    static constexpr Word kFlushToZero = 0x8000;  // MXCSR.FTZ
    static Word read() { return _mm_getcsr(); }
    static void write(Word word) { _mm_setcsr(word); }
#elif defined(__aarch64__)
    using Word = unsigned long;
    static constexpr Word kFlushToZero = 1ul << 24;  // FPCR.FZ
    static Word read() { return __builtin_aarch64_get_fpcr64(); }
    static void write(Word word) { __builtin_aarch64_set_fpcr64(word); }
#else
    using Word = unsigned;
    static constexpr Word kFlushToZero = 0;
    static Word read() { return 0; }
    static void write(Word) {}
#endif
    Word saved_;
};

}  // namespace

void recurseLinesBand(bool alongRows, const ImageBuffer& source, const ImageBuffer& weights,
                      const PixelRect& region, ImageBuffer& destination, const PixelRect& target,
                      const PixelRect& band, CpuFeatures features, Progress& progress) {
    if (band.isEmpty()) return;
    // Each direction has variant functions of its own, holding only the loops that it runs.
    const auto recurse = [&]<bool AlongRows>() {
        dispatchDepthKernel(source, features, [&](auto layout, auto isa) {
            using T = typename decltype(layout)::Component;
            constexpr int lanes = kPixelLanes<decltype(isa)>;
            const FlushTinyResults flushTiny(!std::is_same_v<T, float>);
            if constexpr (AlongRows) {
                const RowLines<T> lines{source.pixelAddress(region.left, band.top),
                                        source.rowStride(),
                                        weights.pixelAddress(region.left, band.top),
                                        weights.rowStride(),
                                        destination.pixelAddress(target.left, band.top),
                                        destination.rowStride(),
                                        region.width(),
                                        target.left - region.left,
                                        target.right - region.left};
                recurseRows<T, lanes>(lines, band.height(), progress);
            } else {
                const ColumnLines<T> lines{source.pixelAddress(band.left, region.top),
                                           source.rowStride(),
                                           weights.pixelAddress(band.left, region.top),
                                           weights.rowStride(),
                                           destination.pixelAddress(band.left, target.top),
                                           destination.rowStride(),
                                           band.width(),
                                           region.height(),
                                           target.top - region.top,
                                           target.bottom - region.top};
                sweepColumns<T, lanes>(lines, progress);
            }
        });
    };
    if (alongRows) {
        recurse.template operator()<true>();
    } else {
        recurse.template operator()<false>();
    }
}

}  // namespace Tw::Image
