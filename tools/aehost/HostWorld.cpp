#include "tools/aehost/HostWorld.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "image/core/PixelFormat.h"

namespace Tw::Tools::AeHost {
namespace {

constexpr std::size_t kGuardBytes = 64;
constexpr int32_t kRowPadding = 16;
constexpr std::byte kGuard{0xE7};

}  // namespace

bool describeFormat(PF_PixelFormat format, int& depth, ComponentOrder& order) {
    const auto code = static_cast<Image::PixelFormat>(format);
    const auto positions = Image::componentPositions(code);
    depth = Image::formatDepth(code);
    if (!positions || (depth != 8 && depth != 16 && depth != 32)) return false;
    order = (*positions)[3] == 0 ? ComponentOrder::Argb : ComponentOrder::Bgra;
    return true;
}

HostWorld::HostWorld(int32_t width, int32_t height, PF_PixelFormat format, bool negativeRowBytes,
                     int32_t originX, int32_t originY, bool clear)
    : format_(format) {
    if (!describeFormat(format, depth_, order_)) throw std::invalid_argument("a world of an unknown format");
    stride_ = width * (depth_ / 8 * 4) + kRowPadding;
    const std::size_t pixelBytes = static_cast<std::size_t>(stride_) * static_cast<std::size_t>(height);
    storage_.assign(pixelBytes + 2 * kGuardBytes, kGuard);
    std::byte* first = storage_.data() + kGuardBytes;
    for (int32_t y = 0; y < height; ++y)
        std::fill_n(first + static_cast<std::ptrdiff_t>(y) * stride_, width * (depth_ / 8 * 4),
                    clear ? std::byte{0} : kUnwritten);

    world_.world_flags = PF_WorldFlag_WRITEABLE | (depth_ > 8 ? PF_WorldFlag_DEEP : 0);
    const std::ptrdiff_t lastRow = static_cast<std::ptrdiff_t>(std::max(height, 1) - 1) * stride_;
    world_.data = reinterpret_cast<PF_PixelPtr>(negativeRowBytes ? first + lastRow : first);
    world_.rowbytes = negativeRowBytes ? -stride_ : stride_;
    world_.width = width;
    world_.height = height;
    world_.extent_hint = {0, 0, width, height};
    world_.pix_aspect_ratio = {1, 1};
    world_.origin_x = originX;
    world_.origin_y = originY;
}

std::byte* HostWorld::rowAddress(int32_t y) const {
    return reinterpret_cast<std::byte*>(world_.data) + static_cast<std::ptrdiff_t>(y) * world_.rowbytes;
}

void HostWorld::load(const Frame& layer) {
    if (layer.depth != depth_ || layer.order != order_)
        throw std::invalid_argument("a layer of another format");
    const int pixelBytes = depth_ / 8 * 4;
    for (int32_t y = 0; y < world_.height; ++y) {
        std::byte* row = rowAddress(y);
        std::fill_n(row, world_.width * pixelBytes, std::byte{0});
        const int32_t layerY = y + world_.origin_y;
        if (layerY < 0 || layerY >= layer.height) continue;
        const int32_t left = std::max(world_.origin_x, 0);
        const int32_t right = std::min(world_.origin_x + world_.width, layer.width);
        if (left >= right) continue;
        std::memcpy(row + static_cast<std::ptrdiff_t>(left - world_.origin_x) * pixelBytes,
                    layer.row(layerY) + static_cast<std::ptrdiff_t>(left) * pixelBytes,
                    static_cast<std::size_t>(right - left) * pixelBytes);
    }
}

Frame HostWorld::contents() const {
    Frame frame = Frame::blank(world_.width, world_.height, depth_, order_);
    for (int32_t y = 0; y < world_.height; ++y)
        std::memcpy(frame.row(y), rowAddress(y), static_cast<std::size_t>(frame.rowBytes()));
    return frame;
}

void HostWorld::markReadOnly() {
    readOnlyPixels_ = contents();
}

bool HostWorld::intact() const {
    if (readOnlyPixels_ && contents() != *readOnlyPixels_) return false;
    const auto isGuard = [](const std::byte* begin, std::size_t count) {
        return std::all_of(begin, begin + count, [](std::byte b) { return b == kGuard; });
    };
    const std::size_t pixelBytes = static_cast<std::size_t>(world_.width) * (depth_ / 8 * 4);
    const std::byte* first = storage_.data() + kGuardBytes;
    if (!isGuard(storage_.data(), kGuardBytes) ||
        !isGuard(storage_.data() + storage_.size() - kGuardBytes, kGuardBytes))
        return false;
    for (int32_t y = 0; y < world_.height; ++y) {
        if (!isGuard(first + static_cast<std::ptrdiff_t>(y) * stride_ + pixelBytes, kRowPadding))
            return false;
    }
    return true;
}

}  // namespace Tw::Tools::AeHost
