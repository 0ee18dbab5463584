// MaskFilter: mixes input 1 into input 0 by a mask, input 2: (b - a) * m + a in all four components, m
// the mask's alpha as a fraction of white, or 1 - m when inverted. Integer results are cut toward zero.
//
// The mix is defined only where the mask has pixels. Elsewhere the output is `base`, the input that an
// uncovered pixel shows (input 0, or input 1 when inverted), so that the rest of the frame stays as it is
// when the mask covers only part of it; the other input, `over`, counts only under the mask.
#pragma once

#include "image/filters/retouch/MaskChannels.h"
#include "image/filters/retouch/MaskKernel.h"
#include "image/graph/Filter.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

template <class MaskGet>
struct MaskSampleComp;

// The mix by a mask that stands in alpha.
template <>
struct MaskSampleComp<MaskGetAlpha> {
    static const char* name(bool inverted) { return inverted ? "MaskCompAlphaInv" : "MaskCompAlpha"; }
};

template <class Host, class Sampler = MaskSampleComp<MaskGetAlpha>>
class MaskFilter final : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    MaskFilter(Node& first, Node& second, Node& mask, bool inverted)
        : Filter<Host>({&first, &second, &mask}), inverted(inverted) {}

    const char* name() const override { return Sampler::name(inverted); }
    PixelRect bounds() const override {
        const PixelRect masked = inputBounds(over()).intersect(inputBounds(kMask));
        const PixelRect base = inputBounds(baseIndex());
        return masked.isEmpty() ? base : masked.extend(base);
    }
    const char* boundsExpression() const override {
        return inverted ? "extend(intersect(bounds1, bounds3), bounds2)"
                        : "extend(intersect(bounds2, bounds3), bounds1)";
    }
    // Base serves the whole request, also where the mask does not reach; the other inputs only serve
    // what lies under the mask.
    PixelRect inputRect(const PixelRect& rect, int inputIndex) const override {
        const PixelRect wanted = inputIndex < kMask ? rect.intersect(inputBounds(inputIndex)) : rect;
        return inputIndex == baseIndex() ? wanted : wanted.intersect(inputBounds(kMask));
    }
    bool inputIsMask(int inputIndex) const override { return inputIndex == kMask; }
    bool equals(const Node& other) const override {
        return this->sameKind(other) && inverted == static_cast<const MaskFilter&>(other).inverted;
    }
    int tileFlags() const override { return 3; }
    bool canRunInPlace(int inputIndex) const override { return inputIndex == 0; }

    // Base is copied to the strips of the output outside the mask's image, above, left, right and below
    // it; the threads then mix under the mask.
    void compute(Host& host, ImageBuffer& output, ImageBuffer* const* inputs) override {
        const PixelRect out = output.rect;
        const PixelRect masked = out.intersect(inputs[kMask]->rect);
        const ImageBuffer& base = *inputs[baseIndex()];
        if (masked.isEmpty()) {
            copyBase(output, base, out);
        } else if (masked != out) {
            copyBase(output, base, {out.left, out.top, out.right, masked.top});
            copyBase(output, base, {out.left, masked.top, masked.left, masked.bottom});
            copyBase(output, base, {masked.right, masked.top, out.right, masked.bottom});
            copyBase(output, base, {out.left, masked.bottom, out.right, out.bottom});
        }
        Filter<Host>::compute(host, output, inputs);
    }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        const PixelRect masked = band.intersect(this->inputImages[kMask]->rect);
        if (masked.isEmpty()) return;
        HostProgress<Host> progress(*this->host, threadIndex);
        maskBand(*this->outputImage, *this->inputImages[0], *this->inputImages[1], *this->inputImages[kMask],
                 masked, this->host->cpuFeatures(), progress, inverted);
    }

    bool inverted;

private:
    static constexpr int kMask = 2;

    int baseIndex() const { return inverted ? 1 : 0; }
    int over() const { return inverted ? 0 : 1; }
    PixelRect inputBounds(int inputIndex) const { return this->inputs[inputIndex]->bounds(); }

    // Base's pixels within `strip`, and transparent black where base has none; nothing to move where the
    // output already is base's buffer.
    static void copyBase(ImageBuffer& output, const ImageBuffer& base, const PixelRect& strip) {
        if (strip.isEmpty()) return;
        ImageBuffer from;
        from.viewOf(base, strip);
        if (from.hasStorage()) {
            ImageBuffer to;
            to.viewOf(output, from.rect);
            if (to.pixels() != from.pixels()) to.copyFrom(from);
        }
        output.clearOutside(strip, from.hasStorage() ? from.rect : PixelRect::empty());
    }
};

}  // namespace Tw::Image
