// Arithmetic on whole colours for the modes that mix hue, saturation and luminance, and for those that
// compare luminances. Each works on the colours of Lanes pixels, one pixel a lane.
//
// Two luminances stand side by side and differ in the last bit: `luminanceByFractions` with the float
// weights 0.3, 0.59 and 0.11, which limits colours and weighs stencils, and `luminanceByPercent`,
// (30 r + 59 g + 11 b) / 100, which is the luminance that SetLum moves.
#pragma once

#include "image/filters/blend/BlendMath.h"
#include "image/filters/blend/BlendPixel.h"

namespace Tw::Image {

template <class F>
[[gnu::always_inline]] inline F luminanceByFractions(const BlendColour<F>& c) {
    return 0.3f * c.red + 0.59f * c.green + 0.11f * c.blue;
}

template <class F>
[[gnu::always_inline]] inline F luminanceByPercent(const BlendColour<F>& c) {
    return (30.0f * c.red + 59.0f * c.green + 11.0f * c.blue) / 100.0f;
}

template <class F>
[[gnu::always_inline]] inline F largestComponent(const BlendColour<F>& c) {
    return BlendMath::maximum(BlendMath::maximum(c.red, c.green), c.blue);
}

template <class F>
[[gnu::always_inline]] inline F smallestComponent(const BlendColour<F>& c) {
    return BlendMath::minimum(BlendMath::minimum(c.red, c.green), c.blue);
}

template <class F>
[[gnu::always_inline]] inline F saturationOf(const BlendColour<F>& c) {
    return largestComponent(c) - smallestComponent(c);
}

// Pulls a colour with a component below 0, then one with a component above 1, toward its luminance. Both
// tests use the smallest and largest components as they were at the start, and no clamp follows: a
// colour far outside 0..1 may stay outside. Most colours need neither pull, and a vector of them skips
// the divisions.
template <class F>
[[gnu::always_inline]] inline BlendColour<F> clipColour(BlendColour<F> c) {
    const F l = luminanceByFractions(c);
    const F n = smallestComponent(c);
    const F x = largestComponent(c);
    const auto belowZero = 0.0f > n;
    const auto aboveOne = x > 1.0f;
    if (anyLane<BlendMath::kLanes<F>>(belowZero))
        c = eachComponent([&](F v) { return belowZero ? (v - l) * l / (l - n) + l : v; }, c);
    if (anyLane<BlendMath::kLanes<F>>(aboveOne))
        c = eachComponent([&](F v) { return aboveOne ? (v - l) * (1.0f - l) / (x - l) + l : v; }, c);
    return c;
}

// The colour moved to the luminance `target`, then limited.
template <class F>
[[gnu::always_inline]] inline BlendColour<F> withLuminance(const BlendColour<F>& c, F target) {
    const F shift = target - luminanceByPercent(c);
    return clipColour(eachComponent([&](F v) { return v + shift; }, c));
}

// The colour with saturation `s`: its largest component becomes s, its smallest 0, and the middle one
// keeps its place between them; a grey becomes black. Which component counts as the largest and which as
// the middle one is settled in a fixed order, so that ties always go the same way: red is the largest if
// it equals the maximum, else green if it does, else blue; the middle one is then the larger of the other
// two, the later of them where they are equal.
template <class F>
[[gnu::always_inline]] inline BlendColour<F> withSaturation(const BlendColour<F>& c, F s) {
    const F r = c.red, g = c.green, b = c.blue;
    const F mx = largestComponent(c), mn = smallestComponent(c);
    const auto redLargest = r == mx;
    const auto greenLargest = ~redLargest & (g == mx);
    const auto blueLargest = ~redLargest & ~greenLargest;
    const auto redMiddle = (greenLargest & (r > b)) | (blueLargest & (r > g));
    const auto greenMiddle = (redLargest & (g > b)) | (blueLargest & ~(r > g));
    const auto blueMiddle = ~redMiddle & ~greenMiddle & ~blueLargest;
    const F md = redMiddle ? r : greenMiddle ? g : b;
    const F m = (md - mn) * s / (mx - mn);
    const auto placed = [&](auto largest, auto middle) {
        return mx > mn ? (largest ? s : middle ? m : F{}) : F{};
    };
    return {placed(redLargest, redMiddle), placed(greenLargest, greenMiddle),
            placed(blueLargest, blueMiddle)};
}

}  // namespace Tw::Image
