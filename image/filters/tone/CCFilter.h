// CCFilter: a colour correction in CIE L*a*b*: the hue turned by a fraction of a turn, chroma and
// lightness multiplied. Per pixel, alpha copied; at the integer depths results are limited to 0..white
// and cut toward zero, at float they are not limited.
#pragma once

#include <cstring>

#include "image/filters/tone/CCKernel.h"
#include "image/graph/Filter.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

template <class Host>
class CCFilter final : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    // `hue` in turns; `saturation` and `brightness` change chroma and lightness by that fraction (0 leaves
    // them, -1 takes them to 0).
    CCFilter(Node& input, float hue, float saturation, float brightness)
        : Filter<Host>({&input}), hue(hue), chroma(saturation + 1.0f), lightness(brightness + 1.0f) {}

    const char* name() const override { return "CC"; }
    bool equals(const Node& other) const override {
        if (!this->sameKind(other)) return false;
        const auto& o = static_cast<const CCFilter&>(other);
        return hue == o.hue && chroma == o.chroma && lightness == o.lightness;
    }
    int passThroughInput() const override { return correction().isIdentity() ? 0 : -1; }
    int tileFlags() const override { return 3; }
    bool canRunInPlace(int) const override { return true; }

    // A correction before this one, read by nothing else, folds into it: the turns add, the multipliers
    // multiply.
    MergeResult mergeWith(Node& input) override {
        if (std::strcmp(input.name(), name()) != 0 || input.consumers.size() != 1) return MergeResult::No;
        const auto& before = static_cast<const CCFilter&>(input);
        hue += before.hue;
        chroma *= before.chroma;
        lightness *= before.lightness;
        return MergeResult::Folded;
    }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        ccBand(*this->outputImage, *this->inputImages[0], band, this->host->cpuFeatures(), progress,
               correction());
    }

    float hue;        // turns: 1 is 360 degrees
    float chroma;     // multiplier
    float lightness;  // multiplier

private:
    LabCorrection correction() const { return {hue, chroma, lightness}; }
};

}  // namespace Tw::Image
