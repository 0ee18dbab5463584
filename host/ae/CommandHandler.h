// Handlers: objects that may look at a command before and after the adapter runs it, decide which
// parameters the host sees, and give custom controls their size. No effect registers one today; the
// dispatcher still walks the list, so that one can be added without touching the command path.
#pragma once

#include <cstdint>
#include <memory>

#include "host/ae/sdk/AeSdk.h"
#include "host/param/ParamRecord.h"

namespace Tw::Host::AE {

class Host;

// What a handler may leave behind between its look at a command and the adapter's own work; the
// dispatcher deletes it after each phase.
class HandlerScratch {
public:
    virtual ~HandlerScratch() = default;
};

using ScratchHolder = std::unique_ptr<HandlerScratch>;

class CommandHandler {
public:
    virtual ~CommandHandler() = default;
    // True ends the walk and, before a command, skips the command.
    virtual bool preCommand(Host& host, PF_Cmd command, ScratchHolder& scratch) = 0;
    virtual bool postCommand(Host& host, PF_Cmd command, ScratchHolder& scratch) = 0;
    virtual bool wantsCustomUI(Host& host, PF_CustomUIInfo& info) = 0;
    virtual bool acceptParameter(Host& host, const Param::ParamRecord& record, PF_ParamDef& definition) = 0;
    virtual bool customParameterSize(Host& host, const Param::ParamRecord& record, int32_t& width,
                                     int32_t& height) = 0;
};

}  // namespace Tw::Host::AE
