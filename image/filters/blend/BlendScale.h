// The depth of a blend as its modes see it. The modes are compiled once for each of two kinds of
// arithmetic, not for every depth and component order: float images blend their stored values as they
// are and round nothing; integer images blend normalised values and round back, with the scale of the
// depth given as numbers. The loads hand the modes stored values (integers as exact floats), and each
// kind gives the same bits as arithmetic written for its depth:
//
// - normalised: the stored value over white. At 8 bits v * 0x1.0101p-8 plus 2^-24 of that, which is
//   v / 255 correctly rounded for every whole v from 0 to 255 (see wholeStepOf255); at 16 bits
//   v * 2^-15 exactly, the second term adding 0.
// - fraction: any value over white by a division, for the top's alpha times the opacity, which is no
//   whole number.
// - rounded, for a colour function's result: times white, + 0.5, truncated, low 8 or 16 bits kept, so
//   that a result just outside 0..white wraps; limited, for results that leave 0..1 by their nature:
//   times white, limited to 0..white, truncated.
//
// The stores finish at the integer depths with + 0.5, a truncation and the low bits again.
#pragma once

#include <cstdint>
#include <type_traits>

#include "image/core/ComponentType.h"
#include "image/filters/blend/BlendMath.h"
#include "image/filters/blend/BlendPixel.h"
#include "image/graph/PixelVector.h"

namespace Tw::Image {

// The numbers of a depth, as a block of pixels carries them to the modes.
struct BlendDepth {
    float white;
    float unitStep;   // normalised: v * unitStep ...
    float unitCarry;  // ... plus that times unitCarry
    int32_t lowBits;  // the bits an integer component keeps; 0 at float, which nothing rounds

    bool isFloat() const { return lowBits == 0; }

    template <class T>
    static constexpr BlendDepth of() {
        if constexpr (std::is_same_v<T, float>) {
            return {1.0f, 1.0f, 0.0f, 0};
        } else if constexpr (sizeof(T) == 1) {
            return {ComponentTraits<T>::white, 0x1.0101p-8f, 0x1p-24f, 0xff};
        } else {
            return {ComponentTraits<T>::white, 0x1p-15f, 0.0f, 0xffff};
        }
    }
};

// Float images: the stored values are the normalised ones, and white is 1.
template <int Lanes>
struct BlendFloatScale {
    using F = FloatVector<Lanes>;

    [[gnu::always_inline]] F normalised(F v) const { return v; }
    // V is F; a template parameter keeps g++ from losing the vector type of F in BlendColour<F>.
    template <class V>
    [[gnu::always_inline]] BlendColour<V> normalised(const BlendColour<V>& c) const {
        return c;
    }
    [[gnu::always_inline]] F fraction(F v) const { return v; }
    [[gnu::always_inline]] F rounded(F v) const { return v; }
    [[gnu::always_inline]] F limited(F v) const { return v; }

    const F white = F{} + 1.0f;
};

// Integer images, with the numbers of their depth.
template <int Lanes>
class BlendIntegerScale {
public:
    using F = FloatVector<Lanes>;
    using I = IntVector<Lanes>;

    explicit BlendIntegerScale(const BlendDepth& depth)
        : white(F{} + depth.white),
          unitStep(F{} + depth.unitStep),
          unitCarry(F{} + depth.unitCarry),
          lowBits(I{} + depth.lowBits) {}

    [[gnu::always_inline]] F normalised(F v) const {
        const F step = v * unitStep;
        return step + step * unitCarry;
    }
    template <class V>
    [[gnu::always_inline]] BlendColour<V> normalised(const BlendColour<V>& c) const {
        return eachComponent([&](V v) { return normalised(v); }, c);
    }
    [[gnu::always_inline]] F fraction(F v) const { return v / white; }
    [[gnu::always_inline]] F rounded(F v) const {
        return __builtin_convertvector(__builtin_convertvector(v * white + 0.5f, I) & lowBits, F);
    }
    [[gnu::always_inline]] F limited(F v) const {
        const F scaled = BlendMath::minimum(BlendMath::maximum(v * white, F{}), white);
        return __builtin_convertvector(__builtin_convertvector(scaled, I), F);
    }

    const F white;

private:
    const F unitStep;
    const F unitCarry;
    const I lowBits;
};

}  // namespace Tw::Image
