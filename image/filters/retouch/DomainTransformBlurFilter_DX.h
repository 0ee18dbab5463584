// The derivative plane along rows of a domain transform blur's guide.
#pragma once

#include "image/filters/retouch/DomainTransformBlurFilter_Common.h"

namespace Tw::Image {

template <class Host>
class DomainTransformBlurFilter_DX final
    : public DomainTransformBlurFilter_Common<Host, &DomainTransformBlurCommon::ComputeTileDX> {
public:
    const char* name() const override { return "domainTransformBlur DX"; }
    PixelRect inputRect(const PixelRect& rect, int /*inputIndex*/) const override {
        return withNextColumn(rect, this->inputs[0]->bounds());
    }
    int tileFlags() const override { return 2; }
};

}  // namespace Tw::Image
