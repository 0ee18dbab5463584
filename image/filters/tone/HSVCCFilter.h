// HSVCCFilter: a colour correction in hue, saturation and value: the hue turned by a fraction of a turn,
// saturation and value multiplied. Per pixel, alpha copied; at the integer depths results are limited to
// 0..white and cut toward zero, at float they are not limited.
//
// A Balance underneath, neutral from the start: with the hue and saturation left as they are, the node
// goes by the Balance names, since a pure value scale is a Balance's work. Its pixels still come from the
// HSV kernel, cut toward zero where the Balance kernel would round.
#pragma once

#include "image/filters/tone/BalanceFilter.h"
#include "image/filters/tone/HSVCCKernel.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

template <class Host>
class HSVCCFilter final : public BalanceFilter<Host> {
public:
    using Node = FilterBase<Host>;

    // `hue` in turns; `saturation` and `brightness` change saturation and value by that fraction (0 leaves
    // them, -1 takes them to 0).
    HSVCCFilter(Node& input, float hue, float saturation, float brightness)
        : BalanceFilter<Host>(input, 0.0f, 1.0f, 0.0f, 1.0f, 1.0f, false),
          hue(hue),
          saturation(saturation + 1.0f),
          value(brightness + 1.0f) {}

    const char* name() const override {
        return hue != 0.0f || saturation != 1.0f ? "HSVCC" : BalanceFilter<Host>::name();
    }
    // A plain Balance may share a name with this node; it is never equal to it.
    bool equals(const Node& other) const override {
        const auto* o = dynamic_cast<const HSVCCFilter*>(&other);
        return o && BalanceFilter<Host>::equals(other) && hue == o->hue && saturation == o->saturation &&
               value == o->value;
    }
    int passThroughInput() const override {
        return correction().isIdentity() ? BalanceFilter<Host>::passThroughInput() : -1;
    }
    // The graph of this effect is one node, and a turn in HSV followed by another correction is no single
    // correction of either kind: nothing folds.
    MergeResult mergeWith(Node& /*input*/) override { return MergeResult::No; }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        hsvccBand(*this->outputImage, *this->inputImages[0], band, this->host->cpuFeatures(), progress,
                  correction());
    }

    float hue;         // turns: 1 is 360 degrees
    float saturation;  // multiplier
    float value;       // multiplier

private:
    HsvCorrection correction() const { return {hue, saturation, value}; }
};

}  // namespace Tw::Image
