#include "tools/twfx/ProgressBar.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace Tw::Tools::Twfx {
namespace {

constexpr int kBarWidth = 30;

}  // namespace

ProgressBar::ProgressBar(std::ostream& stream, bool enabled, std::chrono::milliseconds interval)
    : stream_(stream), enabled_(enabled), interval_(interval) {}

void ProgressBar::show(double fraction, std::string_view label) {
    if (!enabled_) return;
    fraction = std::clamp(fraction, 0.0, 1.0);
    const auto now = std::chrono::steady_clock::now();
    if (drawn_ && fraction < 1.0 && now - lastDrawing_ < interval_) return;
    const int filled = static_cast<int>(fraction * kBarWidth);
    const int percent = static_cast<int>(std::floor(fraction * 100));
    // "\r" returns to the start of the line, "\033[K" clears what a longer label left behind.
    stream_ << "\r[" << std::string(filled, '#') << std::string(kBarWidth - filled, ' ') << "] "
            << std::string(percent < 10    ? 2
                           : percent < 100 ? 1
                                           : 0,
                           ' ')
            << percent << "% " << label << "\033[K" << std::flush;
    drawn_ = true;
    lastDrawing_ = now;
}

void ProgressBar::finish() {
    if (!drawn_) return;
    stream_ << "\n" << std::flush;
    drawn_ = false;
}

}  // namespace Tw::Tools::Twfx
