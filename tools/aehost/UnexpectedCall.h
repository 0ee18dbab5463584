// Stand-ins for the callbacks and suite functions the simulated host doesn't implement, because no effect
// of the bundle should call them: each has the exact type of the slot it fills, records a fault naming its
// type, and answers an error.
#pragma once

#include <type_traits>

#include "host/ae/sdk/AeSdk.h"
#include "tools/aehost/HostState.h"

namespace Tw::Tools::AeHost {

inline void reportUnexpectedCall(const char* signature) {
    if (HostState* host = HostState::current())
        host->audit.fault(std::string("a call the host doesn't expect: ") + signature);
}

template <class R>
R unexpectedResult() {
    if constexpr (std::is_void_v<R>) {
        return;
    } else if constexpr (std::is_pointer_v<R>) {
        return nullptr;
    } else {
        return static_cast<R>(PF_Err_BAD_CALLBACK_PARAM);
    }
}

template <class Function>
struct UnexpectedCall;

template <class R, class... Arguments>
struct UnexpectedCall<R (*)(Arguments...)> {
    static R call(Arguments...) {
        reportUnexpectedCall(__PRETTY_FUNCTION__);
        return unexpectedResult<R>();
    }
};

template <class R, class... Arguments>
struct UnexpectedCall<R (*)(Arguments..., ...)> {
    static R call(Arguments..., ...) {
        reportUnexpectedCall(__PRETTY_FUNCTION__);
        return unexpectedResult<R>();
    }
};

// Fills a slot of type Function: `slot = unexpected<decltype(slot)>();`
template <class Function>
Function unexpected() {
    return &UnexpectedCall<Function>::call;
}

}  // namespace Tw::Tools::AeHost
