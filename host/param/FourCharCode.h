#pragma once

#include <cstdint>

namespace Tw::Host::Param {

// Packs a four-character code such as "2SbB" into a word whose bytes spell the code in memory order
// on the little-endian targets, the first character being the lowest byte.
consteval std::uint32_t fourCharCode(const char (&code)[5]) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(code[0])) |
           static_cast<std::uint32_t>(static_cast<unsigned char>(code[1])) << 8 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(code[2])) << 16 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(code[3])) << 24;
}

}  // namespace Tw::Host::Param
