// The host's worlds as images: their pixel format, their rectangles, and the direction of their rows.
#include <optional>
#include <stdexcept>

#include "host/ae/Host.h"
#include "host/ae/HostIndex.h"

namespace Tw::Host::AE {

Image::PixelFormat Host::formatOf(const PF_EffectWorld& world) const {
    // Premiere Pro knows its own formats best; the world suite, where there is one, has the last word.
    std::optional<Image::PixelFormat> premiereFormat;
    if (isPremiere() && suites.pixelFormat) {
        PrPixelFormat format{};
        if (const PF_Err error = suites.pixelFormat->GetPixelFormat(const_cast<PF_EffectWorld*>(&world), &format))
            throw Error{error};
        premiereFormat = static_cast<Image::PixelFormat>(format);
    }
    if (suites.world) {
        PF_PixelFormat format = 0;
        if (const PF_Err error = suites.world->PF_GetPixelFormat(&world, &format)) throw Error{error};
        return static_cast<Image::PixelFormat>(format);
    }
    if (premiereFormat) return *premiereFormat;
    return world.world_flags & PF_WorldFlag_DEEP ? Image::fourCC("ae16") : Image::fourCC("argb");
}

// A host may hand over worlds whose rows run backwards in memory. When the output world does, every world
// of the render is walked the other way round, so that the effect sees the rows in memory order, and point
// parameters are flipped to match.
ImageBuffer Host::wrapWorld(const PF_EffectWorld* world, int32_t originX, int32_t originY) {
    if (!world || !world->data) {
        ImageBuffer none(this);
        none.rect = none.validRect = PixelRect::empty();
        return none;
    }
    const bool reversed = output && output->rowbytes < 0;
    auto* data = reinterpret_cast<std::byte*>(world->data);
    const std::ptrdiff_t rowbytes = world->rowbytes;
    Image::FrameRecord frame;
    frame.data = rowbytes >= 0 ? data : data + rowbytes * (world->height - 1);
    frame.rowbytes = static_cast<int32_t>(reversed ? -rowbytes : rowbytes);
    frame.width = world->width;
    frame.height = world->height;
    frame.originX = world->origin_x + originX;
    frame.originY = world->origin_y + originY;
    ImageBuffer image(this, frame, formatOf(*world));
    const PF_Rect& hint = world->extent_hint;
    image.validRect = PixelRect{hint.left + frame.originX, hint.top + frame.originY, hint.right + frame.originX,
                                hint.bottom + frame.originY}
                          .intersect(image.rect);
    return image;
}

int32_t Host::layerIndex(const Param::Parameters& list, int ordinal) const {
    if (ordinal == 0) return 0;
    int seen = 0;
    for (std::size_t i = 0; i < list.records.size(); ++i) {
        if (list.records[i].kind == Param::ParamKind::Layer && ++seen == ordinal)
            return hostIndexOf(list.records, static_cast<int>(i));
    }
    throw std::invalid_argument("Invalid layer");
}

}  // namespace Tw::Host::AE
