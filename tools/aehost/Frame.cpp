#include "tools/aehost/Frame.h"

#include <cstring>
#include <stdexcept>

namespace Tw::Tools::AeHost {

Frame Frame::blank(int32_t width, int32_t height, int depth, ComponentOrder order) {
    if (depth != 8 && depth != 16 && depth != 32) throw std::invalid_argument("depth must be 8, 16 or 32");
    Frame frame{width, height, depth, order, {}};
    frame.pixels.assign(static_cast<std::size_t>(frame.rowBytes()) * static_cast<std::size_t>(height),
                        std::byte{0});
    return frame;
}

Frame Frame::copyOf(const Image::ImageBuffer& image) {
    const auto positions = Image::componentPositions(image.pixelFormat());
    if (!positions) throw std::invalid_argument("an image without a component table");
    const ComponentOrder order = (*positions)[3] == 0 ? ComponentOrder::Argb : ComponentOrder::Bgra;
    Frame frame = blank(image.rect.width(), image.rect.height(), image.depth(), order);
    for (int32_t y = 0; y < frame.height; ++y) {
        std::memcpy(frame.row(y), image.pixelAddress(image.rect.left, image.rect.top + y),
                    static_cast<std::size_t>(frame.rowBytes()));
    }
    return frame;
}

Image::PixelFormat Frame::pixelFormat() const {
    using Image::fourCC;
    if (order == ComponentOrder::Argb)
        return depth == 8 ? fourCC("argb") : depth == 16 ? fourCC("ae16") : fourCC("ae32");
    return depth == 8 ? fourCC("bgra") : depth == 16 ? fourCC("Bgra") : fourCC("BGra");
}

Frame Frame::flippedVertically() const {
    Frame flipped = blank(width, height, depth, order);
    for (int32_t y = 0; y < height; ++y)
        std::memcpy(flipped.row(height - 1 - y), row(y), static_cast<std::size_t>(rowBytes()));
    return flipped;
}

Image::ImageBuffer Frame::view(int32_t originX, int32_t originY) {
    Image::FrameRecord record;
    record.data = pixels.data();
    record.rowbytes = rowBytes();
    record.width = width;
    record.height = height;
    record.originX = originX;
    record.originY = originY;
    return Image::ImageBuffer(nullptr, record, pixelFormat());
}

}  // namespace Tw::Tools::AeHost
