#include "tools/twfx/InterruptSignal.h"

#include <csignal>

namespace Tw::Tools::Twfx {
namespace {

static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler may only touch lock-free atomics");

std::atomic<bool> interrupted{false};

void onInterrupt(int) {
    interrupted.store(true, std::memory_order_relaxed);
}

}  // namespace

const std::atomic<bool>& catchInterrupts() {
    struct sigaction action = {};
    action.sa_handler = &onInterrupt;
    sigemptyset(&action.sa_mask);
    // The handler is reset to the default once it has run, so the second Ctrl-C terminates.
    action.sa_flags = SA_RESETHAND;
    sigaction(SIGINT, &action, nullptr);
    return interrupted;
}

}  // namespace Tw::Tools::Twfx
