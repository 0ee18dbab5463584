// A progress bar on one terminal line, redrawn in place. Drawing is throttled, since a render reports
// progress far more often than a person can read it and every redraw costs a write to the terminal.
#pragma once

#include <chrono>
#include <ostream>
#include <string_view>

namespace Tw::Tools::Twfx {

class ProgressBar {
public:
    // A disabled bar draws nothing, for output that is not a terminal.
    ProgressBar(std::ostream& stream, bool enabled,
                std::chrono::milliseconds interval = std::chrono::milliseconds(100));
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ~ProgressBar() { finish(); }

    // Draws `fraction` (0 to 1) and `label`, unless the last drawing is more recent than the interval.
    // The first drawing and a full bar are never held back.
    void show(double fraction, std::string_view label);
    // Ends the bar's line, so that what follows starts on a line of its own.
    void finish();

private:
    std::ostream& stream_;
    bool enabled_;
    std::chrono::milliseconds interval_;
    bool drawn_ = false;
    std::chrono::steady_clock::time_point lastDrawing_;
};

}  // namespace Tw::Tools::Twfx
