#include "image/filters/retouch/DomainTransformPass.h"

#include "image/filters/retouch/DomainTransformColumns.h"
#include "image/filters/retouch/DomainTransformRows.h"
#include "image/graph/KernelDispatch.h"

namespace Tw::Image {

void recurseLinesBand(bool alongRows, const ImageBuffer& source, const ImageBuffer& weights,
                      const PixelRect& region, ImageBuffer& destination, const PixelRect& target,
                      const PixelRect& band, CpuFeatures features, Progress& progress) {
    if (band.isEmpty()) return;
    // Each direction has variant functions of its own, holding only the loops that it runs.
    const auto recurse = [&]<bool AlongRows>() {
        dispatchKernel(source, features, [&](auto layout, auto isa) {
            using T = typename decltype(layout)::Component;
            constexpr int lanes = kPixelLanes<decltype(isa)>;
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
