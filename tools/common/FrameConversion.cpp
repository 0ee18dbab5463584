#include "tools/common/FrameConversion.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

#include "image/core/ComponentType.h"

namespace Tw::Tools {
namespace {

using Image::fourCC;

// Which file channel feeds red, green, blue and alpha.
struct ChannelRoles {
    std::array<int, 3> colour{};
    int alpha = -1;  // none
    bool grey = false;
};

ChannelRoles rolesOf(const OIIO::ImageSpec& spec) {
    std::vector<int> colour;
    for (int c = 0; c < spec.nchannels && colour.size() < 3; ++c) {
        if (c != spec.alpha_channel) colour.push_back(c);
    }
    // An alpha-only file is a matte: its one channel is all there is to show.
    if (colour.empty()) colour.push_back(0);
    ChannelRoles roles;
    roles.grey = colour.size() < 3;
    roles.colour = {colour[0], roles.grey ? colour[0] : colour[1], roles.grey ? colour[0] : colour[2]};
    roles.alpha = spec.alpha_channel < spec.nchannels ? spec.alpha_channel : -1;
    return roles;
}

template <class T>
T fileToFrame(T value) {
    if constexpr (std::is_same_v<T, std::uint16_t>) {
        // value * 32768 / 65535, rounded
        return static_cast<T>((std::uint64_t{value} * 65536 + 65535) / 131070);
    } else {
        return value;
    }
}

template <class T>
T frameToFile(T value) {
    if constexpr (std::is_same_v<T, std::uint16_t>) {
        // value * 65535 / 32768, rounded; a value above white stays white
        return static_cast<T>(
            std::min<std::uint64_t>(65535, (std::uint64_t{value} * 131070 + 32768) / 65536));
    } else {
        return value;
    }
}

template <class T>
T meanOf(T a, T b, T c) {
    if constexpr (std::is_floating_point_v<T>) {
        return (a + b + c) / 3;
    } else {
        return static_cast<T>((std::uint32_t{a} + b + c + 1) / 3);
    }
}

template <class T>
void readChannels(const FileImage& image, Image::ImageBuffer& frame) {
    const OIIO::ImageSpec& spec = image.spec;
    const ChannelRoles roles = rolesOf(spec);
    const auto positions = Image::componentPositions(frame.pixelFormat()).value();
    const int values = spec.width * spec.nchannels;
    const T white = static_cast<T>(Image::ComponentTraits<T>::white);
    std::vector<T> row(static_cast<std::size_t>(values));
    for (int y = 0; y < spec.height; ++y) {
        OIIO::convert_pixel_values(spec.format, image.pixels.data() + y * spec.scanline_bytes(),
                                   OIIO::TypeDescFromC<T>::value(), row.data(), values);
        T* pixel = reinterpret_cast<T*>(frame.pixelAddress(0, y));
        for (int x = 0; x < spec.width; ++x, pixel += 4) {
            const T* channels = row.data() + x * spec.nchannels;
            for (int c = 0; c < 3; ++c)
                pixel[positions[c]] = fileToFrame(channels[roles.colour[c]]);
            pixel[positions[3]] = roles.alpha >= 0 ? fileToFrame(channels[roles.alpha]) : white;
        }
    }
}

template <class T>
void writeChannels(const Image::ImageBuffer& frame, FileImage& image) {
    const OIIO::ImageSpec& spec = image.spec;
    const ChannelRoles roles = rolesOf(spec);
    const auto positions = Image::componentPositions(frame.pixelFormat()).value();
    const int values = spec.width * spec.nchannels;
    const std::size_t channelBytes = spec.format.size();

    std::vector<int> written(roles.colour.begin(),
                             roles.grey ? roles.colour.begin() + 1 : roles.colour.end());
    if (roles.alpha >= 0) written.push_back(roles.alpha);

    // Each row is converted whole to the file's format, then only the channels the frame holds are
    // copied over, so that the other channels keep their exact values.
    std::vector<T> row(static_cast<std::size_t>(values));
    std::vector<std::byte> converted(static_cast<std::size_t>(values) * channelBytes);
    for (int y = 0; y < spec.height; ++y) {
        const T* pixel = reinterpret_cast<const T*>(frame.pixelAddress(0, y));
        for (int x = 0; x < spec.width; ++x, pixel += 4) {
            T* channels = row.data() + x * spec.nchannels;
            const T red = pixel[positions[0]], green = pixel[positions[1]], blue = pixel[positions[2]];
            if (roles.grey) {
                channels[roles.colour[0]] = frameToFile(meanOf(red, green, blue));
            } else {
                channels[roles.colour[0]] = frameToFile(red);
                channels[roles.colour[1]] = frameToFile(green);
                channels[roles.colour[2]] = frameToFile(blue);
            }
            if (roles.alpha >= 0) channels[roles.alpha] = frameToFile(pixel[positions[3]]);
        }
        OIIO::convert_pixel_values(OIIO::TypeDescFromC<T>::value(), row.data(), spec.format, converted.data(),
                                   values);
        std::byte* fileRow = image.pixels.data() + y * spec.scanline_bytes();
        for (int x = 0; x < spec.width; ++x) {
            for (const int c : written) {
                const std::size_t offset = (static_cast<std::size_t>(x) * spec.nchannels + c) * channelBytes;
                std::memcpy(fileRow + offset, converted.data() + offset, channelBytes);
            }
        }
    }
}

}  // namespace

Image::PixelFormat frameFormat(int depth, ComponentOrder order) {
    const bool argb = order == ComponentOrder::Argb;
    switch (depth) {
        case 8:
            return argb ? fourCC("argb") : fourCC("bgra");
        case 16:
            return argb ? fourCC("ae16") : fourCC("Bgra");
        default:
            return argb ? fourCC("ae32") : fourCC("BGra");
    }
}

int depthForFile(const OIIO::ImageSpec& spec) {
    switch (spec.format.basetype) {
        case OIIO::TypeDesc::UINT8:
        case OIIO::TypeDesc::INT8:
            return 8;
        case OIIO::TypeDesc::UINT16:
        case OIIO::TypeDesc::INT16:
            return 16;
        default:
            return 32;
    }
}

Image::ImageBuffer frameFromFile(const FileImage& image, Image::PixelFormat format) {
    Image::ImageBuffer frame;
    frame.allocate({0, 0, image.spec.width, image.spec.height}, format);
    Image::withComponentType(frame.depth(),
                             [&](auto type) { readChannels<typename decltype(type)::type>(image, frame); });
    return frame;
}

void storeFrame(const Image::ImageBuffer& frame, FileImage& image) {
    Image::withComponentType(frame.depth(),
                             [&](auto type) { writeChannels<typename decltype(type)::type>(frame, image); });
}

}  // namespace Tw::Tools
