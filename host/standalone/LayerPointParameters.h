// The parameter values of one render, with points in pixels of the rendered layer. Outside After Effects
// a point is kept as the user gives it, a fraction of the layer's width and height; an effect reads
// points in pixels, as a host hands them over, so the render reads a copy of the list whose resolution
// scale is the layer's size.
#pragma once

#include "host/param/Parameters.h"
#include "image/core/PixelRect.h"

namespace Tw::Host::Standalone {

class LayerPointParameters final : public Param::Parameters {
public:
    LayerPointParameters(const Param::Parameters& values, const Image::PixelRect& layer)
        : width_(layer.isEmpty() ? 0 : layer.width()), height_(layer.isEmpty() ? 0 : layer.height()) {
        assign(values);
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
