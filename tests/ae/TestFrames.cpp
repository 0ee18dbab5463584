#include "tests/ae/TestFrames.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <ostream>
#include <sstream>

namespace Tw::Tools::AeHost {
namespace {

// Positions of red, green, blue and alpha within a pixel.
constexpr int kArgbPositions[4] = {1, 2, 3, 0};
constexpr int kBgraPositions[4] = {2, 1, 0, 3};

const int* positionsOf(ComponentOrder order) {
    return order == ComponentOrder::Argb ? kArgbPositions : kBgraPositions;
}

// Writes `value`, a fraction of white, in the frame's own units; integer depths are clamped and rounded.
void storeComponent(Frame& frame, int32_t x, int32_t y, int component, double value) {
    std::byte* pixel = frame.row(y) + static_cast<std::ptrdiff_t>(x) * frame.bytesPerPixel();
    const int position = positionsOf(frame.order)[component];
    const double unit = std::clamp(value, 0.0, 1.0);
    if (frame.depth == 8) {
        reinterpret_cast<uint8_t*>(pixel)[position] = static_cast<uint8_t>(unit * 255 + 0.5);
    } else if (frame.depth == 16) {
        reinterpret_cast<uint16_t*>(pixel)[position] = static_cast<uint16_t>(unit * 32768 + 0.5);
    } else {
        reinterpret_cast<float*>(pixel)[position] = static_cast<float>(value);
    }
}

}  // namespace

Frame patternFrame(int32_t width, int32_t height, int depth, ComponentOrder order, uint32_t seed) {
    Frame frame = Frame::blank(width, height, depth, order);
    const double shift = (seed % 97) / 97.0;
    for (int32_t y = 0; y < height; ++y) {
        for (int32_t x = 0; x < width; ++x) {
            const double fx = (x + 0.5) / width;
            const double fy = (y + 0.5) / height;
            double red = std::fmod(fx + shift, 1.0);
            double green = 0.15 + 0.7 * fy;
            const double blue = (x < width / 3 ? 0.2 : 0.85) * (x + 2 * y < width ? 1.0 : 0.5);
            double alpha = 1.0;
            if (y < height / 4 && x >= width / 2) alpha = 0.5;
            if (y >= height - 3 && x < 4) alpha = 0.0;
            // Float frames carry light above white and a little below black, as real footage does.
            if (depth == 32 && y == height / 2) red += 0.25;
            if (depth == 32 && x == width - 1) green -= 0.2;
            storeComponent(frame, x, y, 0, red);
            storeComponent(frame, x, y, 1, green);
            storeComponent(frame, x, y, 2, blue);
            storeComponent(frame, x, y, 3, alpha);
        }
    }
    return frame;
}

std::string firstDifference(const Frame& actual, const Frame& expected) {
    std::ostringstream text;
    if (actual.width != expected.width || actual.height != expected.height ||
        actual.depth != expected.depth || actual.order != expected.order) {
        text << "frames of another shape: " << actual.width << "x" << actual.height << " at " << actual.depth
             << " bits against " << expected.width << "x" << expected.height << " at " << expected.depth;
        return text.str();
    }
    const int componentBytes = actual.depth / 8;
    const std::size_t count = actual.pixels.size() / static_cast<std::size_t>(componentBytes);
    std::size_t differing = 0;
    std::size_t first = count;
    for (std::size_t i = 0; i < count; ++i) {
        if (std::memcmp(&actual.pixels[i * componentBytes], &expected.pixels[i * componentBytes],
                        static_cast<std::size_t>(componentBytes)) != 0) {
            if (first == count) first = i;
            ++differing;
        }
    }
    if (differing == 0) return {};
    const auto component = [&](const Frame& frame, std::size_t i) -> double {
        const std::byte* at = &frame.pixels[i * componentBytes];
        if (frame.depth == 8) return static_cast<double>(*reinterpret_cast<const uint8_t*>(at));
        if (frame.depth == 16) return static_cast<double>(*reinterpret_cast<const uint16_t*>(at));
        return static_cast<double>(*reinterpret_cast<const float*>(at));
    };
    const std::size_t pixel = first / 4;
    text << differing << " components differ; the first at x "
         << pixel % static_cast<std::size_t>(actual.width) << ", y "
         << pixel / static_cast<std::size_t>(actual.width) << ", component slot " << first % 4 << ": "
         << component(actual, first) << " instead of " << component(expected, first);
    return text.str();
}

void PrintTo(const Frame& frame, std::ostream* out) {
    *out << frame.width << " x " << frame.height << " frame at " << frame.depth << " bits, "
         << (frame.order == ComponentOrder::Argb ? "ARGB" : "BGRA");
}

}  // namespace Tw::Tools::AeHost
