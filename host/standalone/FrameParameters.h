// The parameters of a render as an effect reads them. Users give a point as a fraction of the frame, and
// the lists here keep it so; a host hands it to the effect in pixels of the frame being rendered. A copy
// of the list whose resolution scale is the frame's size gives it so.
#pragma once

#include <algorithm>

#include "host/param/Parameters.h"
#include "image/core/PixelRect.h"

namespace Tw::Host::Standalone {

class FrameParameters final : public Param::Parameters {
public:
    FrameParameters(const Param::Parameters& given, const Image::PixelRect& frame)
        : width_(frame.isEmpty() ? 0 : frame.width()), height_(frame.isEmpty() ? 0 : frame.height()) {
        assign(given);
    }

    // Whether any point of `list` is read in pixels of the frame, which only a copy gives.
    static bool readsPoints(const Param::Parameters& list) {
        return std::any_of(list.records.begin(), list.records.end(), [](const Param::ParamRecord& r) {
            return r.kind == Param::ParamKind::Point && !r.hasFlag(Param::ParamFlag::UnscaledPoint);
        });
    }

    void resolutionScale(double& x, double& y) const override {
        x = width_;
        y = height_;
    }

private:
    double width_;
    double height_;
};

}  // namespace Tw::Host::Standalone
