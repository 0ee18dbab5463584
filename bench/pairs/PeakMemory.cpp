#include "bench/pairs/PeakMemory.h"

#include <malloc.h>

#include <fstream>
#include <stdexcept>
#include <string>

namespace Tw::Bench {
namespace {

// A size from /proc/self/status in bytes: "VmRSS" now, "VmHWM" the most resident since the last reset.
double statusBytes(const std::string& field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(field + ":")) return std::stod(line.substr(field.size() + 1)) * 1024;
    }
    throw std::runtime_error("no " + field + " in /proc/self/status");
}

}  // namespace

double residentGrowthOfCall(const Side& side) {
    malloc_trim(0);
    // Resets the highest resident size to the present one.
    std::ofstream reset("/proc/self/clear_refs");
    reset << "5";
    reset.close();
    if (!reset) throw std::runtime_error("cannot reset the peak resident size through /proc/self/clear_refs");
    const double before = statusBytes("VmRSS");
    side();
    return statusBytes("VmHWM") - before;
}

}  // namespace Tw::Bench
