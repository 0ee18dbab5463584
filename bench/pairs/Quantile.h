// Order statistics of the samples of a comparison.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Tw::Bench {

// The `q` quantile of `values` (0 the least, 0.5 the median, 1 the greatest), interpolated linearly
// between the two nearest values. `values` must not be empty.
inline double quantile(std::vector<double> values, double q) {
    std::sort(values.begin(), values.end());
    const double position = q * static_cast<double>(values.size() - 1);
    const auto below = static_cast<std::size_t>(position);
    const std::size_t above = std::min(below + 1, values.size() - 1);
    const double fraction = position - static_cast<double>(below);
    return values[below] + fraction * (values[above] - values[below]);
}

}  // namespace Tw::Bench
