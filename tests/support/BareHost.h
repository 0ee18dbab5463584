// A standalone host with no effect attached, for tests and benchmarks that drive the graph directly.
#pragma once

#include "host/standalone/Host.h"

namespace Tw::Test {

class BareHost final : public Tw::Host::Standalone::Host {
public:
    using Host::Host;
    const char* effectName() const override { return "none"; }
    void defineParameters(Tw::Host::Param::Parameters&) override {}
    void renderFrame(Tw::Host::Param::Parameters&, Image::ImageBuffer&, Image::ImageBuffer&,
                     Image::ImageBuffer&, Image::LayerImages) override {}
    Image::PixelRect inputRect(Tw::Host::Param::Parameters&, const Image::PixelRect& request,
                               const Image::PixelRect&, std::vector<Image::LayerRequest>&) override {
        return request;
    }
};

}  // namespace Tw::Test
