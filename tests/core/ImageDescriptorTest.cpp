// ImageDescriptor: whether an image's rows run in memory as the output frame's do.
#include <gtest/gtest.h>

#include <array>

#include "TestHost.h"
#include "image/core/ImageDescriptor.h"

namespace Tw::Image {
namespace TW_FILE_LOCAL {

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

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Image
