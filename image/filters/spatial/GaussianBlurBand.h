// The definition of blurBand (GaussianBlurPasses.h). Its kernels are many, every depth and processor
// variant for each size of line group, so each axis compiles in a file of its own
// (GaussianBlurRowsPass.cpp, GaussianBlurColumnsPass.cpp), and the two build in parallel.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "image/filters/spatial/GaussianBlurLines.h"
#include "image/filters/spatial/GaussianBlurPasses.h"
#include "image/filters/spatial/VectorStorage.h"
#include "image/graph/KernelDispatch.h"

namespace Tw::Image {

// The most lines blurred together, and the line buffer they may fill: what stays in the second-level
// cache of current processors beside the image rows passing through.
inline constexpr int kLargestLineGroup = 16;
inline constexpr std::size_t kLineBufferBudget = 1280 * 1024;
static_assert(32 % kLargestLineGroup == 0, "every 32nd line must start a group, to report progress");

// Lines blurred together along `axis`, for lines of `count` samples with components of `componentBytes`:
// enough for their steps to overlap. The vertical pass takes the columns of up to 128 bytes of a row (two
// cache lines): fewer would leave part of each cache line it loads to a later walk down the image. Long
// lines take fewer, so that the line buffer keeps within its budget.
inline int lineGroupSize(BlurAxis axis, int componentBytes, int count) {
    int group = axis == BlurAxis::Rows ? 8 : std::min(kLargestLineGroup, 128 / (4 * componentBytes));
    while (group > 1 && lineBufferEntries(count, group) * sizeof(PixelValues) > kLineBufferBudget) {
        group /= 2;
    }
    return group;
}

template <BlurAxis Axis>
void blurBand(const ImageBuffer& source, ImageBuffer& target, const PixelRect& band, CpuFeatures features,
              Progress& progress, const GaussianBlurCoefficients& coefficients) {
    // The packed 10-bit family has no components to blur; like every kernel, the pass leaves it alone.
    if (!withComponentType(target.depth(), [](auto) {})) return;
    const PixelRect covered = source.hasStorage() ? band.intersect(source.rect) : PixelRect::empty();
    target.clearOutside(band, covered);
    if (covered.isEmpty()) return;

    constexpr bool rows = Axis == BlurAxis::Rows;
    const int lines = rows ? covered.height() : covered.width();
    const LineShape shape =
        rows ? LineShape{source.rect.width(), covered.left - source.rect.left, covered.width()}
             : LineShape{source.rect.height(), covered.top - source.rect.top, covered.height()};
    std::byte* const sourceFirst = rows ? source.pixelAddress(source.rect.left, covered.top)
                                        : source.pixelAddress(covered.left, source.rect.top);
    std::byte* const targetFirst = target.pixelAddress(covered.left, covered.top);
    const int groupSize = lineGroupSize(Axis, target.depth() / 8, shape.count);
    const VectorStorage buffer = VectorStorage::of<PixelValues>(lineBufferEntries(shape.count, groupSize));
    const int32_t white = formatMaximum(target.pixelFormat());

    dispatchDepthKernel(target, features, [&](auto layout, auto /*isa*/) {
        using T = typename decltype(layout)::Component;
        const LineAccess<T, Axis> in{sourceFirst, source.rowStride()};
        const LineAccess<T, Axis> out{targetFirst, target.rowStride()};
        auto group = [&]<int G>(int first) {
            blurLineGroup<T, Axis, G>(in.from(first), out.from(first), shape, coefficients, white,
                                      buffer.as<PixelValues>());
            if (first % 32 == 0)
                progress.progress(static_cast<uint64_t>(first), static_cast<uint64_t>(lines));
        };
        forEachLineGroup<kLargestLineGroup>(0, lines, groupSize, group);
    });
}

}  // namespace Tw::Image
