#include "host/ae/LayerSet.h"

#include <algorithm>

namespace Tw::Host::AE {

LayerSet::LayerSet(Host& host, const CheckoutRecord* records, std::vector<Image::LayerRequest> requests)
    : host_(host), records_(records), requests_(std::move(requests)), checkouts_(requests_.size()) {}

LayerSet::~LayerSet() {
    images_.clear();
    owned_.clear();
    checkInAll();
}

void LayerSet::checkOutAll(const Param::Parameters& params, const ImageBuffer& output) {
    for (std::size_t slot = 0; slot < requests_.size(); ++slot) checkOut(slot, params, output);
}

void LayerSet::checkOut(std::size_t slot, const Param::Parameters& params, const ImageBuffer& output) {
    const Image::LayerRequest& request = requests_[slot];
    const PF_InData& in = *host_.inData;
    Checkout& checkout = checkouts_[slot];
    checkout.identifier = static_cast<A_long>(slot + 1);
    const int32_t index = host_.layerIndex(params, request.ordinal);
    PF_EffectWorld* world = nullptr;
    PF_Err error = PF_Err_NONE;
    if (records_) {
        auto* extra = static_cast<PF_SmartRenderExtra*>(host_.extra);
        error = extra->cb->checkout_layer_pixels(in.effect_ref, checkout.identifier, &world);
    } else {
        const A_long time = request.timeOffset * in.time_step + in.current_time;
        error = in.inter.checkout_param(in.effect_ref, index, time, in.time_step, in.time_scale,
                                        &checkout.definition);
        world = &checkout.definition.u.ld;
    }
    checkout.checkedOut = error == PF_Err_NONE;
    if (error) throw Host::Error{error};

    const CheckoutRecord* record = records_ ? &records_[slot + 1] : nullptr;
    auto image = std::make_unique<ImageBuffer>(
        host_.wrapWorld(world, record ? record->originX : 0, record ? record->originY : 0));
    if (image->hasStorage() && image->pixelFormat() != output.pixelFormat() && !host_.layersKeepFormat()) {
        auto converted = std::make_unique<ImageBuffer>(&host_);
        converted->allocate(image->rect, output.pixelFormat());
        converted->copyFrom(*image);
        converted->validRect = image->validRect;
        image = std::move(converted);
    }
    if (record)
        image->validRect =
            PixelRect{record->left, record->top, record->right, record->bottom}.intersect(image->rect);
    images_.resize(std::max<std::size_t>(images_.size(), static_cast<std::size_t>(request.ordinal)));
    images_[static_cast<std::size_t>(request.ordinal) - 1] = image->hasStorage() ? image.get() : nullptr;
    owned_.push_back(std::move(image));
}

void LayerSet::checkInAll() noexcept {
    const PF_InData& in = *host_.inData;
    for (Checkout& checkout : checkouts_) {
        if (!checkout.checkedOut) continue;
        if (records_) {
            static_cast<PF_SmartRenderExtra*>(host_.extra)->cb->checkin_layer_pixels(in.effect_ref,
                                                                                      checkout.identifier);
        } else {
            in.inter.checkin_param(in.effect_ref, &checkout.definition);
        }
        checkout.checkedOut = false;
    }
}

}  // namespace Tw::Host::AE
