// The seam where a compute device would convert images to and from planar form for the blocked device
// schedule of the domain transform. This system has no device programs for it, so it never runs on the
// processor: only its regions are defined.
#pragma once

#include <cstdint>

#include "image/graph/Filter.h"

namespace Tw::Image {

// `rect` with its top rounded down and its bottom rounded up to whole groups of four rows, counted from
// the top of `bounds`, and kept within `bounds`: the row groups of the planar layout.
inline PixelRect withWholeRowQuads(const PixelRect& rect, const PixelRect& bounds) {
    const PixelRect inside = rect.intersect(bounds);
    if (inside.isEmpty() || inside.isInfinite() || bounds.isInfinite()) return inside;
    const int64_t top = int64_t{inside.top} - bounds.top;
    const int64_t bottom = int64_t{inside.bottom} + 3 - bounds.top;
    const PixelRect rounded{
        inside.left, static_cast<int32_t>(top / 4 * 4 + bounds.top), inside.right,
        static_cast<int32_t>(std::min<int64_t>(bottom / 4 * 4 + bounds.top, PixelRect::kMax))};
    return rounded.intersect(bounds);
}

template <class Host>
class DomainTransformBlurFilter_Planar final : public Filter<Host> {
public:
    const char* name() const override { return "domainTransformBlur Planar"; }
    PixelRect inputRect(const PixelRect& rect, int /*inputIndex*/) const override {
        return withWholeRowQuads(rect, this->bounds());
    }
    void prepare() override { this->outputRect = withWholeRowQuads(this->outputRect, this->bounds()); }
    void computeTile(const PixelRect& /*band*/, uint32_t /*threadIndex*/, uint32_t /*threadCount*/) override {
        throw Exception("computeTile", "Unimplemented.");
    }
};

}  // namespace Tw::Image
