// The first-order recursion of a domain transform pass, shared by the row and the column kernels.
//
// For a line over positions 0..n-1 of the source, weights W and a destination over begin..end-1:
//     forward:  line(0) = src(0), acc = src(0); for p = 1..n-1: acc = (acc - src(p)) * W(p) + src(p),
//               line(p) = acc as stored
//     backward: for p = n-2 down to end-1: acc = (acc - line(p)) * W(p + 1) + line(p), nothing written
//               dst(end-1) = acc; for p = end-2 down to begin: the same step, dst(p) = acc
// The accumulator is float at every depth. The line and the destination hold the image's own depth:
// integer values are stored as max(acc, 0) limited to white and rounded half up, and the backward steps
// read those rounded values back while the accumulator keeps its own. Every operation is lane-wise, so
// however the kernels group lines into vectors, no bit changes.
#pragma once

#include <type_traits>

#include "image/graph/StoredVectors.h"

namespace Tw::Image {

// One step of the recursion toward `value`, whose feedback is `weight`.
template <int Lanes>
[[gnu::always_inline]] inline FloatVector<Lanes> recursionStep(FloatVector<Lanes> acc,
                                                               FloatVector<Lanes> value,
                                                               FloatVector<Lanes> weight) {
    return (acc - value) * weight + value;
}

// The accumulator as the image holds it.
template <class T, int Lanes>
[[gnu::always_inline]] inline Stored<T, Lanes> storedComponents(FloatVector<Lanes> acc) {
    if constexpr (std::is_same_v<T, float>) {
        return acc;
    } else {
        // max(acc, 0) + 0.5 cut toward zero is what acc + 0.5 limited to 0 and cut gives.
        return clampedStored<T, Lanes>(acc + 0.5f);
    }
}

}  // namespace Tw::Image
