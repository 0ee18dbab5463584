// PF_Cmd_RENDER and PF_Cmd_SMART_RENDER: the host's worlds wrapped as images, the further layers checked
// out, and the effect's chain built over them and evaluated into the output world.
#include "host/ae/LayerSet.h"
#include "host/ae/RenderRegions.h"
#include "image/core/Exception.h"

namespace Tw::Host::AE {
namespace {

// The input's pixels go back to the host once the render is done with them, also on the way out of a
// failure, so that the host can reuse them before the command returns.
class InputCheckin {
public:
    InputCheckin(const PF_SmartRenderExtra* extra, PF_ProgPtr effect) : extra_(extra), effect_(effect) {}
    InputCheckin(const InputCheckin&) = delete;
    InputCheckin& operator=(const InputCheckin&) = delete;
    ~InputCheckin() {
        if (extra_) extra_->cb->checkin_layer_pixels(effect_, 0);
    }

private:
    const PF_SmartRenderExtra* extra_;
    PF_ProgPtr effect_;
};

}  // namespace

PF_Err Host::render() {
    auto* smart = command == PF_Cmd_SMART_RENDER ? static_cast<PF_SmartRenderExtra*>(extra) : nullptr;
    PF_EffectWorld* inputWorld = nullptr;
    const CheckoutRecord* records = nullptr;
    if (smart) {
        if (const PF_Err error = smart->cb->checkout_layer_pixels(inData->effect_ref, 0, &inputWorld))
            return error;
        records = static_cast<const CheckoutRecord*>(smart->input->pre_render_data);
    } else if (params && params[0]) {
        inputWorld = &params[0]->u.ld;
    }
    const InputCheckin inputCheckin(smart, inData->effect_ref);
    if (smart) {
        if (const PF_Err error = smart->cb->checkout_output(inData->effect_ref, &output)) return error;
    }

    ImageBuffer in = wrapWorld(inputWorld, records ? records[0].originX : 0, records ? records[0].originY : 0);
    ImageBuffer out = wrapWorld(output);
    const PixelRect limit =
        records ? PixelRect{records[0].left, records[0].top, records[0].right, records[0].bottom} : in.rect;
    // Kept for effects that want a scratch image the size of the input; none renders into it.
    ImageBuffer aux(this);
    aux.rect = aux.validRect = limit;
    const auto list = newParameters();
    defineParameters(*list);
    std::vector<Image::LayerRequest> requests;
    inputRect(*list, smart ? requestedRect(*this) : out.rect, kUnlimitedLayer, requests);
    LayerSet layers(*this, records, std::move(requests));
    outputFrame_ = &out;
    try {
        renderWithLayers(*list, in, out, aux, layers);
    } catch (const Interrupted&) {
        outputFrame_ = nullptr;
        return abortCode();
    } catch (...) {
        outputFrame_ = nullptr;
        throw;
    }
    outputFrame_ = nullptr;
    renderEnd();
    return PF_Err_NONE;
}

void Host::renderWithLayers(Param::Parameters& renderParams, ImageBuffer& in, ImageBuffer& out, ImageBuffer& aux,
                            LayerSet& layers) {
    layers.checkOutAll(renderParams, out);
    renderWithHooks(renderParams, in, out, aux, layers.images());
}

}  // namespace Tw::Host::AE
