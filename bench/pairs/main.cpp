// bench_pairs: our effects beside their peers, every registered comparison timed in alternation, and the
// table of ratios.
//
//     bench_pairs [--pairs N] [TEXT...]
//
// runs the comparisons whose names contain one of the TEXTs (every one without), with N pairs each when
// given (otherwise as many as fit in about eight seconds). Exits with 0 when the comparisons ran, missed
// goals or not: timings vary with the machine and fail nothing. 2 is a bad command line, 1 a failed run.
#include <malloc.h>

#include <charconv>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "bench/pairs/AlternatingRuns.h"
#include "bench/pairs/Comparison.h"
#include "bench/pairs/PeakMemory.h"
#include "bench/pairs/RatioTable.h"

namespace Tw::Bench {
namespace {

// Freed memory stays with the process, mapped and resident: a side that allocates its temporaries at every
// call (as OpenCV's filters do) then reuses pages it has touched before, as ours reuses the blocks our host
// keeps, and neither pays for fresh pages inside its timed calls. Without this, glibc maps each large block
// afresh and gives it back when it is freed.
void keepFreedMemory() {
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, -1);
}

bool selected(const Comparison& comparison, const std::vector<std::string>& texts) {
    if (texts.empty()) return true;
    for (const std::string& text : texts) {
        if (comparison.name.find(text) != std::string::npos) return true;
    }
    return false;
}

// One side with frames of its own, made for this call alone: ours then starts with no kept blocks.
double memoryOfFreshSide(const Comparison& comparison, Side Sides::*side) {
    const Sides fresh = comparison.setup();
    return residentGrowthOfCall(fresh.*side);
}

int run(int argc, char** argv) {
    RunPlan plan;
    std::vector<std::string> texts;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--pairs") {
            const std::string count = i + 1 < argc ? argv[++i] : "";
            int pairs = 0;
            const auto [end, error] = std::from_chars(count.data(), count.data() + count.size(), pairs);
            if (error != std::errc{} || end != count.data() + count.size() || pairs < 1) {
                std::fprintf(stderr, "bench_pairs: --pairs takes a count of 1 or more, not \"%s\"\n",
                             count.c_str());
                return 2;
            }
            plan.minPairs = plan.maxPairs = pairs;
        } else {
            texts.push_back(argument);
        }
    }
    keepFreedMemory();
    RatioTable table;
    for (const Comparison& comparison : registeredComparisons()) {
        if (!selected(comparison, texts)) continue;
        table.addTimes(comparison, timeInAlternation(comparison.setup(), plan));
        if (comparison.memoryFrameBytes != 0)
            table.addMemory(comparison, memoryOfFreshSide(comparison, &Sides::ours),
                            memoryOfFreshSide(comparison, &Sides::peer));
    }
    table.finish();
    return 0;
}

}  // namespace
}  // namespace Tw::Bench

int main(int argc, char** argv) {
    try {
        return Tw::Bench::run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_pairs: %s\n", error.what());
        return 1;
    }
}
