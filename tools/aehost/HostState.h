// The inside of one simulated host: what the callbacks and suites read and write, and what the driver
// (SimulatedHost) sets up before a command and inspects after it.
//
// Callbacks that get an effect_ref find their command through it: effect_ref points at the CommandState of
// the command being run. Those that get none (the handle calls, the suites, iterate_generic) find their
// host through `currentHost`, a thread-local pointer set on the thread that sends the command and on every
// worker that iterate_generic starts. Several hosts may thus run commands on several threads at once.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "host/ae/sdk/AeSdk.h"
#include "tools/aehost/Frame.h"
#include "tools/aehost/HostAudit.h"
#include "tools/aehost/HostHandles.h"
#include "tools/aehost/HostSettings.h"
#include "tools/aehost/HostWorld.h"
#include "tools/aehost/ParameterStore.h"

namespace Tw::Tools::AeHost {

// One call of the pre-render's checkout_layer, with the host's answer.
struct LayerCheckout {
    PF_ParamIndex index = 0;
    A_long id = 0;
    PF_LRect request{};
    A_long time = 0;
    A_long timeStep = 0;
    A_u_long timeScale = 0;
    PF_LRect resultRect{};
    PF_LRect maxResultRect{};
};

// One call of checkout_param, with the time asked.
struct ParameterCheckout {
    PF_ParamIndex index = 0;
    A_long time = 0;
    A_long timeStep = 0;
    A_u_long timeScale = 0;
};

struct PixelFormatRegistration {
    A_u_long format = 0;
    int suiteVersion = 0;
};

struct ParamUIUpdate {
    PF_ParamIndex index = 0;
    PF_ParamDef definition{};
};

class HostState;

// A world the host made; releasing it checks that the effect kept to its pixels.
struct WorldRelease {
    HostState* host = nullptr;
    const char* role = "";
    void operator()(HostWorld* world) const;
};
using LentWorld = std::unique_ptr<HostWorld, WorldRelease>;

// One command being run: what effect_ref points at.
struct CommandState {
    static constexpr uint32_t kMagic = 0x54574145;  // tells a real effect_ref from a stray pointer

    CommandState(HostState& host, PF_Cmd command) : host(host), command(command) {}

    uint32_t magic = kMagic;
    HostState& host;
    PF_Cmd command;
    std::thread::id thread = std::this_thread::get_id();

    // Worlds lent through checkout_param for layer parameters, by their data.
    std::map<const void*, LentWorld> paramWorlds;
    int paramCheckouts = 0;
    int paramCheckins = 0;
    // Smart render: the layers' pixels by checkout id while checked out, and the output.
    std::map<A_long, LentWorld> layerPixels;
    LentWorld output;
    PF_LRect outputRect{};
};

class HostState {
public:
    explicit HostState(HostSettings hostSettings) : settings(hostSettings) {}
    HostState(const HostState&) = delete;
    HostState& operator=(const HostState&) = delete;

    // The host of the calling thread: set while a command runs on it, null elsewhere.
    static HostState* current();

    // First, so that they outlive every world and record below: guards what callbacks write from several
    // threads (worlds, suites, records), and knows the format of every live world by its data.
    mutable std::mutex mutex;

private:
    friend struct WorldRelease;
    std::map<const void*, PF_PixelFormat> worldFormats_;

public:
    HostSettings settings;
    HostAudit audit;
    HostHandles handles{audit};
    ParameterStore parameters{handles};
    Frame input;

    // The pixel format of the worlds the host hands over.
    PF_PixelFormat worldFormat() const;
    // A new world, known to the host until released; `role` names it in faults.
    LentWorld makeWorld(int32_t width, int32_t height, PF_PixelFormat format, int32_t originX,
                        int32_t originY, bool clear, const char* role);
    // A read-only world of the host's format holding the part `rect` of `layer` (none: transparent black).
    LentWorld lendLayer(const PF_LRect& rect, const Frame* layer, const char* role);
    // The frame a host parameter shows: the input for 0, a layer parameter's choice or default otherwise;
    // null for none.
    const Frame* layerFrame(PF_ParamIndex index) const;
    // The value of parameter `index` (one the effect added) as a command hands it over: After Effects gives
    // points in pixels of the layer as the command renders it, which is the input's size.
    PF_ParamDef handedValue(PF_ParamIndex index) const;
    // Takes the value the effect changed in such a command.
    void takeChangedValue(PF_ParamIndex index, const PF_ParamDef& changed);

    // The format of a live world, found by its data.
    std::optional<PF_PixelFormat> formatOf(const PF_EffectWorld* world) const;
    // Worlds the effect made through a suite or the utility callbacks, until it disposes of them.
    std::map<const void*, LentWorld> effectWorlds;

    // Counts one allocation; true when the settings refuse it.
    bool refuseAllocation();

    // Suites acquired and not yet released, by name and version.
    std::map<std::pair<std::string, int>, int> acquiredSuites;
    std::vector<PixelFormatRegistration> pixelFormats;
    std::vector<ParamUIUpdate> paramUIUpdates;
    std::vector<ParameterCheckout> parameterCheckouts;
    int registeredUIs = 0;
    std::atomic<int> progressCalls{0};
    std::atomic<int> abortCalls{0};
    std::atomic<int> iterateCalls{0};
    std::atomic<int> allocationCalls{0};
    // The pre-render's checkouts by id, which the smart render may turn into pixels.
    std::vector<LayerCheckout> layerCheckouts;

    // The command being run, or null between commands.
    CommandState* command = nullptr;
};

// Sets `currentHost` for the thread while it lives, and restores the previous one.
class CurrentHostScope {
public:
    explicit CurrentHostScope(HostState* host);
    ~CurrentHostScope();
    CurrentHostScope(const CurrentHostScope&) = delete;
    CurrentHostScope& operator=(const CurrentHostScope&) = delete;

private:
    HostState* previous_;
};

// The command an effect_ref stands for; null, with nothing recorded, for a pointer that isn't one.
CommandState* commandOf(PF_ProgPtr effectRef);

}  // namespace Tw::Tools::AeHost
