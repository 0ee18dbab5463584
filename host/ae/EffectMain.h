// The body of every exported entry point: the effect is built on the stack for the one command, bound to
// the host's structures, dispatched and destroyed. Nothing is thrown past it.
#pragma once

#include "host/ae/Host.h"

namespace Tw::Host::AE {

// Version 4.0.10, released, build 1, as every effect of the bundle reports it.
inline constexpr A_long kEffectVersion = static_cast<A_long>(twPackVersion(4, 0, 10, PF_Stage_RELEASE, 1));

// An effect's table of disk identifiers for its parameters (`diskParameterIds`), or null to number them in
// order.
template <class Effect>
const int32_t* parameterIdsOf() {
    if constexpr (requires { Effect::diskParameterIds; }) {
        return Effect::diskParameterIds;
    } else {
        return nullptr;
    }
}

template <class Effect>
PF_Err runEffectCommand(PF_Cmd command, PF_InData* in, PF_OutData* out, PF_ParamDef** params,
                        PF_LayerDef* output, void* extra) noexcept {
    if (!in || !out) return PF_Err_BAD_CALLBACK_PARAM;
    PF_Err result = PF_Err_INTERNAL_STRUCT_DAMAGED;
    try {
        Effect effect;
        effect.bind(command, in, out, params, output, extra, parameterIdsOf<Effect>());
        result = effect.dispatch();
    } catch (...) {
    }
    // Whatever setup did, the host must read the right version and flags.
    if (command == PF_Cmd_GLOBAL_SETUP) {
        out->my_version = kEffectVersion;
        if (Effect::pixelIndependent) out->out_flags |= PF_OutFlag_PIX_INDEPENDENT;
        out->out_flags2 |= PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS;
    }
    return result;
}

}  // namespace Tw::Host::AE
