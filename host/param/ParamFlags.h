#pragma once

#include <cstdint>

namespace Tw::Host::Param::ParamFlag {

// Bits of ParamRecord::flags. Bit 0 means different things for float sliders and points, hence two
// names for it.
inline constexpr std::uint32_t Percent = 1u << 0;        // float slider: shown as percent, one decimal
inline constexpr std::uint32_t UnscaledPoint = 1u << 0;  // point: used as given, not scaled to the render
inline constexpr std::uint32_t Angle = 1u << 1;          // float slider: the value is an angle in degrees
inline constexpr std::uint32_t NotInTextFile = 1u << 4;  // left out when the list is dumped
inline constexpr std::uint32_t Hidden = 1u << 5;         // not shown in the effect controls
inline constexpr std::uint32_t CannotTimeVary = 1u << 6;
inline constexpr std::uint32_t CannotInterpolate = 1u << 7;
inline constexpr std::uint32_t StartCollapsed = 1u << 8;     // group start: the group opens closed
inline constexpr std::uint32_t DefaultToOwnLayer = 1u << 9;  // layer: defaults to the effect's own layer
// The host reports changes of a supervised parameter; a kind 0 or 13 record with this bit still
// takes a host index.
inline constexpr std::uint32_t Supervised = 1u << 10;
// Value and default differ on purpose, so the host is sent both instead of the default alone.
inline constexpr std::uint32_t SendValueAndDefault = 1u << 15;

}  // namespace Tw::Host::Param::ParamFlag
