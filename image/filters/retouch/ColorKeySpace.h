// The colour key's space and its strength.
//
// A colour is keyed as a point (h, c, l), all near 0..1: h the CIE L*a*b* hue angle as a fraction of a
// turn, c the chroma / 128 and l the lightness L* / 105. A key is a box in that space with a softness on
// each axis: a point in the box, bounds included, has strength 1; outside, the strength falls as a
// Gaussian of the distance to the box, axis by axis. Hue is a circle: a box may start below 0, and a
// point's hue is taken within half a turn of the box's start.
//
// The scalar functions are the vector forms on one lane, so a key made from a colour holds exactly the
// point a kernel finds for that colour.
#pragma once

#include <array>

#include "image/graph/CieLab.h"
#include "image/graph/StoredVectors.h"
#include "image/graph/VectorMath.h"

namespace Tw::Image {

// Hue, chroma, lightness.
using KeyPoint = std::array<float, 3>;

struct SkinKey {
    KeyPoint fgmin;  // the box's lower corner
    KeyPoint fgmax;  // its upper corner
    KeyPoint sigma;  // the softness on each axis

    friend bool operator==(const SkinKey&, const SkinKey&) = default;
};

// The point of a display-encoded colour with components in 0..1; values beyond are taken as they are.
KeyPoint rgbToKeySpace(float r, float g, float b);

// The point of a colour given by its ratios to the white point, X/Xn, Y/Yn, Z/Zn, taking their cube roots
// directly, without the linear toe near black.
KeyPoint keySpaceOfWhiteRatios(float x, float y, float z);

// The box spanned by two points, with the given softness. On the hue circle the box takes the short way
// between the two, and so may start below 0.
SkinKey makeKeyRange(const KeyPoint& a, const KeyPoint& b, const KeyPoint& sigma);

template <int Lanes>
struct KeyVectors {
    FloatVector<Lanes> hue, chroma, lightness;
};

template <int Lanes>
[[gnu::always_inline]] inline KeyVectors<Lanes> keySpaceOfLab(const LabVectors<Lanes>& lab) {
    using F = FloatVector<Lanes>;
    // The angle in degrees counts from 0 up to 360 inclusive: a zero angle, black's, takes the second
    // branch and becomes a whole turn.
    constexpr float pi = 3.1415927f;
    const F angle = arcTangent2<Lanes>(lab.b, lab.a);
    const F degrees = angle > 0.0f ? angle / pi * 180.0f : absolute<Lanes>(angle) / -pi * 180.0f + 360.0f;
    return {degrees / 360.0f, squareRoot<Lanes>(lab.a * lab.a + lab.b * lab.b) * 0.0078125f,
            lab.lightness / 105.0f};
}

// A key as the kernels apply it.
struct KeyBox {
    KeyBox(const SkinKey& key, bool inverted) : low(key.fgmin), high(key.fgmax), inverted(inverted) {
        for (int axis = 0; axis < 3; ++axis)
            inverseSigma[axis] = key.sigma[axis] > 0.001f ? 1.0f / key.sigma[axis] : 999.99994f;
    }

    KeyPoint low, high, inverseSigma;
    bool inverted;
};

// The strength of the key at each lane's point, or its complement when the key is inverted.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> keyStrength(const KeyBox& box,
                                                             const KeyVectors<Lanes>& point) {
    using F = FloatVector<Lanes>;
    const F offset = point.hue - box.low[0];
    const F turned = offset < -0.5f ? offset + 1.0f : offset > 0.5f ? offset - 1.0f : offset;
    // How far a value lies outside the box on one axis, in units of the axis's softness.
    const auto distance = [&](F v, int axis) {
        const float lo = box.low[axis], hi = box.high[axis];
        return (v < lo ? v - lo : v > hi ? v - hi : F{}) * box.inverseSigma[axis];
    };
    const F dh = distance(turned + box.low[0], 0);
    const F dc = distance(point.chroma, 1);
    const F dl = distance(point.lightness, 2);
    const F strength = exponential<Lanes>(dl * dl * -0.5f - dc * dc * 0.5f - dh * dh * 0.5f);
    return box.inverted ? 1.0f - strength : strength;
}

}  // namespace Tw::Image
