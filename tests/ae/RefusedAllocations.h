// Makes the bundle's own allocations fail, for the one failure a host can't provoke through its callbacks:
// an effect running out of memory in PF_Cmd_GLOBAL_SETUP. The test program replaces the global operator
// new, and the bundle's calls resolve to it; while a RefusedAllocations lives, a call made from the
// bundle's code on this thread throws std::bad_alloc. The host's own allocations, in its callbacks, go on.
#pragma once

namespace Tw::Tools::AeHost {

class RefusedAllocations {
public:
    RefusedAllocations();
    ~RefusedAllocations();
    RefusedAllocations(const RefusedAllocations&) = delete;
    RefusedAllocations& operator=(const RefusedAllocations&) = delete;

    // Allocations refused on this thread so far.
    int refused() const;
};

}  // namespace Tw::Tools::AeHost
