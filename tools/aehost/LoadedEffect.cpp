#include "tools/aehost/LoadedEffect.h"

#include <stdexcept>

#include "tools/common/ToolError.h"

namespace Tw::Tools::AeHost {
namespace {

// The host's name of an error an effect returns, for messages.
std::string errorName(PF_Err error) {
    switch (error) {
        case PF_Err_OUT_OF_MEMORY:
            return "PF_Err_OUT_OF_MEMORY";
        case PF_Err_INTERNAL_STRUCT_DAMAGED:
            return "PF_Err_INTERNAL_STRUCT_DAMAGED";
        case PF_Err_INVALID_INDEX:
            return "PF_Err_INVALID_INDEX";
        case PF_Err_UNRECOGNIZED_PARAM_TYPE:
            return "PF_Err_UNRECOGNIZED_PARAM_TYPE";
        case PF_Err_INVALID_CALLBACK:
            return "PF_Err_INVALID_CALLBACK";
        case PF_Err_BAD_CALLBACK_PARAM:
            return "PF_Err_BAD_CALLBACK_PARAM";
        case PF_Interrupt_CANCEL:
            return "PF_Interrupt_CANCEL";
        default:
            return "error " + std::to_string(error);
    }
}

}  // namespace

std::unique_ptr<BundleLibrary> loadBundle(const std::string& path) {
    try {
        return std::make_unique<BundleLibrary>(path);
    } catch (const std::runtime_error& error) {
        throw ToolError(ExitCode::BundleNotLoaded, "cannot load the bundle " + path + ": " + error.what());
    }
}

LoadedEffect::LoadedEffect(const std::string& bundlePath, std::string_view effectName, std::ostream& err)
    : err_(err), bundle_(loadBundle(bundlePath)), effect_(findEffect(effectName, effectsOf(*bundle_))) {}

SimulatedHost& LoadedEffect::setUp(const HostSettings& settings) {
    const std::string shown = effect_.displayName.empty() ? effect_.entryName : effect_.displayName;
    host_ = std::make_unique<SimulatedHost>(bundle_->entry(effect_.entryName), settings, shown);
    expectSuccess(host_->globalSetup(), "PF_Cmd_GLOBAL_SETUP");
    expectSuccess(host_->paramsSetup(), "PF_Cmd_PARAMS_SETUP");
    expectSuccess(host_->sequenceSetup(), "PF_Cmd_SEQUENCE_SETUP");
    return *host_;
}

void LoadedEffect::expectSuccess(PF_Err error, std::string_view command) const {
    if (error == PF_Err_NONE) return;
    listFaults();
    std::string message =
        effect_.entryName + " answered " + std::string(command) + " with " + errorName(error);
    if (const char* shown = host_->outData().return_msg; shown[0] != '\0')
        message += ": " + std::string(shown);
    throw ToolError(ExitCode::RenderFailed, message);
}

void LoadedEffect::listFaults() const {
    for (const std::string& fault : host_->faults())
        err_ << "aehost: protocol fault: " << fault << "\n";
}

void LoadedEffect::reportFaults() const {
    expectSuccess(host_->sequenceSetdown(), "PF_Cmd_SEQUENCE_SETDOWN");
    expectSuccess(host_->globalSetdown(), "PF_Cmd_GLOBAL_SETDOWN");
    listFaults();
    if (const std::size_t count = host_->faults().size()) {
        throw ToolError(ExitCode::ProtocolFault, effect_.entryName + " broke the host's protocol " +
                                                     std::to_string(count) +
                                                     (count == 1 ? " time" : " times"));
    }
}

}  // namespace Tw::Tools::AeHost
