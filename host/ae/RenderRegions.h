// Rectangles shared by the pre-render and the render of a smart effect.
#pragma once

#include "host/ae/Host.h"

namespace Tw::Host::AE {

// The extent assumed for layers whose size is not known yet: far larger than any frame.
inline constexpr PixelRect kUnlimitedLayer{-100000, -100000, 100000, 100000};

inline PixelRect toPixelRect(const PF_LRect& rect) {
    return {rect.left, rect.top, rect.right, rect.bottom};
}

inline PF_LRect toHostRect(const PixelRect& rect) {
    return {rect.left, rect.top, rect.right, rect.bottom};
}

// The output region the host asks of a smart render.
inline PixelRect requestedRect(const Host& host) {
    return toPixelRect(static_cast<const PF_SmartRenderExtra*>(host.extra)->input->output_request.rect);
}

}  // namespace Tw::Host::AE
