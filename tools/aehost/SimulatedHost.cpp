#include "tools/aehost/SimulatedHost.h"

#include <algorithm>
#include <cstring>
#include <sstream>
#include <stdexcept>

#include "tools/aehost/CoreFoundationStandIn.h"
#include "tools/aehost/HostCallbacks.h"
#include "tools/aehost/ParameterModel.h"
#include "tools/common/ParameterLabels.h"
#include "tools/common/ParameterValues.h"
#include "tools/common/ToolError.h"
#include "tools/common/UserText.h"

namespace Tw::Tools::AeHost {
namespace {

// The time of every command: frame 24 of a 24 frames a second composition, in a time scale of 48.
constexpr A_long kCurrentTime = 48;
constexpr A_long kTimeStep = 2;
constexpr A_u_long kTimeScale = 48;

// The parameter array of a command that has one: the input layer first, then every parameter's current
// value, layers with worlds lent for the command.
class ParameterArray {
public:
    explicit ParameterArray(HostState& host) {
        const int count = host.parameters.count();
        definitions_.resize(static_cast<std::size_t>(count) + 1);
        for (PF_ParamIndex index = 0; index <= count; ++index) {
            PF_ParamDef& definition = definitions_[static_cast<std::size_t>(index)];
            if (index > 0) definition = host.handedValue(index);
            if (index > 0 && definition.param_type != PF_Param_LAYER) continue;
            definition.param_type = PF_Param_LAYER;
            const A_long fallback = definition.u.ld.dephault;
            definition.u.ld = PF_LayerDef{};
            if (const Frame* frame = host.layerFrame(index)) {
                worlds_.push_back(host.lendLayer({0, 0, frame->width, frame->height}, frame,
                                                 index == 0 ? "the input" : "a layer parameter's world"));
                definition.u.ld = worlds_.back()->world();
            }
            definition.u.ld.dephault = fallback;
        }
        for (PF_ParamDef& definition : definitions_)
            pointers_.push_back(&definition);
    }

