// The further layers of one render: each checked out of the host, wrapped as an image (converted to the
// output's format where it differs), and checked in again when the render ends, also on the way out of a
// failure.
#pragma once

#include <memory>
#include <vector>

#include "host/ae/CheckoutRecord.h"
#include "host/ae/Host.h"

namespace Tw::Host::AE {

class LayerSet {
public:
    // `records` is the pre-render array of a smart render (null in a plain render); `requests` what the
    // chain reads, one slot each.
    LayerSet(Host& host, const CheckoutRecord* records, std::vector<Image::LayerRequest> requests);
    LayerSet(const LayerSet&) = delete;
    LayerSet& operator=(const LayerSet&) = delete;
    ~LayerSet();

    // Checks out every requested layer, for an effect that renders into `output`.
    void checkOutAll(const Param::Parameters& params, const ImageBuffer& output);
    // The images by ordinal from 1, null where a layer has no pixels.
    Image::LayerImages images() const { return images_; }

private:
    struct Checkout {
        PF_ParamDef definition{};
        A_long identifier = 0;
        bool checkedOut = false;
    };

    void checkOut(std::size_t slot, const Param::Parameters& params, const ImageBuffer& output);
    void checkInAll() noexcept;

    Host& host_;
    const CheckoutRecord* records_;
    std::vector<Image::LayerRequest> requests_;
    std::vector<Checkout> checkouts_;
    std::vector<std::unique_ptr<ImageBuffer>> owned_;
    std::vector<ImageBuffer*> images_;
};

}  // namespace Tw::Host::AE
