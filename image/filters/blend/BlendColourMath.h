// Arithmetic on whole colours for the modes that mix hue, saturation and luminance, and for those that
// compare luminances. Each works on a vector of BlendLanes and gives, in every lane, the result for that
// lane's component of its own pixel; alpha lanes carry values nobody reads.
//
// Two luminances stand side by side and differ in the last bit: `luminanceByFractions` with the float
// weights 0.3, 0.59 and 0.11, which limits colours and weighs stencils, and `luminanceByPercent`,
// (30 r + 59 g + 11 b) / 100, which is the luminance that SetLum moves.
#pragma once

#include "image/filters/blend/BlendLanes.h"
#include "image/filters/blend/BlendMath.h"

namespace Tw::Image {

template <class Px>
[[gnu::always_inline]] inline typename Px::F luminanceByFractions(typename Px::F c) {
    return 0.3f * Px::red(c) + 0.59f * Px::green(c) + 0.11f * Px::blue(c);
}

template <class Px>
[[gnu::always_inline]] inline typename Px::F luminanceByPercent(typename Px::F c) {
    return (30.0f * Px::red(c) + 59.0f * Px::green(c) + 11.0f * Px::blue(c)) / 100.0f;
}

template <class Px>
[[gnu::always_inline]] inline typename Px::F largestComponent(typename Px::F c) {
    return max<Px::lanes>(max<Px::lanes>(Px::red(c), Px::green(c)), Px::blue(c));
}

template <class Px>
[[gnu::always_inline]] inline typename Px::F smallestComponent(typename Px::F c) {
    return min<Px::lanes>(min<Px::lanes>(Px::red(c), Px::green(c)), Px::blue(c));
}

template <class Px>
[[gnu::always_inline]] inline typename Px::F saturationOf(typename Px::F c) {
    return largestComponent<Px>(c) - smallestComponent<Px>(c);
}

// Pulls a colour with a component below 0, then one with a component above 1, toward its luminance. Both
// tests use the smallest and largest components as they were at the start, and no clamp follows: a
// colour far outside 0..1 may stay outside.
template <class Px>
[[gnu::always_inline]] inline typename Px::F clipColour(typename Px::F c) {
    const auto l = luminanceByFractions<Px>(c);
    const auto n = smallestComponent<Px>(c);
    const auto x = largestComponent<Px>(c);
    c = 0.0f > n ? (c - l) * l / (l - n) + l : c;
    return x > 1.0f ? (c - l) * (1.0f - l) / (x - l) + l : c;
}

// The colour moved to the luminance `target`, then limited.
template <class Px>
[[gnu::always_inline]] inline typename Px::F withLuminance(typename Px::F c, typename Px::F target) {
    return clipColour<Px>(c + (target - luminanceByPercent<Px>(c)));
}

// The colour with saturation `s`: its largest component becomes s, its smallest 0, and the middle one
// keeps its place between them; a grey becomes black. Which component counts as the largest and which as
// the middle one is settled in a fixed order, so that ties always go the same way: red is the largest if
// it equals the maximum, else green if it does, else blue; the middle one is then the larger of the other
// two, the later of them where they are equal.
template <class Px>
[[gnu::always_inline]] inline typename Px::F withSaturation(typename Px::F c, typename Px::F s) {
    using F = typename Px::F;
    const F r = Px::red(c), g = Px::green(c), b = Px::blue(c);
    const F mx = largestComponent<Px>(c), mn = smallestComponent<Px>(c);
    const auto redLargest = r == mx;
    const auto greenLargest = ~redLargest & (g == mx);
    const auto blueLargest = ~redLargest & ~greenLargest;
    const auto redMiddle = (greenLargest & (r > b)) | (blueLargest & (r > g));
    const auto greenMiddle = (redLargest & (g > b)) | (blueLargest & ~(r > g));
    const auto blueMiddle = ~redMiddle & ~greenMiddle & ~blueLargest;
    const F md = redMiddle ? r : greenMiddle ? g : b;
    const F m = (md - mn) * s / (mx - mn);

    const auto redLanes = Px::template lanesOf<Px::Layout::red>();
    const auto greenLanes = Px::template lanesOf<Px::Layout::green>();
    const auto blueLanes = Px::template lanesOf<Px::Layout::blue>();
    const auto largestLane =
        (redLanes & redLargest) | (greenLanes & greenLargest) | (blueLanes & blueLargest);
    const auto middleLane = (redLanes & redMiddle) | (greenLanes & greenMiddle) | (blueLanes & blueMiddle);
    const F placed = largestLane ? s : middleLane ? m : F{};
    return mx > mn ? placed : F{};
}

}  // namespace Tw::Image
