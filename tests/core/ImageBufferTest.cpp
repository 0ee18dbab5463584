// ImageBuffer: allocation, formats, host storage, views, adopted frames, clearing and moves.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <new>

#include "TestHost.h"

namespace Tw::Image {
namespace TW_FILE_LOCAL {

using Testing::component;
using Testing::fill;
using Testing::TestHost;
using Own = ImageBuffer::Ownership;

TEST(ImageBuffer, AllocationGoesThroughTheHostWithPaddedRows) {
    TestHost host;
    {
        ImageBuffer image(&host);
        const struct {
            int depth;
            PixelRect rect;
            std::ptrdiff_t rowBytes;
        } cases[] = {
            {8, {-3, 5, 7, 9}, 64}, {8, {0, 0, 8, 1}, 32}, {16, {0, 0, 10, 2}, 96}, {32, {0, -4, 3, 0}, 64}};
        int count = 0;
        for (const auto& c : cases) {
            const std::size_t before = host.allocatedBytes;
            image.allocateDepth(c.rect, c.depth);
            EXPECT_EQ(image.rect, c.rect);
            EXPECT_EQ(image.validRect, c.rect);
            EXPECT_EQ(image.rowStride(), c.rowBytes);
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(image.pixels()) % 64, 0u);
            EXPECT_EQ(image.ownership(), Own::Owner);
            EXPECT_EQ(host.allocatedBytes - before, static_cast<std::size_t>(c.rowBytes * c.rect.height()));
            // Each allocation first gives back the previous one.
            EXPECT_EQ(host.allocations, ++count);
            EXPECT_EQ(host.releases, count - 1);
        }
        // Zero width or height keeps the rectangle and allocates nothing.
        for (const PixelRect& rect : {PixelRect{4, 2, 4, 9}, PixelRect{-3, 6, 5, 6}}) {
            image.allocateDepth(rect, 16);
            EXPECT_EQ(image.rect, rect);
            EXPECT_EQ(image.validRect, rect);
            EXPECT_EQ(image.pixels(), nullptr);
        }
        EXPECT_EQ(host.allocations, count);
        image.allocateDepth({0, 0, 2, 2}, 8);
    }
    EXPECT_EQ(host.releases, host.allocations);
    EXPECT_EQ(host.releasedBytes, host.allocatedBytes);
}

// The output frame lends its format to images of its own depth only; a depth or format that is none is
// a failed allocation.
TEST(ImageBuffer, AllocateDepthTakesTheOutputFramesFormatAtItsDepth) {
    std::array<std::byte, 32> framePixels{};
    const ImageBuffer bgraFrame(nullptr, FrameRecord{framePixels.data(), 16, 2, 2, 0, 0}, fourCC("bgra"));
    TestHost host;
    host.output = &bgraFrame;
    ImageBuffer image(&host);
    image.allocateDepth({0, 0, 2, 2}, 8);
    EXPECT_EQ(image.pixelFormat(), fourCC("bgra"));
    image.allocateDepth({0, 0, 2, 2}, 16);
    EXPECT_EQ(image.pixelFormat(), fourCC("ae16"));
    for (int depth : {0, 10, 24, -8})
        EXPECT_THROW(image.allocateDepth({0, 0, 2, 2}, depth), std::bad_alloc);
    EXPECT_THROW(image.allocate({0, 0, 2, 2}, fourCC("v210")), std::bad_alloc);
    EXPECT_EQ(host.allocations, 2);

    image.allocateLike(bgraFrame, {1, 1, 3, 4});
    EXPECT_EQ(image.pixelFormat(), fourCC("bgra"));
    EXPECT_EQ(image.validRect, (PixelRect{1, 1, 3, 4}));

    // Only an output frame that has pixels lends its format.
    const ImageBuffer noPixels(nullptr, FrameRecord{}, fourCC("bgra"));
    host.output = &noPixels;
    image.allocateDepth({0, 0, 2, 2}, 8);
    EXPECT_EQ(image.pixelFormat(), fourCC("argb"));
}

TEST(ImageBuffer, ViewsShareTheParentsPixels) {
    TestHost host;
    ImageBuffer parent(&host);
    parent.allocateDepth({10, 20, 18, 24}, 16);
    parent.validRect = {11, 21, 17, 23};
    ImageBuffer view;
    view.viewOf(parent, {12, 21, 15, 23});
    EXPECT_EQ(host.allocations, 1);
    EXPECT_EQ(view.rect, (PixelRect{12, 21, 15, 23}));
    EXPECT_EQ(view.validRect, parent.validRect);
    EXPECT_EQ(view.pixels(), parent.pixelAddress(12, 21));
    EXPECT_EQ(view.rowStride(), parent.rowStride());
    EXPECT_EQ(view.pixelFormat(), fourCC("ae16"));
    EXPECT_EQ(view.ownership(), Own::View);
    component<uint16_t>(view, 14, 22, 3) = 12345;
    EXPECT_EQ(component<uint16_t>(parent, 14, 22, 3), 12345);

    ImageBuffer inner;  // a view of a view owns nothing
    inner.viewOf(view, {13, 22, 20, 30});
    EXPECT_EQ(inner.rect, (PixelRect{13, 22, 15, 23}));
    EXPECT_EQ(inner.pixels(), parent.pixelAddress(13, 22));
    EXPECT_EQ(inner.ownership(), Own::None);

    for (const PixelRect& outside : {PixelRect{30, 30, 40, 40}, PixelRect{0, 0, 10, 20}}) {
        view.viewOf(parent, outside);
        EXPECT_TRUE(view.rect.isEmpty());
        EXPECT_FALSE(view.hasStorage());
    }
    view.release();
    inner.release();
    EXPECT_EQ(host.releases, 0);
}

TEST(ImageBuffer, AdoptedFrameWithNegativeRowbytesRunsUpwardInMemory) {
    alignas(16) std::array<std::byte, 48> memory{};
    std::byte* const base = memory.data();
    TestHost host;
    {
        // Three rows of two pixels, 16 bytes apart; the picture's top row is the last in memory.
        const ImageBuffer frame(&host, FrameRecord{base, -16, 2, 3, 10, 20}, fourCC("ae16"));
        EXPECT_EQ(frame.rect, (PixelRect{10, 20, 12, 23}));
        EXPECT_EQ(frame.validRect, frame.rect);
        EXPECT_EQ(frame.ownership(), Own::None);
        EXPECT_EQ(frame.depth(), 16);
        EXPECT_EQ(frame.pixels(), base + 32);
        EXPECT_EQ(frame.rowStride(), -16);
        EXPECT_EQ(frame.pixelAddress(10, 21), base + 16);
        EXPECT_EQ(frame.pixelAddress(11, 22), base + 8);

        ImageBuffer view;
        view.viewOf(frame, {11, 21, 12, 23});
        EXPECT_EQ(view.pixels(), base + 24);
        EXPECT_EQ(view.rowStride(), -16);
        EXPECT_EQ(view.ownership(), Own::None);
    }
    EXPECT_EQ(host.releases, 0);  // adopted storage is never given back
}

TEST(ImageBuffer, ClearZeroesOnlyTheRegion) {
    const auto expectZeroExactlyIn = [](const ImageBuffer& image, const PixelRect& zeroed) {
        for (int y = image.rect.top; y < image.rect.bottom; ++y)
            for (int x = image.rect.left; x < image.rect.right; ++x)
                EXPECT_EQ(component<uint32_t>(image, x, y, 0),
                          zeroed.contains({x, y, x + 1, y + 1}) ? 0 : ~0u)
                    << x << "," << y;
    };
    ImageBuffer image;
    image.allocateDepth({0, 0, 4, 3}, 8);
    for (const PixelRect& part : {PixelRect{1, 1, 3, 2}, PixelRect{-5, 2, 2, 10}}) {
        fill<uint8_t>(image, 0xFF);
        image.clear(part);
        expectZeroExactlyIn(image, part.intersect(image.rect));
    }
    fill<uint8_t>(image, 0xFF);
    ImageBuffer view;  // the whole of a view is a part of its parent
    view.viewOf(image, {2, 0, 4, 3});
    view.clear(view.rect);
    expectZeroExactlyIn(image, {2, 0, 4, 3});
    image.clear(PixelRect::infinite());
    expectZeroExactlyIn(image, image.rect);

    std::array<uint32_t, 6> memory;
    memory.fill(~0u);
    ImageBuffer upward(nullptr, FrameRecord{reinterpret_cast<std::byte*>(memory.data()), -8, 2, 3, 0, 0},
                       fourCC("argb"));
    upward.clear({1, 0, 2, 1});
    EXPECT_EQ(memory, (std::array<uint32_t, 6>{~0u, ~0u, ~0u, ~0u, ~0u, 0}));
}

TEST(ImageBuffer, MoveKeepsThePixels) {
    TestHost host;
    {
        ImageBuffer a(&host);
        a.allocateDepth({0, 0, 3, 2}, 32);
        component<float>(a, 2, 1, 3) = 0.75f;
        std::byte* const pixels = a.pixels();
        ImageBuffer b(std::move(a));
        EXPECT_EQ(b.pixels(), pixels);
        EXPECT_EQ(b.ownership(), Own::Owner);
        EXPECT_EQ(component<float>(b, 2, 1, 3), 0.75f);
        EXPECT_FALSE(a.hasStorage());
        EXPECT_EQ(a.ownership(), Own::None);
        ImageBuffer c(&host);
        c.allocateDepth({0, 0, 1, 1}, 8);
        c = std::move(b);
        EXPECT_EQ(host.releases, 1);
        EXPECT_EQ(c.pixels(), pixels);
    }
    EXPECT_EQ(host.releases, 2);
    EXPECT_EQ(host.releasedBytes, host.allocatedBytes);
}

// An image narrowed to part of its own storage clears only that part; other views still see the rest.
TEST(ImageBuffer, ClearOfANarrowedImageStaysInsideIt) {
    ImageBuffer image, whole;
    image.allocateDepth({0, 0, 4, 2}, 8);
    fill<uint8_t>(image, 0xAB);
    whole.viewOf(image, image.rect);
    image.viewOf(image, {0, 0, 2, 2});
    image.clear(image.rect);
    EXPECT_EQ(component<uint8_t>(whole, 1, 1, 0), 0);
    EXPECT_EQ(component<uint8_t>(whole, 2, 0, 0), 0xAB);
}

// A row whose length doesn't fit a 32-bit stride, 2^32 - 1 pixels wide included, is a failed allocation.
TEST(ImageBuffer, RowTooLongForAStrideThrowsBadAlloc) {
    ImageBuffer image;
    EXPECT_THROW(image.allocateDepth({0, 0, INT32_MAX, 1}, 8), std::bad_alloc);
    EXPECT_THROW(image.allocateDepth({INT32_MIN, 0, INT32_MAX, 1}, 8), std::bad_alloc);
    EXPECT_FALSE(image.hasStorage());
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Image
