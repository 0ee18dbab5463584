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

// Converts `count` values between data formats. OpenImageIO takes the count as an int, so a row of more
// values (a wide file with many channels) goes in parts.
void convertValues(OIIO::TypeDesc from, const std::byte* source, OIIO::TypeDesc to, std::byte* destination,
                   std::size_t count) {
    constexpr std::size_t kLargestPart = std::size_t{1} << 30;
    for (std::size_t done = 0; done < count; done += kLargestPart) {
        const std::size_t part = std::min(kLargestPart, count - done);
        OIIO::convert_pixel_values(from, source + done * from.size(), to, destination + done * to.size(),
                                   static_cast<int>(part));
    }
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

// Colour times alpha, rounded to nearest at integer depths.
template <class T>
T premultiplied(T colour, T alpha) {
    if constexpr (std::is_floating_point_v<T>) {
        return colour * alpha;
    } else {
        constexpr auto white = static_cast<std::uint64_t>(Image::ComponentTraits<T>::white);
        return static_cast<T>((2 * std::uint64_t{colour} * alpha + white) / (2 * white));
    }
}

// Premultiplied colour divided by its alpha, rounded to nearest at integer depths, where it is limited to
// white. Where alpha is 0 there is no colour left to recover, and it becomes black.
template <class T>
T straight(T colour, T alpha) {
    if (alpha == 0) return 0;
    if constexpr (std::is_floating_point_v<T>) {
        return colour / alpha;
    } else {
        constexpr auto white = static_cast<std::uint64_t>(Image::ComponentTraits<T>::white);
        const std::uint64_t divided =
            (2 * std::uint64_t{colour} * white + alpha) / (2 * std::uint64_t{alpha});
        return static_cast<T>(std::min(white, divided));
    }
}

// Whether the frame holds colour multiplied by alpha where the file holds it straight. A file that stores
// premultiplied colour (OpenEXR) gives it as it is.
bool premultipliesColour(const OIIO::ImageSpec& spec, AlphaMode alpha) {
    return alpha == AlphaMode::Premultiplied && rolesOf(spec).alpha >= 0 &&
           spec.get_int_attribute("oiio:UnassociatedAlpha") != 0;
}

template <class T>
void readChannels(const FileImage& image, AlphaMode alphaMode, Image::ImageBuffer& frame) {
    const OIIO::ImageSpec& spec = image.spec;
    const ChannelRoles roles = rolesOf(spec);
    const bool premultiply = premultipliesColour(spec, alphaMode);
    const auto positions = Image::componentPositions(frame.pixelFormat()).value();
    const std::size_t values =
        static_cast<std::size_t>(spec.width) * static_cast<std::size_t>(spec.nchannels);
    const T white = static_cast<T>(Image::ComponentTraits<T>::white);
    std::vector<T> row(values);
    for (int y = 0; y < spec.height; ++y) {
        convertValues(spec.format, image.pixels.data() + y * spec.scanline_bytes(),
                      OIIO::TypeDescFromC<T>::value(), reinterpret_cast<std::byte*>(row.data()), values);
        T* pixel = reinterpret_cast<T*>(frame.pixelAddress(0, y));
        for (int x = 0; x < spec.width; ++x, pixel += 4) {
            const T* channels = row.data() + static_cast<std::ptrdiff_t>(x) * spec.nchannels;
            const T alpha = roles.alpha >= 0 ? fileToFrame(channels[roles.alpha]) : white;
            for (int c = 0; c < 3; ++c) {
                const T colour = fileToFrame(channels[roles.colour[c]]);
                pixel[positions[c]] = premultiply ? premultiplied(colour, alpha) : colour;
            }
            pixel[positions[3]] = alpha;
        }
    }
}

template <class T>
void writeChannels(const Image::ImageBuffer& frame, const Image::ImageBuffer& original, AlphaMode alphaMode,
                   FileImage& image) {
    const OIIO::ImageSpec& spec = image.spec;
    const ChannelRoles roles = rolesOf(spec);
    const bool premultiplied = premultipliesColour(spec, alphaMode);
    const auto positions = Image::componentPositions(frame.pixelFormat()).value();
    const std::size_t values =
        static_cast<std::size_t>(spec.width) * static_cast<std::size_t>(spec.nchannels);
    const std::size_t channelBytes = spec.format.size();

    // Each row is converted whole to the file's format, then only the channels whose frame values the
    // render changed are copied over: the others keep their exact values, extra channels included, and so
    // do 16-bit values that the frame's white of 32768 cannot hold apart.
    std::vector<T> row(values);
    std::vector<char> changed(values);
    std::vector<std::byte> converted(values * channelBytes);
    for (int y = 0; y < spec.height; ++y) {
        const T* pixel = reinterpret_cast<const T*>(frame.pixelAddress(0, y));
        const T* was = reinterpret_cast<const T*>(original.pixelAddress(0, y));
        std::fill(changed.begin(), changed.end(), 0);
        for (int x = 0; x < spec.width; ++x, pixel += 4, was += 4) {
            const std::ptrdiff_t first = static_cast<std::ptrdiff_t>(x) * spec.nchannels;
            T* channels = row.data() + first;
            char* channelChanged = changed.data() + first;
            const T alpha = pixel[positions[3]];
            const bool alphaChanged = alpha != was[positions[3]];
            // Straight colour comes from premultiplied colour and alpha both.
            std::array<T, 3> colour;
            std::array<bool, 3> colourChanged;
            for (int c = 0; c < 3; ++c) {
                const T value = pixel[positions[c]];
                colour[c] = premultiplied ? straight(value, alpha) : value;
                colourChanged[c] = value != was[positions[c]] || (premultiplied && alphaChanged);
            }
            if (roles.grey) {
                channels[roles.colour[0]] = frameToFile(meanOf(colour[0], colour[1], colour[2]));
                channelChanged[roles.colour[0]] = colourChanged[0] || colourChanged[1] || colourChanged[2];
            } else {
                for (int c = 0; c < 3; ++c) {
                    channels[roles.colour[c]] = frameToFile(colour[c]);
                    channelChanged[roles.colour[c]] = colourChanged[c];
                }
            }
            if (roles.alpha >= 0) {
                channels[roles.alpha] = frameToFile(alpha);
                channelChanged[roles.alpha] = alphaChanged;
            }
        }
        convertValues(OIIO::TypeDescFromC<T>::value(), reinterpret_cast<const std::byte*>(row.data()),
                      spec.format, converted.data(), values);
        std::byte* fileRow = image.pixels.data() + y * spec.scanline_bytes();
        for (std::size_t value = 0; value < changed.size(); ++value) {
            if (changed[value]) {
                std::memcpy(fileRow + value * channelBytes, converted.data() + value * channelBytes,
                            channelBytes);
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

Image::ImageBuffer frameFromFile(const FileImage& image, Image::PixelFormat format, AlphaMode alpha) {
    Image::ImageBuffer frame;
    frame.allocate({0, 0, image.spec.width, image.spec.height}, format);
    Image::withComponentType(
        frame.depth(), [&](auto type) { readChannels<typename decltype(type)::type>(image, alpha, frame); });
    return frame;
}

void storeFrame(const Image::ImageBuffer& frame, const Image::ImageBuffer& original, AlphaMode alpha,
                FileImage& image) {
    Image::withComponentType(frame.depth(), [&](auto type) {
        writeChannels<typename decltype(type)::type>(frame, original, alpha, image);
    });
}

}  // namespace Tw::Tools
