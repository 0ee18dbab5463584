// Times the two sides of a comparison in alternation: ours, the peer, ours, the peer, ... Each pair of
// adjacent samples gives one ratio ours / peer; a load that comes and goes on a shared machine lands on
// both samples of most pairs, and the median of the ratios is what the comparison reports.
//
// Both sides are warmed by a call each before any timing (a quick side by two, the second of which sets
// how many calls make a sample), and every later call reuses what the first left (the setup's frames, our
// host's kept pixel blocks, the process's free memory, see main.cpp), so that pages touched for the first
// time count in neither side. The faults that still happen in timed calls are counted, so that the report can
// tell when they don't.
#pragma once

#include <vector>

#include "bench/pairs/Comparison.h"

namespace Tw::Bench {

struct RunPlan {
    // Each sample repeats its side's call until it lasts about as long as one call of the slower side,
    // within these bounds (and always calls at least once): both samples of a pair then see a passing load
    // for about as long.
    double shortestSampleSeconds = 0.1;
    double longestSampleSeconds = 1.0;
    // The pairs a comparison runs: as many as fit in the budget, within these bounds.
    double budgetSeconds = 8.0;
    int minPairs = 5;
    int maxPairs = 40;
};

struct SideTimes {
    // The time of one call in each pair's sample, in seconds.
    std::vector<double> seconds;
    // Page faults per call over all timed calls.
    double faultsPerCall = 0;
};

struct PairedTimes {
    SideTimes ours;
    SideTimes peer;
};

PairedTimes timeInAlternation(const Sides& sides, const RunPlan& plan);

}  // namespace Tw::Bench
