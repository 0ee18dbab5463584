// The scales a blend works in at each depth, and the way back to stored values.
//
// Float images blend their stored values as they are, nothing limited. Integer images blend normalised
// values (the stored value over white: / 255 at 8 bits, * 2^-15 at 16, whatever a 16-bit image holds) and
// go back by + 0.5 and a truncation that keeps the low 8 or 16 bits: a result just outside 0..white wraps
// rather than being limited, and a value of white or less never does.
#pragma once

#include <cstdint>
#include <type_traits>

#include "image/core/ComponentType.h"
#include "image/graph/PixelVector.h"
#include "image/graph/StoredVectors.h"

namespace Tw::Image {

template <class T, int Lanes>
struct BlendDepth {
    using F = FloatVector<Lanes>;
    using I = IntVector<Lanes>;
    static constexpr bool isFloat = std::is_same_v<T, float>;
    static constexpr float white = ComponentTraits<T>::white;

    // Stored values as fractions of white.
    [[gnu::always_inline]] static F normalised(F v) {
        if constexpr (isFloat) {
            return v;
        } else if constexpr (sizeof(T) == 1) {
            return v / 255.0f;
        } else {
            return v * 0x1p-15f;
        }
    }

    // A fraction of white as a whole stored value, given back as a float: times white, + 0.5, truncated,
    // low bits kept.
    [[gnu::always_inline]] static F rounded(F v) {
        if constexpr (isFloat) {
            return v;
        } else {
            return lowBits(v * white + 0.5f);
        }
    }

    // For results that may leave 0..1 by their nature: times white, limited to 0..white, truncated.
    [[gnu::always_inline]] static F limited(F v) {
        if constexpr (isFloat) {
            return v;
        } else {
            const F scaled = min<Lanes>(max<Lanes>(v * white, F{}), F{} + white);
            return __builtin_convertvector(__builtin_convertvector(scaled, I), F);
        }
    }

    // Values in the stored scale as stored: integers + 0.5, truncated, low bits kept; floats as they are.
    [[gnu::always_inline]] static Stored<T, Lanes> stored(F v) {
        if constexpr (isFloat) {
            return v;
        } else {
            return truncatedStored<T, Lanes>(v + 0.5f);
        }
    }

private:
    [[gnu::always_inline]] static F lowBits(F v) {
        constexpr int32_t mask = sizeof(T) == 1 ? 0xff : 0xffff;
        return __builtin_convertvector(__builtin_convertvector(v, I) & mask, F);
    }
};

}  // namespace Tw::Image
