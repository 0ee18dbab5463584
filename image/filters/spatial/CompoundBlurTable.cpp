#include "image/filters/spatial/CompoundBlurTable.h"

#include "image/graph/ImageView.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/PixelSpans.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

PixelFormat floatFormatLike(const ImageBuffer& image) {
    const auto positions = componentPositions(image.pixelFormat());
    return positions && (*positions)[0] == 1 ? fourCC("ae32") : fourCC("BGra");
}

void compoundBlurRowSums(const ImageBuffer& source, ImageBuffer& table, const PixelRect& band,
                         CpuFeatures features, Progress& progress) {
    dispatchDepthKernel(source, features, [&](auto layout, auto /*isa*/) {
        using T = typename decltype(layout)::Component;
        const ImageView<T> in = ImageView<T>::of(source);
        const ImageView<float> sums = ImageView<float>::of(table);
        const PixelRect covered = in.hasPixels() ? in.rect : PixelRect::empty();
        forEachRow(band, progress, [&](int32_t y) {
            // A pixel a vector: the sum runs along the row, each pixel adding to the one before. The sums
            // go past the caches: the boxes read them only once the whole table is written.
            FloatVector<4> running{};
            float* out = sums.at(band.left, y);
            forEachInputSpan(
                band, y, covered,
                [&](int32_t begin, int32_t end) {
                    const T* pixel = in.at(begin, y);
                    for (int32_t x = begin; x < end; ++x, pixel += 4, out += 4) {
                        running += loadFloats<4>(pixel);
                        storeStreamed(out, running);
                    }
                },
                [&](int32_t begin, int32_t end) {
                    for (int32_t x = begin; x < end; ++x, out += 4)
                        storeStreamed(out, running);
                });
        });
        streamedStoresDone();
    });
}

void compoundBlurColumnSums(ImageBuffer& table, const PixelRect& band, CpuFeatures features,
                            Progress& progress) {
    dispatchVariant(features, [&](auto isa) {
        constexpr int kLanes = decltype(isa)::floatLanes;
        const ImageView<float> sums = ImageView<float>::of(table);
        const int32_t components = band.isEmpty() ? 0 : 4 * band.width();
        // Row by row across the band's columns, so that every column of the band moves down together and
        // memory is read in the order it lies. The top row's sums are already its own.
        forEachRow(band, progress, [&](int32_t y) {
            if (y == sums.rect.top) return;
            float* row = sums.at(band.left, y);
            addRowAbove<kLanes>(row, sums.at(band.left, y - 1), row, components);
        });
    });
}

}  // namespace Tw::Image
