// The one dispatcher from an image to a kernel: depth (8, 16, 32) x component order (ARGB, BGRA) x
// processor variant. A filter writes its kernel once, as a template over a PixelLayout and an Isa tag:
//
//     dispatchKernel(*outputImage, host->cpuFeatures(), [&](auto layout, auto isa) {
//         runMyKernel<decltype(layout), decltype(isa)>(...);
//     });
//
// A kernel that treats the four components alike asks `dispatchDepthKernel` instead: its layout names the
// component type alone, so it is compiled once per depth, not once per depth and order. One that reads no
// image at all (a plane of weights, say) asks `dispatchVariant`. A filter with many kernels of one shape
// (the blend modes) can keep them out of the layouts altogether: they compute on planes of components
// (RgbaPlanes.h) under `dispatchVariant`, and only the loads and stores go through `dispatchKernel`.
//
// The variants differ only in the instructions the compiler may use: each is the same template, compiled
// inside a function built for that instruction set, with everything it calls inlined into it. Kernels
// keep their results identical across variants (no fused multiply-add, no reassociation). The baseline
// variant is built for what every processor of the architecture has (SSE2 on x86, whose 32-bit build
// requires it; NEON on arm64), so a processor that answers no feature bit runs the same vector code, and
// every architecture gives the same bits.
#pragma once

#include <cstdint>

#include "image/core/ComponentType.h"
#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"

namespace Tw::Image {

// `Alike` is the order of kernels that never tell the components apart.
enum class ComponentOrder { Argb, Bgra, Alike };

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

// The layout of a kernel that treats every component alike: it has no positions to ask for.
template <class T>
struct PixelLayout<T, ComponentOrder::Alike> {
    using Component = T;
    static constexpr ComponentOrder order = ComponentOrder::Alike;
    static constexpr float white = ComponentTraits<T>::white;
};

// Processor variants. `floatLanes` is the natural width of a float vector.
namespace Isa {
struct Baseline {
    static constexpr int floatLanes = 4;
};
#if defined(__x86_64__) || defined(__i386__)
struct Sse41 {
    static constexpr int floatLanes = 4;
};
struct Avx2 {
    static constexpr int floatLanes = 8;
};
#endif
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
#endif
template <class Layout, class Body>
[[gnu::flatten]] void runBaseline(Body& body) {
    body(Layout{}, Isa::Baseline{});
}

// Calls body(Layout{}, Isa tag) with the widest variant that `features` allows. A build for checking
// the hosts and the graph rather than the kernels (TW_BASELINE_KERNELS_ONLY) compiles the baseline alone;
// one for checking memory (TW_ONE_KERNEL_VARIANT_PER_WIDTH) leaves out SSE4.1, whose vectors have the
// baseline's width.
template <class Layout, class Body>
void runVariant(CpuFeatures features, Body& body) {
#if (defined(__x86_64__) || defined(__i386__)) && !defined(TW_BASELINE_KERNELS_ONLY)
    if (features & CpuFeature::kAvx2) return runAvx2<Layout>(body);
#if !defined(TW_ONE_KERNEL_VARIANT_PER_WIDTH)
    if (features & CpuFeature::kSse41) return runSse41<Layout>(body);
#endif
#endif
    (void)features;
    runBaseline<Layout>(body);
}

}  // namespace Detail

// Calls body(PixelLayout{}, Isa tag) for the depth and order of `image`, with the widest variant that
// `features` allows.
template <class Body>
void dispatchKernel(const ImageBuffer& image, CpuFeatures features, Body&& body) {
    dispatchLayout(image, [&](auto layout) { Detail::runVariant<decltype(layout)>(features, body); });
}

// As `dispatchKernel`, for a kernel that treats the four components alike.
template <class Body>
void dispatchDepthKernel(const ImageBuffer& image, CpuFeatures features, Body&& body) {
    withComponentType(image.depth(), [&](auto component) {
        using T = typename decltype(component)::type;
        Detail::runVariant<PixelLayout<T, ComponentOrder::Alike>>(features, body);
    });
}

// Where red, green, blue and alpha lie in a pixel of `image`: its layout's places, for kernels compiled
// once per depth that still tell the colour components apart. They take the places at run time, which for
// a costly kernel saves a second copy of its code per depth and variant.
struct ComponentPlaces {
    int red, green, blue, alpha;

    static ComponentPlaces of(const ImageBuffer& image) {
        ComponentPlaces places{};
        dispatchLayout(image, [&](auto layout) {
            using Layout = decltype(layout);
            places = {Layout::red, Layout::green, Layout::blue, Layout::alpha};
        });
        return places;
    }
};

// Calls body(Isa tag) with the widest variant that `features` allows, for a kernel that reads no image's
// format.
template <class Body>
void dispatchVariant(CpuFeatures features, Body&& body) {
    auto withoutLayout = [&](auto /*layout*/, auto isa) { body(isa); };
    Detail::runVariant<PixelLayout<float, ComponentOrder::Alike>>(features, withoutLayout);
}

}  // namespace Tw::Image
