// The mix by a mask and the join of colour with another image's alpha: values at every depth, regions,
// and the folding of joins in series.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "image/filters/retouch/CopyAlphaFilter.h"
#include "image/filters/retouch/MaskFilter.h"
#include "tests/support/NodeRender.h"

namespace Tw::Test {
namespace TW_FILE_LOCAL {

using Image::ImageBuffer;
using Image::PixelFormat;
using Image::PixelRect;
using Mask = Image::MaskFilter<StandaloneHost>;
using CopyAlpha = Image::CopyAlphaFilter<StandaloneHost>;

// A row of `count` pixels from x = `left`, pixel i being `pixel(i)` in fractions of white.
template <class PixelAt>
ImageBuffer rowOf(int count, int left, PixelFormat format, PixelAt pixel) {
    std::vector<Pixel> pixels;
    for (int i = 0; i < count; ++i)
        pixels.push_back(pixel(i));
    return imageOf(inUnitsOf(pixels, format), format, left);
}

// An image over `rect`, pixel (x, y) being `pixel(x, y)` in fractions of white.
template <class PixelAt>
ImageBuffer areaOf(const PixelRect& rect, PixelFormat format, PixelAt pixel) {
    ImageBuffer image;
    image.allocate(rect, format);
    for (int y = rect.top; y < rect.bottom; ++y) {
        ImageBuffer row =
            rowOf(rect.width(), rect.left, format, [&](int i) { return pixel(rect.left + i, y); });
        row.rect = row.validRect = {rect.left, y, rect.right, y + 1};
        image.copyFrom(row);
    }
    return image;
}

TEST(MaskFilter, MixesUnderTheMaskAndShowsBaseElsewhere) {
    const auto first = [](int x, int y) { return Pixel{x / 40.0, y / 8.0, 1, 0.75}; };
    const auto second = [](int x, int y) { return Pixel{0.25, 1 - x / 40.0, y / 6.0, 1}; };
    const auto weight = [](int x, int y) { return Pixel{0.3, 0.2, 0.1, (x * 3 + y * 7) % 16 / 15.0}; };
    // Both images cover 20 by 6 pixels, the mask only 9 by 2 inside.
    const PixelRect frame{0, 0, 20, 6}, under{5, 2, 14, 4};
    for (const PixelFormat format : kEveryFormat) {
        for (const bool inverted : {false, true}) {
            SCOPED_TRACE(testing::Message() << format << (inverted ? " inverted" : ""));
            ImageBuffer a = areaOf(frame, format, first), b = areaOf(frame, format, second);
            ImageBuffer m = areaOf(under, format, weight);
            Layer la(&a), lb(&b), lm(&m);
            Mask node(la, lb, lm, inverted);
            const auto out = renderNode(node, frame, format);
            const auto as = pixelsOf(a), bs = pixelsOf(b), ms = pixelsOf(m);
            const double white = whiteOf(format);
            for (int y = frame.top; y < frame.bottom; ++y) {
                for (int x = frame.left; x < frame.right; ++x) {
                    const std::size_t i = static_cast<std::size_t>(y * 20 + x);
                    if (!under.contains({x, y, x + 1, y + 1})) {
                        EXPECT_EQ(out[i], inverted ? bs[i] : as[i]) << x << "," << y;
                        continue;
                    }
                    const float fraction =
                        float(ms[static_cast<std::size_t>((y - 2) * 9 + x - 5)][3]) / float(white);
                    const float mw = inverted ? 1 - fraction : fraction;
                    for (int c = 0; c < 4; ++c) {
                        const float mixed = float(bs[i][c] - as[i][c]) * mw + float(as[i][c]);
                        EXPECT_EQ(out[i][c], white == 1 ? mixed : std::trunc(mixed))
                            << x << "," << y << " " << c;
                    }
                }
            }
        }
    }
}

TEST(MaskFilter, RegionsFollowBaseAndTheMaskedOther) {
    Layer base(nullptr, {0, 0, 100, 50}), other(nullptr, {-20, 0, 60, 80}), mask(nullptr, {10, 10, 120, 40});
    Mask plain(base, other, mask, false);
    EXPECT_EQ(plain.bounds(), (PixelRect{0, 0, 100, 50}));
    // Base is asked for all it has of the request, the other and the mask only for what lies under the mask.
    const PixelRect request{-10, -10, 130, 90};
    EXPECT_EQ(plain.inputRect(request, 0), (PixelRect{0, 0, 100, 50}));
    EXPECT_EQ(plain.inputRect(request, 1), (PixelRect{10, 10, 60, 40}));
    EXPECT_EQ(plain.inputRect(request, 2), (PixelRect{10, 10, 120, 40}));
    Mask inverted(base, other, mask, true);
    EXPECT_EQ(inverted.bounds(), (PixelRect{-20, 0, 100, 80}));
    EXPECT_EQ(inverted.inputRect(request, 0), (PixelRect{10, 10, 100, 40}));
    EXPECT_EQ(inverted.inputRect(request, 1), (PixelRect{-10, 0, 60, 80}));
}

TEST(CopyAlpha, ColourOfOneImageWithTheAlphaOfTheOther) {
    for (const PixelFormat format : kEveryFormat) {
        ImageBuffer colour = rowOf(11, 0, format, [](int i) { return Pixel{i / 10.0, 0.5, 0.25, 1}; });
        ImageBuffer alpha = rowOf(11, 0, format, [](int i) { return Pixel{0.125, 0, 1, i / 20.0}; });
        Layer lc(&colour), la(&alpha);
        CopyAlpha node(lc, la);
        const auto out = renderNode(node, colour.rect, format);
        const auto cs = pixelsOf(colour), as = pixelsOf(alpha);
        for (int x = 0; x < 11; ++x)
            EXPECT_EQ(out[x], (Pixel{cs[x][0], cs[x][1], cs[x][2], as[x][3]})) << format << " " << x;
    }
}

TEST(CopyAlpha, TwoInSeriesFoldIntoOne) {
    const PixelFormat format = Image::fourCC("Bgra");
    ImageBuffer colour = rowOf(9, 0, format, [](int i) { return Pixel{i / 8.0, 0.5, 0.25, 1}; });
    ImageBuffer alpha1 = rowOf(9, 0, format, [](int i) { return Pixel{0, 0, 0, i / 16.0}; });
    ImageBuffer alpha2 = rowOf(9, 0, format, [](int i) { return Pixel{0, 0, 0, 1 - i / 16.0}; });
    Layer lc(&colour), l1(&alpha1), l2(&alpha2);
    CopyAlpha inner(lc, l1);
    CopyAlpha outer(inner, l2);
    const auto out = renderNode(outer, colour.rect, format);
    EXPECT_THAT(outer.inputs, testing::ElementsAre(&lc, &l2));
    EXPECT_TRUE(inner.consumers.empty());
    const auto cs = pixelsOf(colour), as = pixelsOf(alpha2);
    for (int x = 0; x < 9; ++x)
        EXPECT_EQ(out[x], (Pixel{cs[x][0], cs[x][1], cs[x][2], as[x][3]}));

    // As the alpha input, a join gives its own alpha input.
    CopyAlpha alphaJoin(l1, l2);
    CopyAlpha last(lc, alphaJoin);
    renderNode(last, colour.rect, format);
    EXPECT_THAT(last.inputs, testing::ElementsAre(&lc, &l2));
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Test
