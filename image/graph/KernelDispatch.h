// The one dispatcher from an image to a kernel: depth (8, 16, 32) x component order (ARGB, BGRA) x
// processor variant. A filter writes its kernel once, as a template over a PixelLayout and an Isa tag:
//
//     dispatchKernel(*outputImage, host->cpuFeatures(), [&](auto layout, auto isa) {
//         runMyKernel<decltype(layout), decltype(isa)>(...);
//     });
//
// The variants differ only in the instructions the compiler may use: each is the same template, compiled
// inside a function built for that instruction set, with everything it calls inlined into it. Kernels
// keep their results identical across variants (no fused multiply-add, no reassociation); the one
// documented difference is the plain code's conversion to integers, which truncates where the vector
// variants round to nearest, ties to even.
#pragma once

#include <cstdint>

#include "image/core/ComponentType.h"
#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"

namespace Tw::Image {

enum class ComponentOrder { Argb, Bgra };

// Where each component of a pixel lies, and the component type with its white.
template <class T, ComponentOrder Order>
struct PixelLayout {
    using Component = T;
    static constexpr ComponentOrder order = Order;
    static constexpr int alpha = Order == ComponentOrder::Argb ? 0 : 3;
    static constexpr int red = Order == ComponentOrder::Argb ? 1 : 2;
    static constexpr int green = Order == ComponentOrder::Argb ? 2 : 1;
    static constexpr int blue = Order == ComponentOrder::Argb ? 3 : 0;
    static constexpr float white = ComponentTraits<T>::white;
};

// Processor variants. `floatLanes` is the natural width of a float vector.
namespace Isa {
struct Plain {
    static constexpr int floatLanes = 1;
    static constexpr bool roundsToNearest = false;
};
struct Sse2 {
    static constexpr int floatLanes = 4;
    static constexpr bool roundsToNearest = true;
};
struct Sse41 {
    static constexpr int floatLanes = 4;
    static constexpr bool roundsToNearest = true;
};
struct Avx2 {
    static constexpr int floatLanes = 8;
    static constexpr bool roundsToNearest = true;
};
}  // namespace Isa

// The vector width of kernels that work on whole pixels in a processor variant: at least one pixel.
template <class Variant>
inline constexpr int kPixelLanes = Variant::floatLanes < 4 ? 4 : Variant::floatLanes;

// Calls body(PixelLayout{}) for the depth and component order of `image`. Formats whose first logical
// component lies at position 1 take the ARGB layout, all others the BGRA one. A depth without a component
// type (the packed "v210" family) does nothing at all.
template <class Body>
void dispatchLayout(const ImageBuffer& image, Body&& body) {
    withComponentType(image.depth(), [&](auto component) {
        using T = typename decltype(component)::type;
        const auto positions = componentPositions(image.pixelFormat());
        if (positions && (*positions)[0] == 1) {
            body(PixelLayout<T, ComponentOrder::Argb>{});
        } else {
            body(PixelLayout<T, ComponentOrder::Bgra>{});
        }
    });
}

namespace Detail {

#if defined(__x86_64__) || defined(__i386__)
template <class Layout, class Body>
[[gnu::target("avx2"), gnu::flatten]] void runAvx2(Body& body) {
    body(Layout{}, Isa::Avx2{});
}
template <class Layout, class Body>
[[gnu::target("sse4.1"), gnu::flatten]] void runSse41(Body& body) {
    body(Layout{}, Isa::Sse41{});
}
template <class Layout, class Body>
[[gnu::target("sse2"), gnu::flatten]] void runSse2(Body& body) {
    body(Layout{}, Isa::Sse2{});
}
#endif

}  // namespace Detail

// Calls body(PixelLayout{}, Isa tag) with the widest variant that `features` allows.
template <class Body>
void dispatchKernel(const ImageBuffer& image, CpuFeatures features, Body&& body) {
    dispatchLayout(image, [&](auto layout) {
        using Layout = decltype(layout);
#if defined(__x86_64__) || defined(__i386__)
        if (features & CpuFeature::kAvx2) return Detail::runAvx2<Layout>(body);
        if (features & CpuFeature::kSse41) return Detail::runSse41<Layout>(body);
        if (features & CpuFeature::kSse2) return Detail::runSse2<Layout>(body);
#endif
        body(layout, Isa::Plain{});
    });
}

}  // namespace Tw::Image
