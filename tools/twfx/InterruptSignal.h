// Ctrl-C as a flag a render polls. The handler only stores to a lock-free atomic, which is all a signal
// handler may safely do; the render sees the flag at its next check and unwinds through the same abort
// path a host's cancel takes, so images are released and no partial output file is left.
#pragma once

#include <atomic>

namespace Tw::Tools::Twfx {

// Installs the SIGINT handler and returns the flag it sets. A second Ctrl-C ends the process at once,
// for a run that is stuck where nothing polls the flag.
const std::atomic<bool>& catchInterrupts();

}  // namespace Tw::Tools::Twfx
