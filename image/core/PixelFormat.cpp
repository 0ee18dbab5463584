#include "image/core/PixelFormat.h"

#include <algorithm>

namespace Tw::Image {
namespace {

struct FormatEntry {
    PixelFormat code;
    int depth;
    int maximum;
    std::optional<ComponentPositions> positions;
};

constexpr ComponentPositions kArgb{1, 2, 3, 0};
constexpr ComponentPositions kBgra{2, 1, 0, 3};
constexpr ComponentPositions kYuy2{0, 1, 2, 3};
constexpr ComponentPositions kUyvy{1, 0, 3, 2};

const FormatEntry kFormats[] = {
    {fourCC("argb"), 8, 255, kArgb},         {fourCC("Argb"), 16, 32768, kArgb},
    {fourCC("ARgb"), 32, 1, kArgb},          {fourCC("ae16"), 16, 32768, kArgb},
    {fourCC("ae32"), 32, 1, kArgb},          {fourCC("bgra"), 8, 255, kBgra},
    {fourCC("Bgra"), 16, 32768, kBgra},      {fourCC("BGra"), 32, 1, kBgra},
    {fourCC("vuya"), 8, 255, kBgra},         {fourCC("Vuya"), 16, 32768, kBgra},
    {fourCC("VUya"), 32, 1, kBgra},          {fourCC("yuy2"), 8, 255, kYuy2},
    {fourCC("yuy3"), 8, 255, kYuy2},         {fourCC("uyvy"), 8, 255, kUyvy},
    {fourCC("uyv7"), 8, 255, kUyvy},         {fourCC("v210"), 10, 255, std::nullopt},
    {fourCC("v211"), 10, 255, std::nullopt},
};

const FormatEntry* find(PixelFormat format) {
    const auto* entry = std::find_if(std::begin(kFormats), std::end(kFormats),
                                     [format](const FormatEntry& e) { return e.code == format; });
    return entry == std::end(kFormats) ? nullptr : entry;
}

}  // namespace

int formatDepth(PixelFormat format) {
    const FormatEntry* entry = find(format);
    return entry ? entry->depth : 0;
}

int formatMaximum(PixelFormat format) {
    const FormatEntry* entry = find(format);
    return entry ? entry->maximum : 0;
}

std::optional<ComponentPositions> componentPositions(PixelFormat format) {
    const FormatEntry* entry = find(format);
    return entry ? entry->positions : std::nullopt;
}

}  // namespace Tw::Image
