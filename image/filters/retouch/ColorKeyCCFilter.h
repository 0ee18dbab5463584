// ColorKeyCCFilter: the mix of ColorKeyFilter with a colour correction of the mixed-in pixel, in one
// pass: input 1's colour is turned in hue and scaled in chroma and lightness in the key's space, and mixed
// into input 0 by the key's strength at the colour before the correction, so that a correction never
// moves a pixel out of the key. The correction is that of CIE CC, computed from the key's own L*a*b*
// values; it turns the hue the other way, forward, as the key's angle grows.
#pragma once

#include "image/filters/retouch/ColorKeyCCKernel.h"
#include "image/filters/retouch/ColorKeyFilter.h"

namespace Tw::Image {

template <class Host>
class ColorKeyCCFilter final : public ColorKeyFilter<Host, ColorKeySampleComp> {
public:
    using Node = FilterBase<Host>;

    // `hue` in turns; `saturation` and `brightness` change chroma and lightness by that fraction (0 leaves
    // them, -1 takes them to 0).
    ColorKeyCCFilter(Node& base, Node& keyed, const SkinKey& key, bool inverted, float hue, float saturation,
                     float brightness)
        : ColorKeyFilter<Host, ColorKeySampleComp>(base, keyed, key, inverted),
          cc{hue, saturation + 1.0f, brightness + 1.0f} {}

    const char* name() const override { return this->inverted ? "ColorKeyCCInv" : "ColorKeyCC"; }
    bool equals(const Node& other) const override {
        return ColorKeyFilter<Host, ColorKeySampleComp>::equals(other) &&
               cc == static_cast<const ColorKeyCCFilter&>(other).cc;
    }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t threadCount) override {
        // No correction: the plain keyed mix, bit for bit.
        if (cc.isIdentity()) {
            ColorKeyFilter<Host, ColorKeySampleComp>::computeTile(band, threadIndex, threadCount);
            return;
        }
        HostProgress<Host> progress(*this->host, threadIndex);
        colorKeyCCBand(*this->outputImage, *this->inputImages[0], *this->inputImages[1], band,
                       this->host->cpuFeatures(), progress, this->key, this->inverted, cc,
                       this->keepsBaseAlpha);
    }

    LabCorrection cc;
};

}  // namespace Tw::Image
