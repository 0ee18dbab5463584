// SimulatedHost: one effect of a bundle, loaded and driven the way After Effects (or Premiere Pro) drives
// it, one command at a time, with the callbacks and suites of HostCallbacks.h behind it.
//
// A caller sets the input frame and the parameters as a user would, sends commands and reads what the host
// saw: the flags and messages of PF_OutData, the parameter definitions, the pixel formats registered, the
// layer and parameter checkouts, the rendered pixels. After every command the host checks what a real host
// relies on (suites released, parameters checked in, worlds disposed of, layers checked in, no write
// outside a world) and records any breach in `faults()`.
//
// The other commands start from a cleared PF_OutData; `command` leaves it as the last command left it, so
// that a caller can see whether the effect touched it.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "host/ae/sdk/AeSdk.h"
#include "host/param/Parameters.h"
#include "tools/aehost/Frame.h"
#include "tools/aehost/HostSettings.h"
#include "tools/aehost/HostState.h"

namespace Tw::Tools::AeHost {

namespace Param = ::Tw::Host::Param;

struct PreRenderOutcome {
    PF_Err error = PF_Err_NONE;
    PF_LRect resultRect{};
    PF_LRect maxResultRect{};
    // The checkout_layer calls, in order.
    std::vector<LayerCheckout> checkouts;
    // The pre-render data as the flat array of 7 numbers a record (left, top, right, bottom, originX,
    // originY, timeOffset), one record per checkout id below 1000.
    std::vector<std::array<int32_t, 7>> records;
};

struct RenderOutcome {
    PF_Err error = PF_Err_NONE;
    // The output world after the render, top row first, and the part of the layer it covers.
    Frame output;
    PF_LRect outputRect{};
};

class SimulatedHost {
public:
    // Any effect main: an entry of a bundle, or a stand-in that tests the host itself. `effectName` names
    // the effect in messages about its parameters.
    explicit SimulatedHost(PF_FilterProc entry, HostSettings settings = {},
                           std::string effectName = "effect");
    ~SimulatedHost();
    SimulatedHost(const SimulatedHost&) = delete;
    SimulatedHost& operator=(const SimulatedHost&) = delete;

    // May be changed between commands.
    HostSettings& settings() { return state_->settings; }

    PF_Err globalSetup();
    PF_Err paramsSetup();
    // The effect applied to a layer (PF_Cmd_SEQUENCE_SETUP) and taken off it (PF_Cmd_SEQUENCE_SETDOWN).
    // Sequence data an effect leaves without asking the host to flatten it would be lost with the project,
    // so it is a fault.
    PF_Err sequenceSetup();
    PF_Err sequenceSetdown();
    // The project saved and opened again: PF_Cmd_SEQUENCE_FLATTEN, each text value flattened through the
    // effect's arbitrary-data callback and disposed of through it, PF_Cmd_SEQUENCE_SETDOWN; then each text
    // unflattened from the saved bytes, and PF_Cmd_SEQUENCE_RESETUP. A text that doesn't come back as it
    // was saved is a fault. Returns the first error an answer gave.
    PF_Err saveAndReopen();
    // Needs an input frame.
    PreRenderOutcome smartPreRender(const PF_LRect& request);
    // Renders what the last pre-render prepared; the host then disposes of the pre-render data.
    RenderOutcome smartRender();
    // Pre-render and render of `request`, or of the whole input.
    RenderOutcome renderSmart(const PF_LRect& request);
    RenderOutcome renderSmart();
    // PF_Cmd_RENDER of the whole input, with the parameter array.
    RenderOutcome render();
    PF_Err arbitraryCallback(PF_ArbParamsExtra& extra);
    // With the parameter array; values the effect changes (PF_ChangeFlag_CHANGED_VALUE) are kept.
    PF_Err userChangedParam(PF_ParamIndex index);
    PF_Err updateParamsUI();
    // Any command, with no parameter array, output or extra unless given.
    PF_Err command(PF_Cmd command, void* extra = nullptr);
    // PF_Cmd_GLOBAL_SETDOWN, as a host sends it at the end: after it the effect holds no memory of the
    // host's beyond the parameter values the host keeps, and a handle it still holds is a fault.
    PF_Err globalSetdown();

    // The frame of the effect's own layer, in the depth and component order of the host's worlds.
    void setInput(Frame frame);
    const Frame& input() const { return state_->input; }
    // A parameter the effect added, by the label a user reads and the value as a user types it, in the
    // tools' value syntax (tools/common/ParameterValues.h). Clamped values are told on `warnings`. Throws
    // ToolError for a label or a value that won't do.
    void set(std::string_view label, std::string_view value, std::ostream* warnings = nullptr);
    // A layer parameter's frame, of any size, or none.
    void setLayer(std::string_view label, std::optional<Frame> frame);
    // The parameters as the parameter model's records, one per host parameter after the input (list
    // index = host index - 1), with their current values.
    void describeParameters(Param::Parameters& list) const;
    ParameterStore& parameters() { return state_->parameters; }

    const PF_OutData& outData() const { return out_; }
    // The PF_InData of the last command, as the host sent it.
    const PF_InData& inData() const { return in_; }
    std::vector<PixelFormatRegistration> pixelFormats() const;
    std::vector<ParamUIUpdate> paramUIUpdates() const;
    std::vector<ParameterCheckout> parameterCheckouts() const;
    int progressCalls() const { return state_->progressCalls; }
    int abortCalls() const { return state_->abortCalls; }
    int iterateCalls() const { return state_->iterateCalls; }
    // Handle and world allocations asked of the host, refused ones included.
    int allocationCalls() const { return state_->allocationCalls; }
    HostHandles& handles() { return state_->handles; }
    // Worlds the effect made and hasn't disposed of; between commands always 0 unless a fault says so.
    std::size_t effectWorlds() const;
    std::vector<std::string> faults() const { return state_->audit.faults(); }

private:
    PF_Err send(CommandState& command, PF_ParamDef** params, PF_LayerDef* output, void* extra,
                bool clearOutData = true);
    void checkAfter(CommandState& command);
    PF_Err sequenceCommand(PF_Cmd command);
    void dropPreRenderData();
    PF_LRect wholeInput() const;

    // Shared with the callbacks; on the heap so that its address stays fixed.
    std::unique_ptr<HostState> state_;
    PF_FilterProc entry_;
    std::string effectName_;
    PF_UtilCallbacks utils_{};
    PF_InData in_{};
    PF_OutData out_{};
    // What the effect declared at PF_Cmd_GLOBAL_SETUP.
    PF_OutFlags globalOutFlags_ = 0;

    // What the last pre-render left for the render.
    struct PreRendered {
        PF_LRect request{};
        PF_LRect resultRect{};
        void* data = nullptr;
        PF_DeletePreRenderDataFunc deleteData = nullptr;
    };
    std::optional<PreRendered> preRendered_;
};

}  // namespace Tw::Tools::AeHost
