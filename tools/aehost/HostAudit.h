// What the simulated host found wrong in the way an effect used it: a callback called where a real host
// forbids it, a resource left behind, a world written out of bounds. The tests assert that the list is
// empty, so that a fault anywhere in the protocol fails the test that provoked it, and aehost lists it and
// fails the run. Thread-safe.
#pragma once

#include <mutex>
#include <string>
#include <vector>

namespace Tw::Tools::AeHost {

class HostAudit {
public:
    void fault(std::string what) {
        const std::lock_guard lock(mutex_);
        faults_.push_back(std::move(what));
    }
    std::vector<std::string> faults() const {
        const std::lock_guard lock(mutex_);
        return faults_;
    }

private:
    mutable std::mutex mutex_;
    std::vector<std::string> faults_;
};

}  // namespace Tw::Tools::AeHost
