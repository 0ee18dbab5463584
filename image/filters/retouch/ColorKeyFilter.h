// ColorKeyFilter: the colour key of a skin colour range. Its strength m, from 0 to 1, is that of the
// colour of input 1 in the key's box (ColorKeySpace.h), and the sampler says what the node makes of it:
//   ColorKeySampleComp                  input 1 mixed into input 0 by m: (b - a) * m + a, all four
//                                       components
//   ColorKeySampleMask<MaskGetRGB>      m in red, green and blue, with the alpha of input 0
//   ColorKeySampleMask<MaskGetAlpha>    m in all four components; input 0 only limits the bounds
// Integer results are cut toward zero; a mask is m times white.
#pragma once

#include "image/filters/retouch/ColorKeyKernel.h"
#include "image/filters/retouch/ColorKeySpace.h"
#include "image/filters/retouch/MaskChannels.h"
#include "image/graph/Filter.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

struct ColorKeySampleComp {
    static constexpr ColorKeyOutput output = ColorKeyOutput::Mix;
    static const char* name(bool inverted) { return inverted ? "ColorKeyInv" : "ColorKey"; }
};

template <class MaskGet>
struct ColorKeySampleMask;

template <>
struct ColorKeySampleMask<MaskGetRGB> {
    static constexpr ColorKeyOutput output = ColorKeyOutput::MaskInColour;
    static const char* name(bool inverted) { return inverted ? "ColorKeyMaskInv" : "ColorKeyMask"; }
};

template <>
struct ColorKeySampleMask<MaskGetAlpha> {
    static constexpr ColorKeyOutput output = ColorKeyOutput::MaskInAll;
    static const char* name(bool inverted) { return inverted ? "ColorKeyMaskAlphaInv" : "ColorKeyMaskAlpha"; }
};

template <class Host, class Sampler>
class ColorKeyFilter : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    // Keys the colours of `keyed`; `base` is what a mix starts from. An inverted key has strength 1 - m.
    ColorKeyFilter(Node& base, Node& keyed, const SkinKey& key, bool inverted)
        : Filter<Host>({&base, &keyed}), key(key), inverted(inverted) {}

    const char* name() const override { return Sampler::name(inverted); }
    PixelRect bounds() const override {
        return this->inputs[0]->bounds().intersect(this->inputs[1]->bounds());
    }
    const char* boundsExpression() const override { return "intersect(bounds1, bounds2)"; }
    bool equals(const Node& other) const override {
        if (!this->sameKind(other)) return false;
        const auto& o = static_cast<const ColorKeyFilter&>(other);
        return key == o.key && inverted == o.inverted && keepsBaseAlpha == o.keepsBaseAlpha;
    }
    int tileFlags() const override { return 3; }
    bool canRunInPlace(int inputIndex) const override { return inputIndex == 0; }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        colorKeyBand(*this->outputImage, *this->inputImages[0], *this->inputImages[1], band,
                     this->host->cpuFeatures(), progress, key, inverted, Sampler::output, keepsBaseAlpha);
    }

    SkinKey key;
    bool inverted;
    // A mix whose alpha is that of input 0, as it is: what a copy of input 0's alpha after the mix would
    // give, without a pass of its own.
    bool keepsBaseAlpha = false;
};

}  // namespace Tw::Image
