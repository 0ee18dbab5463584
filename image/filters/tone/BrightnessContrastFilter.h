// BrightnessContrastFilter: brightness and contrast as one linear map of red, green and blue, run by the
// Balance kernel.
//
// Everything but the name and the map is BalanceFilter's, which the node's own fields never reach: its
// range ends stay neutral, so with "Clamp" off the node is an identity and the graph removes it whatever
// the brightness and contrast. Saved projects rely on that; only a clamped node changes the picture.
#pragma once

#include <algorithm>

#include "image/filters/tone/BalanceFilter.h"

namespace Tw::Image {

template <class Host>
class BrightnessContrastFilter final : public BalanceFilter<Host> {
public:
    using Node = FilterBase<Host>;

    // `brightness` and `contrast` are fractions, -1 to 1.
    BrightnessContrastFilter(Node& input, float brightness, float contrast, bool clamp)
        : BalanceFilter<Host>(input, 0, 1, 0, 1, 1, clamp), brightness(brightness), contrast(contrast) {}

    const char* name() const override { return "brightness/contrast"; }

    // Contrast below 0 narrows the output range about its middle; above 0 it narrows the input range, until
    // at 1 the map is a threshold at the middle. Brightness lifts the output by up to 100/255.
    ScaleAndOffset scaleAndOffset() const override {
        const float b = brightness * 100.0f / 255.0f;
        const float c = contrast;
        float fromLow, fromHigh, toLow, toHigh, scale, offset;
        if (c < 0) {
            fromLow = 0;
            fromHigh = 1;
            toLow = 0.5f - (c + 1) * 0.5f + b;
            // Not lifted by b: the b added to the slope's numerator below cancels the one in toLow, so the
            // slope keeps to the contrast and the offset carries the brightness.
            toHigh = (c + 1) * 0.5f + 0.5f;
        } else {
            const float half = (1 - c) * 0.5f;
            fromLow = 0.5f - half;
            fromHigh = half + 0.5f;
            toLow = b;
            toHigh = 1;
        }
        if (c >= 0 && fromLow == fromHigh) {
            scale = 255;
            offset = b - 255 * fromLow;
        } else {
            scale = std::min(255.0f, (b + toHigh - toLow) / (fromHigh - fromLow));
            offset = toLow - scale * fromLow;
        }
        ScaleAndOffset result;
        for (int channel = 0; channel < 3; ++channel)
            result.scale[channel] = scale, result.offset[channel] = offset;
        return result;
    }

    float brightness, contrast;
};

}  // namespace Tw::Image
