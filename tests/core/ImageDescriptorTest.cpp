// ImageDescriptor: what an image's format, white, component order and row direction come to.
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "TestHost.h"
#include "image/core/ImageDescriptor.h"

namespace Tw::Image {
namespace {

TEST(ImageDescriptor, FormatIndexMaximumSwizzleAndSizes) {
    const ImageDescriptor fresh;
    EXPECT_EQ(fresh.formatIndex, 0);
    EXPECT_EQ(fresh.swizzleCode, 27);
    EXPECT_EQ(fresh.flags, 2);
    for (int32_t index = 0; index < 8; ++index)
        EXPECT_EQ(bytesPerComponent(index), (std::array<uint32_t, 8>{1, 1, 2, 2, 2, 4, 0, 0}[index]))
            << index;

    // Positions 1,2,3,0 pack as 01 10 11 00; 2,1,0,3 as 10 01 00 11; 1,0,3,2 as 01 00 11 10.
    const struct {
        const char* letters;
        int32_t formatIndex, maximum;
        unsigned swizzle;
    } cases[] = {
        {"argb", 0, 0, 0b01101100}, {"ae16", 2, 32768, 0b01101100}, {"ae32", 5, 0, 0b01101100},
        {"bgra", 0, 0, 0b10010011}, {"Bgra", 2, 32768, 0b10010011}, {"BGra", 5, 0, 0b10010011},
        {"yuy2", 0, 0, 27},         {"uyvy", 0, 0, 0b01001110},     {"v210", 0, 0, 27},
        {"rgba", 0, 0, 27},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.letters);
        PixelFormat format;
        std::memcpy(&format, c.letters, 4);
        const ImageDescriptor d = ImageDescriptor::of(ImageBuffer(nullptr, FrameRecord{}, format));
        EXPECT_EQ(d.formatIndex, c.formatIndex);
        EXPECT_EQ(d.maximum, c.maximum);
        EXPECT_EQ(d.swizzleCode, c.swizzle);
        EXPECT_EQ(d.depth(), c.formatIndex == 5 ? 32 : c.formatIndex == 2 ? 16 : 8);
    }
}

TEST(ImageDescriptor, FlagsSayWhetherRowsRunLikeTheOutputFrame) {
    alignas(16) std::array<std::byte, 32> memory{};
    const FrameRecord upwardRecord{memory.data(), -16, 4, 2, 0, 0},
        downwardRecord{memory.data(), 16, 4, 2, 0, 0};
    const auto flags = [](const ImageBuffer& image) { return ImageDescriptor::of(image).flags; };
    // Without an output frame: set for a positive stride.
    EXPECT_EQ(flags(ImageBuffer(nullptr, downwardRecord, fourCC("argb"))), 2);
    EXPECT_EQ(flags(ImageBuffer(nullptr, upwardRecord, fourCC("argb"))), 0);

    Testing::TestHost host;
    ImageBuffer allocated(&host);
    allocated.allocateDepth({0, 0, 2, 2}, 8);
    const ImageBuffer upward(&host, upwardRecord, fourCC("argb")),
        downward(&host, downwardRecord, fourCC("argb"));
    host.output = &downward;
    EXPECT_EQ(flags(allocated), 2);
    EXPECT_EQ(flags(upward), 0);
    host.output = &upward;
    EXPECT_EQ(flags(allocated), 0);
    EXPECT_EQ(flags(upward), 2);
}

}  // namespace
}  // namespace Tw::Image
