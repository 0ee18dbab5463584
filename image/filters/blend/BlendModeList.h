// The blend modes by number: the order here is the numbering the effect's popup and saved projects use,
// 0 "Normal" to 40 "Phoenix", and 41 "Behind", which only code that builds the node can choose.
#pragma once

#include <array>
#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

#include "image/filters/blend/BlendAlphaModes.h"
#include "image/filters/blend/BlendClassicModes.h"
#include "image/filters/blend/BlendColourModes.h"
#include "image/filters/blend/BlendComponentModes.h"

namespace Tw::Image {

using BlendModes = std::tuple<Normal, Darken, Multiply, ColorBurn, ClassicColorBurn, LinearBurn, DarkerColor,
                              Add, Lighten, Screen, ColorDodge, ClassicColorDodge, LinearDodge, LighterColor,
                              Overlay, SoftLight, HardLight, LinearLight, VividLight, PinLight, HardMix,
                              Difference, ClassicDifference, Exclusion, Subtract, Divide, Hue, Saturation,
                              Color, Luminosity, StencilAlpha, StencilLuma, SilhouetteAlpha, SilhouetteLuma,
                              AlphaAdd, LuminescentPremul, Average, Negation, Reflect, Glow, Phoenix, Behind>;

inline constexpr int kBlendModeCount = std::tuple_size_v<BlendModes>;

// The kernel names, by mode number.
inline constexpr auto kBlendModeNames = []<std::size_t... Mode>(std::index_sequence<Mode...>) {
    return std::array<const char*, sizeof...(Mode)>{std::tuple_element_t<Mode, BlendModes>::name...};
}
(std::make_index_sequence<kBlendModeCount>{});

// Whether a mode reads its inputs the other way round.
template <class Mode>
inline constexpr bool kExchangesInputs = requires {
    requires Mode::exchangesInputs;
};

// The same, by mode number.
inline constexpr auto kBlendModeExchangesInputs = []<std::size_t... Mode>(std::index_sequence<Mode...>) {
    return std::array<bool, sizeof...(Mode)>{kExchangesInputs<std::tuple_element_t<Mode, BlendModes>>...};
}
(std::make_index_sequence<kBlendModeCount>{});

// Calls body(std::type_identity<Mode>{}) with the type of mode `mode`, which must be one of modes First to
// End - 1 of the list.
template <int First, int End, class Body>
void withBlendModeIn(int mode, Body&& body) {
    [&]<int... Offset>(std::integer_sequence<int, Offset...>) {
        ((mode == First + Offset &&
          (body(std::type_identity<std::tuple_element_t<First + Offset, BlendModes>>{}), true)) ||
         ...);
    }
    (std::make_integer_sequence<int, End - First>{});
}

}  // namespace Tw::Image
