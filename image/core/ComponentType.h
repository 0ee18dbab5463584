// The component type of each depth, resolved once so that code over pixels is written once as a template.
#pragma once

#include <cstdint>
#include <type_traits>

namespace Tw::Image {

template <class T>
struct ComponentTraits;

template <>
struct ComponentTraits<uint8_t> {
    static constexpr int depth = 8;
    static constexpr float white = 255.0f;
};

template <>
struct ComponentTraits<uint16_t> {
    // 16-bit white is 32768, not 65535, so that halving and doubling stay exact.
    static constexpr int depth = 16;
    static constexpr float white = 32768.0f;
};

template <>
struct ComponentTraits<float> {
    static constexpr int depth = 32;
    static constexpr float white = 1.0f;
};

// Calls body(std::type_identity<T>{}) with the component type of `depth`; returns false, doing nothing, for
// a depth that has no component type (the packed "v210" family, unknown formats).
template <class Body>
bool withComponentType(int depth, Body&& body) {
    switch (depth) {
        case 8:
            body(std::type_identity<uint8_t>{});
            return true;
        case 16:
            body(std::type_identity<uint16_t>{});
            return true;
        case 32:
            body(std::type_identity<float>{});
            return true;
        default:
            return false;
    }
}

}  // namespace Tw::Image
