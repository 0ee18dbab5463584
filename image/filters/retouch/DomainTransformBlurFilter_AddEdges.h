// Extra edges added onto a derivative plane: an owner's image (such as a local contrast) that should stop
// the blur as if the guide had an edge there.
#pragma once

#include "image/filters/retouch/DomainTransformBlurFilter_Common.h"

namespace Tw::Image {

template <class Host>
class DomainTransformBlurFilter_AddEdges final
    : public DomainTransformBlurFilter_Common<Host, &DomainTransformBlurCommon::ComputeTileAddEdges> {
public:
    const char* name() const override { return "domainTransformBlur AddEdges"; }
};

}  // namespace Tw::Image
