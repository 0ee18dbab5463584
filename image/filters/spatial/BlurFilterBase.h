// BlurFilterBase: a separable blur node with a standard deviation and a kind (smoothing, first or second
// derivative) per axis. It holds what every such blur shares in the graph: how far it reads, when it is
// an identity, when two are equal, and how two in series fold into one.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

#include "image/filters/spatial/FilterSeparable.h"
#include "image/graph/Device.h"

namespace Tw::Image {

// How many pixels a blur reaches on each side for `reach` = 3.5 sigma: none for a reach that is not
// positive (or not a number), and never so far that a rectangle's edge could overflow.
template <class Real>
int64_t blurMargin(Real reach) {
    if (!(reach > 0)) return 0;
    return static_cast<int64_t>(std::ceil(std::fmin(reach, Real(std::numeric_limits<int32_t>::max()))));
}

template <class Host>
class BlurFilterBase : public FilterSeparable<Host> {
public:
    using Node = FilterBase<Host>;

    // Radii are standard deviations in pixels of the image being rendered; `thresh` is an extra argument
    // of the device's vertical pass.
    BlurFilterBase(Node& input, float radiusX, float radiusY, float thresh, int32_t kindX, int32_t kindY)
        : FilterSeparable<Host>({&input}),
          radiusX(radiusX),
          radiusY(radiusY),
          thresh(thresh),
          kindX(kindX),
          kindY(kindY) {}

    // The output grown by 3.5 standard deviations per axis, as far as the input reaches.
    PixelRect inputRect(const PixelRect& rect, int /*inputIndex*/) const override {
        const PixelRect needed = rect.grown(blurMargin(3.5f * radiusX), blurMargin(3.5f * radiusY));
        return this->inputs.empty() ? needed : needed.intersect(this->inputs[0]->bounds());
    }
    // A smoothing this narrow changes nothing.
    int passThroughInput() const override {
        return radiusX <= 0.001f && radiusY <= 0.001f && kindX == 0 && kindY == 0 ? 0 : -1;
    }
    bool equals(const Node& other) const override {
        if (!this->sameKind(other)) return false;
        const auto& o = static_cast<const BlurFilterBase&>(other);
        return radiusX == o.radiusX && radiusY == o.radiusY && thresh == o.thresh && kindX == o.kindX &&
               kindY == o.kindY && useThresh == o.useThresh;
    }
    // Two blurs in series become one whose radii are the sum of theirs. That is not the exact composition
    // (variances add, not deviations), and the wider blur is what is wanted. Derivatives add up to at most
    // the second; an input that others read too must stay as it is.
    MergeResult mergeWith(Node& input) override {
        if (!this->sameKind(input) || input.consumers.size() != 1) return MergeResult::No;
        const auto& before = static_cast<const BlurFilterBase&>(input);
        if (before.stage != this->stage || useThresh || before.useThresh || kindX + before.kindX > 2 ||
            kindY + before.kindY > 2) {
            return MergeResult::No;
        }
        radiusX += before.radiusX;
        radiusY += before.radiusY;
        kindX += before.kindX;
        kindY += before.kindY;
        return MergeResult::Folded;
    }
    // The unsplit node keeps its rows pass in a temporary of the output's size.
    uint64_t scratchBytes(const DeviceContext* /*device*/, const PixelRect& rect,
                          const ImageDescriptor& format) const override {
        if (this->stage != FilterSeparable<Host>::BothPasses) return 0;
        return regionBytes(rect, format.channels, format.formatIndex);
    }

    // The compiled device program of the blur; the device path is dormant, so it stays empty.
    ProgramHolder blurProgram;
    float radiusX;
    float radiusY;
    float thresh;
    int32_t kindX;
    int32_t kindY;
    // Whether the device may take the Gaussian's taps two at a time.
    bool pairedTaps = true;
    // Whether the device's vertical pass receives `thresh`.
    bool useThresh = false;
};

}  // namespace Tw::Image
