// BlendFilter: lays input 1 (the top) over input 0 (the base) with one of the blend modes and an
// opacity. The two inputs are never moved or scaled: output pixel (x, y) reads pixel (x, y) of each, and
// an input with no pixel there reads as transparent black.
#pragma once

#include <array>
#include <cstdint>

#include "image/filters/blend/BlendKernel.h"
#include "image/filters/blend/BlendModeList.h"
#include "image/graph/Filter.h"
#include "image/graph/Progress.h"

namespace Tw::Image {

// Which region the node can produce, when code that builds it chooses.
enum class BlendBounds : int32_t {
    ByMode = 0,        // the overlap for Darken and the stencils, else the box around both inputs
    Intersection = 1,  // the overlap of the two inputs
    FirstInput = 3,    // the base's bounds
    SecondInput = 4,   // the top's bounds
    // any other value: the box around both inputs
};

// What each mode gives where only one input has pixels, by mode number: 1, the pixels of that input can
// be copied; 0, the result is transparent; -1, only the kernel can tell. A record of the modes: the
// kernel does not consult it, since it reads a missing input as transparent black and so needs no
// special path where the inputs do not overlap.
inline constexpr std::array<int8_t, kBlendModeCount> kSoleInputResults = {
    1, 0, 0, 0,  -1, 0, 0, 1, 1,  1, 0, -1, 1, 1, 0, 0,  -1, -1, -1, -1, 0,
    1, 1, 1, -1, 0,  0, 0, 0, -1, 0, 0, 0,  0, 1, 1, -1, -1, -1, -1, -1, 1};

template <class Host>
class BlendFilter final : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    // `mode` numbers the modes as BlendModeList.h does; `opacity` is 0 to 1.
    BlendFilter(Node& base, Node& top, int32_t mode, float opacity)
        : Filter<Host>({&base, &top}), mode(mode), opacity(opacity) {}

    // The mode's kernel name; a number outside the popup's range names "Behind".
    const char* name() const override {
        return mode >= 0 && mode < kBlendModeCount - 1 ? kBlendModeNames[mode] : kBlendModeNames.back();
    }
    bool equals(const Node& other) const override {
        if (!this->sameKind(other)) return false;
        const auto& o = static_cast<const BlendFilter&>(other);
        return mode == o.mode && opacity == o.opacity && boundsSelection == o.boundsSelection;
    }

    PixelRect bounds() const override {
        const auto& in = this->inputs;
        if (intersectsByMode()) {
            PixelRect overlap = PixelRect::infinite();
            for (const Node* input : in)
                overlap = overlap.intersect(input->bounds());
            return overlap;
        }
        if (in.size() < 2) return Node::bounds();
        switch (boundsSelection) {
            case BlendBounds::ByMode:
                break;
            case BlendBounds::Intersection:
                return in[0]->bounds().intersect(in[1]->bounds());
            case BlendBounds::FirstInput:
                return in[0]->bounds();
            case BlendBounds::SecondInput:
                return in[1]->bounds();
        }
        return in[0]->bounds().extend(in[1]->bounds());
    }
    const char* boundsExpression() const override {
        if (intersectsByMode()) return "intersect(bounds1, bounds2)";
        if (this->inputs.size() < 2) return Node::boundsExpression();
        switch (boundsSelection) {
            case BlendBounds::ByMode:
                break;
            case BlendBounds::Intersection:
                return "intersect(bounds1, bounds2)";
            case BlendBounds::FirstInput:
                return "bounds1";
            case BlendBounds::SecondInput:
                return "bounds2";
        }
        return "extend(bounds1, bounds2)";
    }
    // No growth: what the input can give of the rectangle.
    PixelRect inputRect(const PixelRect& rect, int inputIndex) const override {
        return rect.intersect(this->inputs[static_cast<std::size_t>(inputIndex)]->bounds());
    }

    bool canRunInPlace(int) const override { return true; }
    int tileFlags() const override { return 3; }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        blendBand(mode, *this->outputImage, *this->inputImages[0], *this->inputImages[1], band,
                  this->host->cpuFeatures(), progress, opacity);
    }

    int32_t mode;
    float opacity;
    BlendBounds boundsSelection = BlendBounds::ByMode;

private:
    // Darken and the two stencils produce only where both inputs do, unless a selection says otherwise.
    bool intersectsByMode() const {
        constexpr uint32_t kIntersectingModes = 0xc0000002;  // 1, 30 and 31
        return boundsSelection == BlendBounds::ByMode && mode >= 0 && mode < 32 &&
               ((kIntersectingModes >> mode) & 1) != 0;
    }
};

}  // namespace Tw::Image
