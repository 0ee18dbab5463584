#include "bench/pairs/RatioTable.h"

#include <cstdio>

#include "bench/pairs/Quantile.h"

namespace Tw::Bench {
namespace {

// Page faults a call below a mebibyte of 4 KiB pages cost a fraction of a millisecond: a line buffer, not
// a frame.
constexpr double kNotableFaultsPerCall = 256;

// The machine's load average over the last minute, or -1 where the system does not tell it.
double loadAverage() {
    double load = -1;
    if (std::FILE* file = std::fopen("/proc/loadavg", "r")) {
        if (std::fscanf(file, "%lf", &load) != 1) load = -1;
        std::fclose(file);
    }
    return load;
}

std::string formatted(const char* format, auto... values) {
    char text[256];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

}  // namespace

RatioTable::RatioTable() {
    std::printf(
        "Ours beside a peer, each on %u threads, timed in alternation on the same frames.\n"
        "ratio: the median of the ratios ours / peer of adjacent runs; below 1, ours is faster.\n"
        "quartiles: the middle half of those ratios. ms: the median time of one call of each side.\n"
        "goal: the largest acceptable ratio; MISSED marks a ratio above it.\n"
        "Load average at the start: %.2f (where it exceeds %u, other work shares the cores and the ratios "
        "move).\n\n",
        kThreads, loadAverage(), kThreads);
    std::printf("%-32s %-24s %9s %9s %7s %13s %6s %5s\n", "comparison", "peer", "ours ms", "peer ms", "ratio",
                "quartiles", "goal", "pairs");
    std::fflush(stdout);
}

void RatioTable::addTimes(const Comparison& comparison, const PairedTimes& times) {
    // Ratios to three significant digits, so that a small ratio keeps its precision.
    std::vector<double> ratios;
    for (std::size_t i = 0; i < times.ours.seconds.size(); ++i)
        ratios.push_back(times.ours.seconds[i] / times.peer.seconds[i]);
    const double ratio = quantile(ratios, 0.5);
    const bool met = ratio <= comparison.goal;
    std::printf("%-32s %-24s %9.2f %9.2f %#7.3g %#6.3g-%-#6.3g %6.2f %5zu%s\n", comparison.name.c_str(),
                comparison.peer.c_str(), 1e3 * quantile(times.ours.seconds, 0.5),
                1e3 * quantile(times.peer.seconds, 0.5), ratio, quantile(ratios, 0.25),
                quantile(ratios, 0.75), comparison.goal, ratios.size(), met ? "" : "  MISSED");
    std::fflush(stdout);
    ++rows_;
    missed_ += met ? 0 : 1;
    for (const auto& [side, sideTimes] :
         {std::pair{"ours", &times.ours}, {comparison.peer.c_str(), &times.peer}}) {
        if (sideTimes->faultsPerCall >= kNotableFaultsPerCall)
            faultNotes_.push_back(formatted("%s: %s faulted in %.0f fresh pages a timed call",
                                            comparison.name.c_str(), side, sideTimes->faultsPerCall));
    }
}

void RatioTable::addMemory(const Comparison& comparison, double oursBytes, double peerBytes) {
    const auto frames = static_cast<double>(comparison.memoryFrameBytes);
    memoryLines_.push_back(formatted("%-32s ours %.2f frames (%.0f MiB), %s %.2f frames (%.0f MiB)",
                                     comparison.name.c_str(), oursBytes / frames, oursBytes / (1 << 20),
                                     comparison.peer.c_str(), peerBytes / frames, peerBytes / (1 << 20)));
}

void RatioTable::finish() const {
    if (!memoryLines_.empty()) {
        std::printf(
            "\nMemory one call takes beyond its input and output, at its highest, in frames of the input's "
            "size:\n");
        for (const std::string& line : memoryLines_)
            std::printf("%s\n", line.c_str());
    }
    if (!faultNotes_.empty()) {
        std::printf("\nFresh memory touched inside timed calls, which slows that side:\n");
        for (const std::string& note : faultNotes_)
            std::printf("%s\n", note.c_str());
    }
    std::printf("\n%d of %d comparisons meet their goals. Load average at the end: %.2f.\n", rows_ - missed_,
                rows_, loadAverage());
}

}  // namespace Tw::Bench
