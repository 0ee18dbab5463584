#include "bench/pairs/AlternatingRuns.h"

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>
#include <utility>

namespace Tw::Bench {
namespace {

using Clock = std::chrono::steady_clock;

// A call is taken to last at least this long, so that a side that does next to nothing still makes
// finite counts of calls and pairs.
constexpr double kShortestCallSeconds = 1e-6;

long pageFaultsSoFar() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt + usage.ru_majflt;
}

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double timeOneCall(const Side& side) {
    const auto start = Clock::now();
    side();
    return secondsSince(start);
}

struct Sampler {
    const Side& side;
    int calls;
    SideTimes times;
    long faults = 0;

    void sample() {
        // The other side's idle workers spin a moment before they sleep; on a machine as wide as the
        // sides' threads they would take a core from this sample's start.
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        const long faultsBefore = pageFaultsSoFar();
        const auto start = Clock::now();
        for (int i = 0; i < calls; ++i)
            side();
        times.seconds.push_back(secondsSince(start) / calls);
        faults += pageFaultsSoFar() - faultsBefore;
    }

    SideTimes finish() {
        times.faultsPerCall =
            static_cast<double>(faults) / (calls * static_cast<double>(times.seconds.size()));
        return std::move(times);
    }
};

// Warms a side by one call, which may fault in fresh memory, and returns how long a warm call takes. A
// first call that outlasts two samples is taken as it is: the side is sampled one call at a time anyway.
double warmCallSeconds(const Side& side, const RunPlan& plan) {
    const double first = timeOneCall(side);
    return std::max(kShortestCallSeconds,
                    first >= 2 * plan.shortestSampleSeconds ? first : timeOneCall(side));
}

int callsPerSample(double secondsPerCall, double sampleSeconds) {
    return std::max(1, static_cast<int>(std::ceil(sampleSeconds / secondsPerCall)));
}

}  // namespace

PairedTimes timeInAlternation(const Sides& sides, const RunPlan& plan) {
    const double oursOnce = warmCallSeconds(sides.ours, plan);
    const double peerOnce = warmCallSeconds(sides.peer, plan);
    const double sampleSeconds =
        std::clamp(std::max(oursOnce, peerOnce), plan.shortestSampleSeconds, plan.longestSampleSeconds);
    Sampler ours{sides.ours, callsPerSample(oursOnce, sampleSeconds), {}};
    Sampler peer{sides.peer, callsPerSample(peerOnce, sampleSeconds), {}};
    const double pairSeconds = ours.calls * oursOnce + peer.calls * peerOnce;
    const int pairs =
        std::clamp(static_cast<int>(plan.budgetSeconds / pairSeconds), plan.minPairs, plan.maxPairs);
    for (int i = 0; i < pairs; ++i) {
        ours.sample();
        peer.sample();
    }
    return {ours.finish(), peer.finish()};
}

}  // namespace Tw::Bench
