#include "bench/pairs/Comparison.h"

namespace Tw::Bench {

std::vector<Comparison>& registeredComparisons() {
    static std::vector<Comparison> comparisons;
    return comparisons;
}

Registration::Registration(std::initializer_list<Comparison> comparisons) {
    registeredComparisons().insert(registeredComparisons().end(), comparisons);
}

}  // namespace Tw::Bench
