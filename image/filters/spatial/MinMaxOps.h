// The two operations of the minimum and maximum filter: each names its node and combines two vectors of
// stored component values, lane by lane.
//
// The comparison is on the values as they are stored. 8-bit components compare unsigned and floats
// plainly (values beyond 0..1 take part like any other). 16-bit components compare as signed 16-bit
// integers: 32768, the full white of the 0..32768 range, has the sign bit and so counts as the lowest
// value of all. Rendered images depend on this, so it is kept.
//
// Each is written as the bare `a < b ? b : a` on the vectors themselves, the form g++ turns into one
// maximum or minimum instruction; any wrapper around the operands of the comparison hides it, and a
// compare and blend of three instructions comes out instead.
#pragma once

#include <bit>
#include <cstdint>
#include <type_traits>

#include "image/graph/PixelVector.h"

namespace Tw::Image {

// The 16-bit lanes of V as signed integers.
template <class V>
using SignedLanes = Vector<int16_t, sizeof(V) / sizeof(int16_t)>;

template <class V>
constexpr bool kUnsigned16 = std::is_same_v<std::remove_cvref_t<decltype(V{}[0])>, uint16_t>;

// Both operations: 16-bit lanes reinterpreted as signed, then `Op::pick`, the bare comparison.
template <class Op>
struct StoredValueOrder {
    template <class V>
    [[gnu::always_inline]] static V combine(V a, V b) {
        if constexpr (kUnsigned16<V>) {
            return std::bit_cast<V>(
                Op::pick(std::bit_cast<SignedLanes<V>>(a), std::bit_cast<SignedLanes<V>>(b)));
        } else {
            return Op::pick(a, b);
        }
    }
};

struct MaxOp : StoredValueOrder<MaxOp> {
    static constexpr const char* name = "maxFilter";
    template <class V>
    [[gnu::always_inline]] static V pick(V a, V b) {
        return a < b ? b : a;
    }
};

struct MinOp : StoredValueOrder<MinOp> {
    static constexpr const char* name = "minFilter";
    template <class V>
    [[gnu::always_inline]] static V pick(V a, V b) {
        return b < a ? b : a;
    }
};

}  // namespace Tw::Image
