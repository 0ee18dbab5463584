#include "tools/aehost/HostState.h"

#include <algorithm>

namespace Tw::Tools::AeHost {
namespace {

thread_local HostState* currentHost = nullptr;

}  // namespace

HostState* HostState::current() {
    return currentHost;
}

CurrentHostScope::CurrentHostScope(HostState* host) : previous_(currentHost) {
    currentHost = host;
}

CurrentHostScope::~CurrentHostScope() {
    currentHost = previous_;
}

CommandState* commandOf(PF_ProgPtr effectRef) {
    auto* command = reinterpret_cast<CommandState*>(effectRef);
    return command && command->magic == CommandState::kMagic ? command : nullptr;
}

PF_PixelFormat HostState::worldFormat() const {
    const bool premiere = settings.application == Application::PremierePro;
    switch (settings.depth) {
        case 16:
            return premiere ? static_cast<PF_PixelFormat>(PrPixelFormat_BGRA_4444_16u)
                            : PF_PixelFormat_ARGB64;
        case 32:
            return premiere ? static_cast<PF_PixelFormat>(PrPixelFormat_BGRA_4444_32f)
                            : PF_PixelFormat_ARGB128;
        default:
            return premiere ? PF_PixelFormat_BGRA32 : PF_PixelFormat_ARGB32;
    }
}

void WorldRelease::operator()(HostWorld* world) const {
    {
        const std::lock_guard lock(host->mutex);
        host->worldFormats_.erase(world->world().data);
    }
    if (!world->intact())
        host->audit.fault(std::string("the effect wrote outside the pixels it owns in ") + role);
    delete world;
}

LentWorld HostState::makeWorld(int32_t width, int32_t height, PF_PixelFormat format, int32_t originX,
                               int32_t originY, bool clear, const char* role) {
    LentWorld world(new HostWorld(width, height, format, settings.negativeRowBytes, originX, originY, clear),
                    WorldRelease{this, role});
    const std::lock_guard lock(mutex);
    worldFormats_[world->world().data] = format;
    return world;
}

LentWorld HostState::lendLayer(const PF_LRect& rect, const Frame* layer, const char* role) {
    LentWorld world = makeWorld(std::max(rect.right - rect.left, 0), std::max(rect.bottom - rect.top, 0),
                                worldFormat(), rect.left, rect.top, true, role);
    if (layer) world->load(*layer);
    world->markReadOnly();
    return world;
}

const Frame* HostState::layerFrame(PF_ParamIndex index) const {
    if (index == 0) return &input;
    if (const std::optional<Frame>* choice = parameters.layerChoice(index))
        return *choice ? &**choice : nullptr;
    const PF_ParamDef* value = parameters.value(index);
    return value && value->param_type == PF_Param_LAYER && value->u.ld.dephault == PF_LayerDefault_MYSELF
               ? &input
               : nullptr;
}

PF_ParamDef HostState::handedValue(PF_ParamIndex index) const {
    return parameters.handed(index, input.width, input.height);
}

void HostState::takeChangedValue(PF_ParamIndex index, const PF_ParamDef& changed) {
    parameters.store(index, changed, input.width, input.height);
}

std::optional<PF_PixelFormat> HostState::formatOf(const PF_EffectWorld* world) const {
    if (!world) return std::nullopt;
    const std::lock_guard lock(mutex);
    const auto found = worldFormats_.find(world->data);
    return found == worldFormats_.end() ? std::nullopt : std::optional(found->second);
}

bool HostState::refuseAllocation() {
    const int call = ++allocationCalls;
    return settings.refuseAllocationsFrom > 0 && call >= settings.refuseAllocationsFrom;
}

}  // namespace Tw::Tools::AeHost
