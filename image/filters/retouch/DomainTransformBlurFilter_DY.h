// The derivative plane down columns of a domain transform blur's guide.
#pragma once

#include "image/filters/retouch/DomainTransformBlurFilter_Common.h"

namespace Tw::Image {

template <class Host>
class DomainTransformBlurFilter_DY final
    : public DomainTransformBlurFilter_Common<Host, &DomainTransformBlurCommon::ComputeTileDY> {
public:
    const char* name() const override { return "domainTransformBlur DY"; }
    // One column more on the right and no row more below, although the kernel reads the next row: the
    // region has always been asked this way, and rendered results depend on it. Where the row below is
    // missing the kernel's clamping makes the step 0.
    PixelRect inputRect(const PixelRect& rect, int /*inputIndex*/) const override {
        return withNextColumn(rect, this->inputs[0]->bounds());
    }
    int tileFlags() const override { return 2; }
};

}  // namespace Tw::Image
