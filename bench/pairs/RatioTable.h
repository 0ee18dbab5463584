// The report of a run: a row per comparison as soon as it is measured, then the memory figures, notes on
// page faults inside timed calls, and how many comparisons met their goals.
#pragma once

#include <string>
#include <vector>

#include "bench/pairs/AlternatingRuns.h"
#include "bench/pairs/Comparison.h"

namespace Tw::Bench {

class RatioTable {
public:
    // Prints the heading.
    RatioTable();

    void addTimes(const Comparison& comparison, const PairedTimes& times);
    void addMemory(const Comparison& comparison, double oursBytes, double peerBytes);
    // Prints what follows the rows.
    void finish() const;

private:
    std::vector<std::string> memoryLines_;
    std::vector<std::string> faultNotes_;
    int rows_ = 0;
    int missed_ = 0;
};

}  // namespace Tw::Bench
