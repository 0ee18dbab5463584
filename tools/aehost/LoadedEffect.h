// One effect of a bundle, loaded and set up in a simulated host the way a host first meets it: the bundle
// opened and the effect found by the name a user gives, then PF_Cmd_GLOBAL_SETUP, PF_Cmd_PARAMS_SETUP and
// PF_Cmd_SEQUENCE_SETUP sent. What the commands of aehost share, with the way they report what went wrong.
#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <string_view>

#include "tools/aehost/BundleEffects.h"
#include "tools/aehost/BundleLibrary.h"
#include "tools/aehost/SimulatedHost.h"

namespace Tw::Tools::AeHost {

// Throws ToolError with ExitCode::BundleNotLoaded when the bundle can't be loaded.
std::unique_ptr<BundleLibrary> loadBundle(const std::string& path);

class LoadedEffect {
public:
    // Throws ToolError when the bundle can't be loaded or the name fits no effect or several. Protocol
    // faults are listed on `err`.
    LoadedEffect(const std::string& bundlePath, std::string_view effectName, std::ostream& err);

    // A host with `settings` that has sent the setup commands; throws ToolError when one failed.
    SimulatedHost& setUp(const HostSettings& settings);

    const BundleEffect& effect() const { return effect_; }

    // Throws ToolError with ExitCode::RenderFailed when the effect answered `command` with an error,
    // with the message it left for the user, after listing the faults the host saw.
    void expectSuccess(PF_Err error, std::string_view command) const;
    // Ends the session with PF_Cmd_SEQUENCE_SETDOWN and PF_Cmd_GLOBAL_SETDOWN and lists the protocol faults
    // the host saw; throws ToolError with ExitCode::ProtocolFault if there were any.
    void reportFaults() const;

private:
    void listFaults() const;

    std::ostream& err_;
    std::unique_ptr<BundleLibrary> bundle_;
    BundleEffect effect_;
    std::unique_ptr<SimulatedHost> host_;
};

}  // namespace Tw::Tools::AeHost
