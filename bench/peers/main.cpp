// Our effects beside OpenCV's filters of the same kind. Each file registers its pairs; the ratios of their
// real times come after the runs.
#include "bench/RatioReport.h"

int main(int argc, char** argv) {
    return Tw::Bench::runWithRatios(argc, argv);
}
