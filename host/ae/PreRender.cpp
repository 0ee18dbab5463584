// PF_Cmd_SMART_PRE_RENDER: the chain is built over rectangles alone to find what it needs of each layer,
// the layers are checked out, and their places are handed to the host as the pre-render array, the only
// thing that reaches the render.
#include <cstdlib>
#include <cstring>
#include <new>

#include "host/ae/RenderRegions.h"

namespace Tw::Host::AE {
namespace {

void freeCheckoutRecords(void* records) {
    std::free(records);
}

// Union of two rectangles, an empty one leaving the other.
PixelRect join(const PixelRect& a, const PixelRect& b) {
    if (a.isEmpty()) return b;
    if (b.isEmpty()) return a;
    return a.extend(b);
}

}  // namespace

PF_Err Host::smartPreRender() {
    auto& preRender = *static_cast<PF_PreRenderExtra*>(extra);
    const PF_InData& in = *inData;
    const auto list = newParameters();
    defineParameters(*list);

    PF_RenderRequest request = preRender.input->output_request;
    request.channel_mask = PF_ChannelMask_ARGB;
    request.preserve_rgb_of_zero_alpha = true;
    const PixelRect requested = toPixelRect(request.rect);
    std::vector<Image::LayerRequest> requests;
    PixelRect mainRect = inputRect(*list, requested, kUnlimitedLayer, requests);
    layerRequests(*list, requests);
    if (!usesInputRectForMain()) mainRect = kUnlimitedLayer;
    // A chain that reads none of its own layer, passing on a further one, still renders a frame of its own
    // layer's extent: the part asked for is checked out all the same, since the host sizes the result by it.
    if (mainRect.isEmpty()) mainRect = requested;

    const auto checkOut = [&](PF_ParamIndex index, A_long identifier, const PixelRect& rect, A_long time,
                              PF_CheckoutResult& result) {
        PF_RenderRequest layerRequest = request;
        layerRequest.rect = toHostRect(rect);
        result = PF_CheckoutResult{};
        return preRender.cb->checkout_layer(in.effect_ref, index, identifier, &layerRequest, time,
                                            in.time_step, in.time_scale, &result);
    };

    PF_CheckoutResult main;
    if (const PF_Err error = checkOut(0, 0, mainRect, in.current_time, main)) return error;
    checkouts.assign(1, CheckoutRecord{main.result_rect.left, main.result_rect.top, main.result_rect.right,
                                       main.result_rect.bottom, 0, 0, 0});
    const PixelRect mainExtent = toPixelRect(main.max_result_rect);

    for (std::size_t i = 0; i < requests.size(); ++i) {
        const Image::LayerRequest& layer = requests[i];
        const auto identifier = static_cast<A_long>(i + 1);
        const int32_t index = layerIndex(*list, layer.ordinal);
        const A_long time = in.current_time + layer.timeOffset * in.time_step;
        if (checkouts.size() <= i + 1) {
            // A layer of another size is centred on the effect's own: its whole extent tells how.
            PF_CheckoutResult whole;
            if (const PF_Err error = checkOut(index, 1000 + identifier, kUnlimitedLayer, time, whole))
                return error;
            const PixelRect extent = toPixelRect(whole.max_result_rect);
            const int32_t dx = mainExtent.width() / 2 - extent.width() / 2;
            const int32_t dy = mainExtent.height() / 2 - extent.height() / 2;
            const PixelRect placed = extent.translated(dx, dy);
            checkouts.push_back(
                {placed.left, placed.top, placed.right, placed.bottom, dx, dy, layer.timeOffset});
        }
        const CheckoutRecord& entry = checkouts[i + 1];
        PF_CheckoutResult result;
        if (const PF_Err error = checkOut(
                index, identifier, layer.rect.translated(-entry.originX, -entry.originY), time, result))
            return error;
    }

    const std::size_t bytes = checkouts.size() * sizeof(CheckoutRecord);
    void* records = std::malloc(bytes);
    if (!records) throw std::bad_alloc();
    std::memcpy(records, checkouts.data(), bytes);
    PF_PreRenderOutput& answer = *preRender.output;
    answer.pre_render_data = records;
    answer.delete_pre_render_data_func = &freeCheckoutRecords;

    const auto answerRect = [&](PF_LRect& held, const PF_LRect& produced) {
        const PixelRect mapped = outputRect(*list, toPixelRect(produced).intersect(requested));
        held = toHostRect(join(mapped, toPixelRect(held)).intersect(requested));
    };
    answerRect(answer.result_rect, main.result_rect);
    answerRect(answer.max_result_rect, main.max_result_rect);
    preRenderEnd();
    return PF_Err_NONE;
}

}  // namespace Tw::Host::AE
