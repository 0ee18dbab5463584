// The callbacks of PF_Cmd_SMART_PRE_RENDER and PF_Cmd_SMART_RENDER.
//
// checkout_layer answers in the layer's own coordinates: result_rect is the request cut to the layer,
// max_result_rect the whole layer, and a layer parameter set to none has empty rectangles. At the render,
// checkout_layer_pixels lends a read-only world covering the result_rect of that checkout id (origin_x and
// origin_y at its top left, in layer coordinates), or null pixels for an empty one; every checkout must be
// checked in before the render returns. checkout_output lends the output world, which covers the
// result_rect the effect answered at pre-render.
#include <algorithm>
#include <string>

#include "tools/aehost/HostCallbacks.h"
#include "tools/aehost/HostState.h"

namespace Tw::Tools::AeHost {
namespace {

CommandState* commandFor(PF_ProgPtr effectRef, PF_Cmd expected, const char* call) {
    CommandState* command = commandOf(effectRef);
    if (!command) {
        if (HostState* host = HostState::current())
            host->audit.fault(std::string(call) + " with a bad effect_ref");
        return nullptr;
    }
    if (command->command != expected) {
        command->host.audit.fault(std::string(call) + " during another command");
        return nullptr;
    }
    if (std::this_thread::get_id() != command->thread)
        command->host.audit.fault(std::string(call) + " from a thread other than the command's");
    return command;
}

PF_LRect intersection(const PF_LRect& a, const PF_LRect& b) {
    const PF_LRect cut{std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                       std::min(a.bottom, b.bottom)};
    return cut.left < cut.right && cut.top < cut.bottom ? cut : PF_LRect{0, 0, 0, 0};
}

bool isEmpty(const PF_LRect& rect) {
    return rect.right <= rect.left || rect.bottom <= rect.top;
}

PF_Err checkoutLayer(PF_ProgPtr effectRef, PF_ParamIndex index, A_long id, const PF_RenderRequest* request,
                     A_long time, A_long timeStep, A_u_long timeScale, PF_CheckoutResult* result) {
    CommandState* command = commandFor(effectRef, PF_Cmd_SMART_PRE_RENDER, "checkout_layer");
    if (!command || !request || !result) return PF_Err_BAD_CALLBACK_PARAM;
    HostState& host = command->host;
    const PF_ParamDef* value = index == 0 ? nullptr : host.parameters.value(index);
    if (index != 0 && (!value || value->param_type != PF_Param_LAYER)) {
        host.audit.fault("checkout_layer of parameter " + std::to_string(index) + ", which is no layer");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    const Frame* frame = host.layerFrame(index);
    const PF_LRect bounds = frame ? PF_LRect{0, 0, frame->width, frame->height} : PF_LRect{0, 0, 0, 0};
    *result = PF_CheckoutResult{};
    result->result_rect = intersection(request->rect, bounds);
    result->max_result_rect = bounds;
    result->par = {1, 1};
    result->ref_width = bounds.right;
    result->ref_height = bounds.bottom;

    const std::lock_guard lock(host.mutex);
    if (std::any_of(host.layerCheckouts.begin(), host.layerCheckouts.end(),
                    [&](const LayerCheckout& earlier) { return earlier.id == id; }))
        host.audit.fault("checkout_layer with id " + std::to_string(id) + " twice");
    host.layerCheckouts.push_back(
        {index, id, request->rect, time, timeStep, timeScale, result->result_rect, result->max_result_rect});
    return PF_Err_NONE;
}

PF_Err guidMixIn(PF_ProgPtr effectRef, A_u_long /*size*/, const void* /*buffer*/) {
    return commandFor(effectRef, PF_Cmd_SMART_PRE_RENDER, "GuidMixInPtr") ? PF_Err_NONE
                                                                          : PF_Err_BAD_CALLBACK_PARAM;
}

PF_Err checkoutLayerPixels(PF_ProgPtr effectRef, A_long id, PF_EffectWorld** pixels) {
    CommandState* command = commandFor(effectRef, PF_Cmd_SMART_RENDER, "checkout_layer_pixels");
    if (!command || !pixels) return PF_Err_BAD_CALLBACK_PARAM;
    HostState& host = command->host;
    const auto checkout = std::find_if(host.layerCheckouts.begin(), host.layerCheckouts.end(),
                                       [&](const LayerCheckout& made) { return made.id == id; });
    if (checkout == host.layerCheckouts.end()) {
        host.audit.fault("checkout_layer_pixels of id " + std::to_string(id) +
                         ", never checked out at pre-render");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    auto lent = command->layerPixels.find(id);
    if (lent == command->layerPixels.end()) {
        const Frame* frame = host.layerFrame(checkout->index);
        LentWorld world = frame && !isEmpty(checkout->resultRect)
                              ? host.lendLayer(checkout->resultRect, frame, "a layer's checked-out pixels")
                              : LentWorld(nullptr, WorldRelease{&host, ""});
        lent = command->layerPixels.emplace(id, std::move(world)).first;
    }
    *pixels = lent->second ? &lent->second->world() : nullptr;
    return PF_Err_NONE;
}

PF_Err checkinLayerPixels(PF_ProgPtr effectRef, A_long id) {
    CommandState* command = commandFor(effectRef, PF_Cmd_SMART_RENDER, "checkin_layer_pixels");
    if (!command) return PF_Err_BAD_CALLBACK_PARAM;
    if (command->layerPixels.erase(id) == 0) {
        command->host.audit.fault("checkin_layer_pixels of id " + std::to_string(id) +
                                  ", which isn't checked out");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    return PF_Err_NONE;
}

PF_Err checkoutOutput(PF_ProgPtr effectRef, PF_EffectWorld** output) {
    CommandState* command = commandFor(effectRef, PF_Cmd_SMART_RENDER, "checkout_output");
    if (!command || !output) return PF_Err_BAD_CALLBACK_PARAM;
    HostState& host = command->host;
    if (!command->output) {
        const PF_LRect& rect = command->outputRect;
        command->output =
            host.makeWorld(std::max(rect.right - rect.left, 0), std::max(rect.bottom - rect.top, 0),
                           host.worldFormat(), rect.left, rect.top, false, "the output");
    }
    *output = &command->output->world();
    return PF_Err_NONE;
}

}  // namespace

PF_PreRenderCallbacks preRenderCallbacks() {
    return {&checkoutLayer, &guidMixIn};
}

PF_SmartRenderCallbacks smartRenderCallbacks() {
    return {&checkoutLayerPixels, &checkinLayerPixels, &checkoutOutput};
}

}  // namespace Tw::Tools::AeHost