    PF_ParamDef** pointers() { return pointers_.data(); }
    const PF_ParamDef& operator[](PF_ParamIndex index) const {
        return definitions_[static_cast<std::size_t>(index)];
    }
    PF_ParamIndex size() const { return static_cast<PF_ParamIndex>(definitions_.size()); }

private:
    std::vector<PF_ParamDef> definitions_;
    std::vector<PF_ParamDef*> pointers_;
    std::vector<LentWorld> worlds_;
};

// The pre-render data read as the effect's records: one per checkout id below 1000, since the ids from 1000
// on check out a layer's extent and have no record of their own.
std::vector<std::array<int32_t, 7>> recordsOf(const void* data, const std::vector<LayerCheckout>& checkouts) {
    A_long lastId = -1;
    for (const LayerCheckout& checkout : checkouts)
        if (checkout.id < 1000) lastId = std::max(lastId, checkout.id);
    std::vector<std::array<int32_t, 7>> records(data ? static_cast<std::size_t>(lastId + 1) : 0);
    if (!records.empty()) std::memcpy(records.data(), data, records.size() * sizeof(records[0]));
    return records;
}

}  // namespace

SimulatedHost::SimulatedHost(PF_FilterProc entry, HostSettings settings, std::string effectName)
    : state_(std::make_unique<HostState>(settings)), entry_(entry), effectName_(std::move(effectName)) {}

SimulatedHost::~SimulatedHost() {
    const CurrentHostScope scope(state_.get());
    dropPreRenderData();
}

PF_LRect SimulatedHost::wholeInput() const {
    return {0, 0, state_->input.width, state_->input.height};
}

PF_Err SimulatedHost::send(CommandState& command, PF_ParamDef** params, PF_LayerDef* output, void* extra,
                           bool clearOutData) {
    HostState& host = *state_;
    const HostSettings& settings = host.settings;
    const bool premiere = settings.application == Application::PremierePro;
    setMainBundle(premiere ? "com.adobe.AdobePremierePro" : "com.adobe.AfterEffects", settings.bundleVersion);
    utils_ = utilityCallbacks(settings.apiMajor >= 12);

    in_ = PF_InData{};
    in_.inter = interactCallbacks();
    in_.utils = &utils_;
    in_.effect_ref = reinterpret_cast<PF_ProgPtr>(&command);
    in_.quality = PF_Quality_HI;
    in_.version = {settings.apiMajor, settings.apiMinor};
    in_.serial_num = 1;
    in_.appl_id = premiere ? kTwPremiereProApplId : kTwAfterEffectsApplId;
    in_.num_params = host.parameters.count() + 1;
    in_.current_time = kCurrentTime;
    in_.time_step = kTimeStep;
    in_.total_time = 10 * kTimeScale;
    in_.local_time_step = kTimeStep;
    in_.time_scale = kTimeScale;
    in_.field = PF_Field_FRAME;
    in_.width = host.input.width;
    in_.height = host.input.height;
    in_.extent_hint = wholeInput();
    in_.downsample_x = settings.downsampleX;
    in_.downsample_y = settings.downsampleY;
    in_.pixel_aspect_ratio = {1, 1};
    in_.pica_basicP = settings.basicSuite ? const_cast<SPBasicSuite*>(&basicSuite()) : nullptr;
    if (clearOutData) out_ = PF_OutData{};

    const CurrentHostScope scope(&host);
    host.command = &command;
    const PF_Err result = entry_(command.command, &in_, &out_, params, output, extra);
    host.command = nullptr;
    checkAfter(command);
    return result;
}

void SimulatedHost::checkAfter(CommandState& command) {
    HostState& host = *state_;
    const std::string name = " after command " + std::to_string(command.command);
    if (command.paramCheckouts != command.paramCheckins) {
        host.audit.fault(std::to_string(command.paramCheckouts) + " parameter checkouts against " +
                         std::to_string(command.paramCheckins) + " checkins" + name);
    }
    if (!command.paramWorlds.empty())
        host.audit.fault("layer worlds of checkout_param not checked in" + name);
    command.paramWorlds.clear();
    for (const auto& [id, world] : command.layerPixels)
        host.audit.fault("the layer pixels of checkout id " + std::to_string(id) + " still checked out" +
                         name);
    command.layerPixels.clear();

    std::map<const void*, LentWorld> leftOver;
    std::map<std::pair<std::string, int>, int> acquired;
    {
        const std::lock_guard lock(host.mutex);
        leftOver.swap(host.effectWorlds);
        acquired.swap(host.acquiredSuites);
    }
    if (!leftOver.empty())
        host.audit.fault(std::to_string(leftOver.size()) + " worlds the effect made are left" + name);
    for (const auto& [suite, count] : acquired)
        host.audit.fault(suite.first + " version " + std::to_string(suite.second) + " still acquired" + name);
}

void SimulatedHost::dropPreRenderData() {
    if (preRendered_ && preRendered_->data && preRendered_->deleteData)
        preRendered_->deleteData(preRendered_->data);
    preRendered_.reset();
}

PF_Err SimulatedHost::globalSetup() {
    {
        const std::lock_guard lock(state_->mutex);
        state_->pixelFormats.clear();
    }
    CommandState command(*state_, PF_Cmd_GLOBAL_SETUP);
    const PF_Err error = send(command, nullptr, nullptr, nullptr);
    globalOutFlags_ = out_.out_flags;
    return error;
}

PF_Err SimulatedHost::paramsSetup() {
    state_->parameters.beginSetup();
    CommandState command(*state_, PF_Cmd_PARAMS_SETUP);
    return send(command, nullptr, nullptr, nullptr);
}

PF_Err SimulatedHost::sequenceCommand(PF_Cmd number) {
    CommandState command(*state_, number);
    const PF_Err error = send(command, nullptr, nullptr, nullptr);
    if (out_.sequence_data && !(globalOutFlags_ & PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING)) {
        state_->audit.fault("sequence data left after command " + std::to_string(number) +
                            " by an effect that never asks for it to be flattened");
    }
    return error;
}

PF_Err SimulatedHost::sequenceSetup() {
    return sequenceCommand(PF_Cmd_SEQUENCE_SETUP);
}

PF_Err SimulatedHost::sequenceSetdown() {
    return sequenceCommand(PF_Cmd_SEQUENCE_SETDOWN);
}

PF_Err SimulatedHost::saveAndReopen() {
    PF_Err first = PF_Err_NONE;
    const auto keep = [&first](PF_Err error) {
        if (!first) first = error;
    };
    // Every sub-command's arguments begin with the refcon.
    const auto call = [this, &keep](PF_FunctionSelector function, const PF_ArbitraryDef& text, auto fill) {
        PF_ArbParamsExtra extra{};
        extra.which_function = function;
        extra.id = text.id;
        extra.u.new_func_params.refconPV = text.refconPV;
        fill(extra.u);
        keep(arbitraryCallback(extra));
    };

    keep(sequenceCommand(PF_Cmd_SEQUENCE_FLATTEN));
    std::vector<std::pair<PF_ParamIndex, std::string>> saved;
    for (const PF_ParamIndex index : state_->parameters.textIndices()) {
        const PF_ArbitraryDef text = state_->parameters.value(index)->u.arb_d;
        A_u_long size = 0;
        call(PF_Arbitrary_FLAT_SIZE_FUNC, text, [&](auto& u) {
            u.flat_size_func_params.arbH = text.value;
            u.flat_size_func_params.flat_data_sizePLu = &size;
        });
        std::string bytes(size, '\0');
        call(PF_Arbitrary_FLATTEN_FUNC, text, [&](auto& u) {
            u.flatten_func_params.arbH = text.value;
            u.flatten_func_params.buf_sizeLu = size;
            u.flatten_func_params.flat_dataPV = bytes.data();
        });
        call(PF_Arbitrary_DISPOSE_FUNC, text, [&](auto& u) { u.dispose_func_params.arbH = text.value; });
        state_->parameters.replaceText(index, nullptr);
        saved.emplace_back(index, std::move(bytes));
    }
    keep(sequenceCommand(PF_Cmd_SEQUENCE_SETDOWN));

    for (const auto& [index, bytes] : saved) {
        const PF_ArbitraryDef text = state_->parameters.value(index)->u.arb_d;
        PF_Handle handle = nullptr;
        call(PF_Arbitrary_UNFLATTEN_FUNC, text, [&](auto& u) {
            u.unflatten_func_params.buf_sizeLu = static_cast<A_u_long>(bytes.size());
            u.unflatten_func_params.flat_dataPV = bytes.data();
            u.unflatten_func_params.arbPH = &handle;
        });
        if (!handle || state_->handles.bytes(handle) != bytes)
            state_->audit.fault("the text of parameter " + std::to_string(index) + " came back changed");
        state_->parameters.replaceText(index, handle);
    }
    keep(sequenceCommand(PF_Cmd_SEQUENCE_RESETUP));
    return first;
}

PreRenderOutcome SimulatedHost::smartPreRender(const PF_LRect& request) {
    const CurrentHostScope scope(state_.get());
    dropPreRenderData();
    {
        const std::lock_guard lock(state_->mutex);
        state_->layerCheckouts.clear();
    }
    PF_PreRenderInput input{};
    input.output_request.rect = request;
    input.output_request.field = PF_Field_FRAME;
    input.output_request.channel_mask = PF_ChannelMask_ARGB;
    input.bitdepth = static_cast<short>(state_->settings.depth);
    PF_PreRenderOutput output{};
    PF_PreRenderCallbacks callbacks = preRenderCallbacks();
    PF_PreRenderExtra extra{&input, &output, &callbacks};

    CommandState command(*state_, PF_Cmd_SMART_PRE_RENDER);
    PreRenderOutcome outcome;
    outcome.error = send(command, nullptr, nullptr, &extra);
    outcome.resultRect = output.result_rect;
    outcome.maxResultRect = output.max_result_rect;
    outcome.checkouts = state_->layerCheckouts;
    outcome.records = recordsOf(output.pre_render_data, outcome.checkouts);
    preRendered_ =
        PreRendered{request, output.result_rect, output.pre_render_data, output.delete_pre_render_data_func};
    return outcome;
}

RenderOutcome SimulatedHost::smartRender() {
    if (!preRendered_) throw std::logic_error("a smart render needs a pre-render first");
    PF_SmartRenderInput input{};
    input.output_request.rect = preRendered_->request;
    input.output_request.field = PF_Field_FRAME;
    input.output_request.channel_mask = PF_ChannelMask_ARGB;
    input.bitdepth = static_cast<short>(state_->settings.depth);
    input.pre_render_data = preRendered_->data;
    PF_SmartRenderCallbacks callbacks = smartRenderCallbacks();
    PF_SmartRenderExtra extra{&input, &callbacks};

    CommandState command(*state_, PF_Cmd_SMART_RENDER);
    command.outputRect = preRendered_->resultRect;
    RenderOutcome outcome;
    outcome.error = send(command, nullptr, nullptr, &extra);
    if (command.output) {
        outcome.output = command.output->contents();
        outcome.outputRect = command.outputRect;
    }
    const CurrentHostScope scope(state_.get());
    command.output.reset();
    dropPreRenderData();
    return outcome;
}

RenderOutcome SimulatedHost::renderSmart(const PF_LRect& request) {
    const PreRenderOutcome prepared = smartPreRender(request);
    if (prepared.error) {
        const CurrentHostScope scope(state_.get());
        dropPreRenderData();
        return RenderOutcome{prepared.error, {}, {}};
    }
    return smartRender();
}

RenderOutcome SimulatedHost::renderSmart() {
    return renderSmart(wholeInput());
}

RenderOutcome SimulatedHost::render() {
    HostState& host = *state_;
    const CurrentHostScope scope(&host);
    ParameterArray params(host);
    LentWorld output =
        host.makeWorld(host.input.width, host.input.height, host.worldFormat(), 0, 0, false, "the output");
    CommandState command(host, PF_Cmd_RENDER);
    RenderOutcome outcome;
    outcome.error = send(command, params.pointers(), &output->world(), nullptr);
    outcome.output = output->contents();
    outcome.outputRect = wholeInput();
    return outcome;
}

PF_Err SimulatedHost::arbitraryCallback(PF_ArbParamsExtra& extra) {
    CommandState command(*state_, PF_Cmd_ARBITRARY_CALLBACK);
    return send(command, nullptr, nullptr, &extra);
}

PF_Err SimulatedHost::userChangedParam(PF_ParamIndex index) {
    HostState& host = *state_;
    const CurrentHostScope scope(&host);
    ParameterArray params(host);
    PF_UserChangedParamExtra extra{index};
    CommandState command(host, PF_Cmd_USER_CHANGED_PARAM);
    const PF_Err error = send(command, params.pointers(), nullptr, &extra);
    for (PF_ParamIndex i = 1; i < params.size(); ++i)
        if (params[i].uu.change_flags & PF_ChangeFlag_CHANGED_VALUE) host.takeChangedValue(i, params[i]);
    return error;
}

PF_Err SimulatedHost::updateParamsUI() {
    HostState& host = *state_;
    const CurrentHostScope scope(&host);
    ParameterArray params(host);
    CommandState command(host, PF_Cmd_UPDATE_PARAMS_UI);
    const PF_Err error = send(command, params.pointers(), nullptr, nullptr);
    for (PF_ParamIndex i = 1; i < params.size(); ++i)
        if (params[i].uu.change_flags & PF_ChangeFlag_CHANGED_VALUE) host.takeChangedValue(i, params[i]);
    return error;
}

PF_Err SimulatedHost::command(PF_Cmd commandNumber, void* extra) {
    CommandState command(*state_, commandNumber);
    return send(command, nullptr, nullptr, extra, false);
}

PF_Err SimulatedHost::globalSetdown() {
    const PF_Err error = command(PF_Cmd_GLOBAL_SETDOWN);
    const std::size_t held = state_->handles.liveCount() - state_->parameters.ownedHandleCount();
    if (held > 0)
        state_->audit.fault("memory handles the effect took and never gave back: " + std::to_string(held));
    return error;
}

void SimulatedHost::setInput(Frame frame) {
    int depth = 0;
    ComponentOrder order{};
    describeFormat(state_->worldFormat(), depth, order);
    if (frame.depth != depth || frame.order != order)
        throw std::invalid_argument("the input must have the depth and order of the host's worlds");
    state_->input = std::move(frame);
}

void SimulatedHost::set(std::string_view label, std::string_view value, std::ostream* warnings) {
    Param::Parameters list;
    describeParameters(list);
    const int index = findParameter(list, label, effectName_);
    std::ostringstream unheard;
    setParameterFromText(list, index, value, warnings ? *warnings : unheard);
    storeValue(list, index, state_->parameters);
}

void SimulatedHost::setLayer(std::string_view label, std::optional<Frame> frame) {
    Param::Parameters list;
    describeParameters(list);
    const int index = findParameter(list, label, effectName_);
    if (list.records[index].kind != Param::ParamKind::Layer) {
        throw ToolError(ExitCode::UnknownName,
                        inQuotes(label) + " is not a layer parameter of " + inQuotes(effectName_));
    }
    parameters().setLayer(index + 1, std::move(frame));
}

void SimulatedHost::describeParameters(Param::Parameters& list) const {
    AeHost::describeParameters(state_->parameters, list);
}

std::vector<PixelFormatRegistration> SimulatedHost::pixelFormats() const {
    const std::lock_guard lock(state_->mutex);
    return state_->pixelFormats;
}

std::vector<ParamUIUpdate> SimulatedHost::paramUIUpdates() const {
    const std::lock_guard lock(state_->mutex);
    return state_->paramUIUpdates;
}

std::vector<ParameterCheckout> SimulatedHost::parameterCheckouts() const {
    const std::lock_guard lock(state_->mutex);
    return state_->parameterCheckouts;
}

std::size_t SimulatedHost::effectWorlds() const {
    const std::lock_guard lock(state_->mutex);
    return state_->effectWorlds.size();
}

}  // namespace Tw::Tools::AeHost
