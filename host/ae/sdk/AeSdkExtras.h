// What the After Effects adapter needs beside the SDK's own names and that the SDK does not give: how to
// spell the SDK's character-code constants without multi-character literals, and the version word of
// PF_VERSION as a constexpr function. Included in both build modes, over our declarations of the SDK or
// over Adobe's headers, so it depends on neither.
#pragma once

#include <cstdint>

// The value a compiler gives a multi-character literal such as 'argb': the first character in the highest
// byte. GCC, Clang and MSVC agree on it, but the literal itself draws warnings and is not portable C++, so
// the SDK's few constants of that kind (error codes, channel types) are written with this instead.
constexpr std::int32_t twMultiCharConstant(char c0, char c1, char c2, char c3) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<unsigned char>(c0)) << 24 |
                                     static_cast<std::uint32_t>(static_cast<unsigned char>(c1)) << 16 |
                                     static_cast<std::uint32_t>(static_cast<unsigned char>(c2)) << 8 |
                                     static_cast<std::uint32_t>(static_cast<unsigned char>(c3)));
}

// The pixel formats are four-character codes in memory order instead: the first character in the lowest
// byte, so 'a','r','g','b' and 'argb' are different numbers. This is the SDK's MAKE_PIXEL_FORMAT_FOURCC.
constexpr std::uint32_t twPixelFormatFourCC(char c0, char c1, char c2, char c3) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(c0)) |
           static_cast<std::uint32_t>(static_cast<unsigned char>(c1)) << 8 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(c2)) << 16 |
           static_cast<std::uint32_t>(static_cast<unsigned char>(c3)) << 24;
}

// The version word an effect reports in out_data->my_version, bit for bit what PF_VERSION builds:
// build in bits 0-8, stage in 9-10, bug-fix in 11-14, sub-version in 15-18, the low three bits of the
// version in 19-21 and its next four bits in 26-29 (versions above 7 spill there).
constexpr std::uint32_t twPackVersion(std::uint32_t version, std::uint32_t subVersion,
                                      std::uint32_t bugFixVersion, std::uint32_t stage, std::uint32_t build) {
    return ((version >> 3) & 0xfu) << 26 | (version & 0x7u) << 19 | (subVersion & 0xfu) << 15 |
           (bugFixVersion & 0xfu) << 11 | (stage & 0x3u) << 9 | (build & 0x1ffu);
}

// The application codes hosts report in in_data->appl_id.
inline constexpr std::int32_t kTwPremiereProApplId = twMultiCharConstant('P', 'r', 'M', 'r');
inline constexpr std::int32_t kTwAfterEffectsApplId = twMultiCharConstant('F', 'X', 'T', 'C');
