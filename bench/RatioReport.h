// Runs the registered benchmarks and then prints, for each pair (ours, peer), the ratio of their real
// times: the figure the benchmarks exist for. A ratio below 1 means ours is faster.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace Tw::Bench {

struct RatioPair {
    std::string ours;
    std::string peer;
    double goal;  // the largest acceptable ratio
};

class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration)
                realTimes_[run.benchmark_name()] = run.GetAdjustedRealTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }

    // Prints each ratio; returns false if any pair is missing or misses its goal.
    bool printRatios(const std::vector<RatioPair>& pairs) const {
        bool met = true;
        std::printf("\n%-48s %-28s %8s %6s\n", "ours", "peer", "ratio", "goal");
        for (const RatioPair& pair : pairs) {
            const auto ours = realTimes_.find(pair.ours);
            const auto peer = realTimes_.find(pair.peer);
            if (ours == realTimes_.end() || peer == realTimes_.end()) {
                std::printf("%-48s %-28s %8s\n", pair.ours.c_str(), pair.peer.c_str(), "not run");
                continue;
            }
            const double ratio = ours->second / peer->second;
            met = met && ratio <= pair.goal;
            std::printf("%-48s %-28s %8.3f %6.2f%s\n", pair.ours.c_str(), pair.peer.c_str(), ratio, pair.goal,
                        ratio <= pair.goal ? "" : "  MISSED");
        }
        return met;
    }

private:
    std::map<std::string, double> realTimes_;
};

// The pairs that benchmark files of one program register for themselves.
inline std::vector<RatioPair>& registeredRatioPairs() {
    static std::vector<RatioPair> pairs;
    return pairs;
}

struct RatioRegistration {
    explicit RatioRegistration(RatioPair pair) { registeredRatioPairs().push_back(std::move(pair)); }
};

// The body of a benchmark program's main.
inline int runWithRatios(int argc, char** argv,
                         const std::vector<RatioPair>& pairs = registeredRatioPairs()) {
    // Every case runs warm: its first renders touch memory fresh from the system, which a host rendering
    // a clip pays once and not at every frame. A warm-up time on the command line comes later and wins.
    std::vector<char*> arguments(argv, argv + argc);
    static char warmUp[] = "--benchmark_min_warmup_time=0.5";
    arguments.insert(arguments.begin() + 1, warmUp);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios(pairs);
    benchmark::Shutdown();
    return 0;
}

}  // namespace Tw::Bench
