// The table of pixel formats: depth, white and component positions.
#include <gtest/gtest.h>

#include <cstring>

#include "image/core/PixelFormat.h"

namespace Tw::Image {
namespace {

TEST(PixelFormat, TableRowsOfEachGroup) {
    const PixelFormat bgra = fourCC("bgra");
    EXPECT_EQ(std::memcmp(&bgra, "bgra", 4), 0);  // letters lie in memory as written
    using P = std::optional<ComponentPositions>;
    const struct {
        const char* letters;
        int depth, maximum;
        P positions;
    } rows[] = {
        {"argb", 8, 255, P{{1, 2, 3, 0}}},    {"Argb", 16, 32768, P{{1, 2, 3, 0}}},
        {"ae32", 32, 1, P{{1, 2, 3, 0}}},     {"bgra", 8, 255, P{{2, 1, 0, 3}}},
        {"Bgra", 16, 32768, P{{2, 1, 0, 3}}}, {"BGra", 32, 1, P{{2, 1, 0, 3}}},
        {"vuya", 8, 255, P{{2, 1, 0, 3}}},    {"VUya", 32, 1, P{{2, 1, 0, 3}}},
        {"yuy3", 8, 255, P{{0, 1, 2, 3}}},    {"uyvy", 8, 255, P{{1, 0, 3, 2}}},
        {"v210", 10, 255, std::nullopt},      {"v211", 10, 255, std::nullopt},
        {"rgba", 0, 0, std::nullopt},         {"ARGB", 0, 0, std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.letters);
        PixelFormat code;
        std::memcpy(&code, row.letters, 4);
        EXPECT_EQ(formatDepth(code), row.depth);
        EXPECT_EQ(formatMaximum(code), row.maximum);
        EXPECT_EQ(componentPositions(code), row.positions);
    }
}

}  // namespace
}  // namespace Tw::Image
