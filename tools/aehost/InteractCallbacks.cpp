// PF_InteractCallbacks of the simulated host: parameter checkout and checkin (counted; they must balance
// by the end of each command), add_param during PF_Cmd_PARAMS_SETUP, and abort and progress, which may
// cancel at a chosen call. Like a real host it allows these only on the thread that sent the command,
// never on the workers of iterate_generic.
#include <string>

#include "tools/aehost/HostCallbacks.h"
#include "tools/aehost/HostState.h"
#include "tools/aehost/UnexpectedCall.h"

namespace Tw::Tools::AeHost {
namespace {

// The command of an interaction call made where a real host allows it; null otherwise.
CommandState* interactionOf(PF_ProgPtr effectRef, const char* call) {
    CommandState* command = commandOf(effectRef);
    if (!command) {
        if (HostState* host = HostState::current())
            host->audit.fault(std::string(call) + " with a bad effect_ref");
        return nullptr;
    }
    if (std::this_thread::get_id() != command->thread)
        command->host.audit.fault(std::string(call) + " from a thread other than the command's");
    return command;
}

PF_Err checkoutParam(PF_ProgPtr effectRef, PF_ParamIndex index, A_long time, A_long timeStep,
                     A_u_long timeScale, PF_ParamDef* param) {
    CommandState* command = interactionOf(effectRef, "checkout_param");
    if (!command || !param) return PF_Err_BAD_CALLBACK_PARAM;
    HostState& host = command->host;
    *param = PF_ParamDef{};
    if (index != 0 && !host.parameters.value(index)) {
        host.audit.fault("checkout_param of parameter " + std::to_string(index) + ", which doesn't exist");
        return PF_Err_INVALID_INDEX;
    }
    ++command->paramCheckouts;
    {
        const std::lock_guard lock(host.mutex);
        host.parameterCheckouts.push_back({index, time, timeStep, timeScale});
    }
    if (index != 0) *param = host.handedValue(index);
    if (index != 0 && param->param_type != PF_Param_LAYER) return PF_Err_NONE;

    // A layer comes with a world of the whole layer; a layer parameter set to none has one without pixels.
    param->param_type = PF_Param_LAYER;
    const A_long fallback = param->u.ld.dephault;
    param->u.ld = PF_LayerDef{};
    param->u.ld.dephault = fallback;
    if (const Frame* frame = host.layerFrame(index)) {
        LentWorld world =
            host.lendLayer({0, 0, frame->width, frame->height}, frame, "a layer lent by checkout_param");
        param->u.ld = world->world();
        param->u.ld.dephault = fallback;
        command->paramWorlds.emplace(world->world().data, std::move(world));
    }
    return PF_Err_NONE;
}

PF_Err checkinParam(PF_ProgPtr effectRef, PF_ParamDef* param) {
    CommandState* command = interactionOf(effectRef, "checkin_param");
    if (!command || !param) return PF_Err_BAD_CALLBACK_PARAM;
    ++command->paramCheckins;
    if (param->param_type == PF_Param_LAYER && param->u.ld.data) {
        if (command->paramWorlds.erase(param->u.ld.data) == 0)
            command->host.audit.fault("checkin_param of a layer world the host never lent");
    }
    return PF_Err_NONE;
}

PF_Err addParam(PF_ProgPtr effectRef, PF_ParamIndex index, PF_ParamDefPtr definition) {
    CommandState* command = interactionOf(effectRef, "add_param");
    if (!command || !definition) return PF_Err_BAD_CALLBACK_PARAM;
    if (command->command != PF_Cmd_PARAMS_SETUP) {
        command->host.audit.fault("add_param outside PF_Cmd_PARAMS_SETUP");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    const PF_Err error = command->host.parameters.add(index, *definition);
    if (error) command->host.audit.fault("add_param refused: index " + std::to_string(index));
    return error;
}

// Whether the Nth call of a kind cancels, N counted from 1.
bool cancels(int call, int cancelFrom) {
    return cancelFrom > 0 && call >= cancelFrom;
}

PF_Err abortCheck(PF_ProgPtr effectRef) {
    CommandState* command = interactionOf(effectRef, "abort");
    if (!command) return PF_Err_BAD_CALLBACK_PARAM;
    HostState& host = command->host;
    return cancels(++host.abortCalls, host.settings.cancelAtAbortCall) ? PF_Interrupt_CANCEL : PF_Err_NONE;
}

PF_Err progress(PF_ProgPtr effectRef, A_long current, A_long total) {
    CommandState* command = interactionOf(effectRef, "progress");
    if (!command) return PF_Err_BAD_CALLBACK_PARAM;
    HostState& host = command->host;
    if (total <= 0 || current < 0 || current > total)
        host.audit.fault("progress of " + std::to_string(current) + " out of " + std::to_string(total));
    return cancels(++host.progressCalls, host.settings.cancelAtProgressCall) ? PF_Interrupt_CANCEL
                                                                             : PF_Err_NONE;
}

PF_Err registerUI(PF_ProgPtr effectRef, PF_CustomUIInfo* info) {
    CommandState* command = interactionOf(effectRef, "register_ui");
    if (!command || !info) return PF_Err_BAD_CALLBACK_PARAM;
    ++command->host.registeredUIs;
    return PF_Err_NONE;
}

}  // namespace

PF_InteractCallbacks interactCallbacks() {
    PF_InteractCallbacks inter{};
    inter.checkout_param = &checkoutParam;
    inter.checkin_param = &checkinParam;
    inter.add_param = &addParam;
    inter.abort = &abortCheck;
    inter.progress = &progress;
    inter.register_ui = &registerUI;
    inter.checkout_layer_audio = unexpected<decltype(inter.checkout_layer_audio)>();
    inter.checkin_layer_audio = unexpected<decltype(inter.checkin_layer_audio)>();
    inter.get_audio_data = unexpected<decltype(inter.get_audio_data)>();
    return inter;
}

}  // namespace Tw::Tools::AeHost
