// "Compound Blur" against its box arithmetic, transcribed plainly below one pixel at a time in single
// precision, and against box means worked out by brute force.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "plugins/CompoundBlurPlugin.h"
#include "tests/support/ComponentGrid.h"
#include "tests/support/PatternImage.h"
#include "tests/support/PixelRows.h"

namespace Tw::Test {
namespace TW_FILE_LOCAL {

using Image::ImageBuffer;
using Image::PixelFormat;
using Image::PixelRect;
using Plugins::CompoundBlurPlugin;
using StandaloneHost = Tw::Host::Standalone::Host;
namespace Param = Tw::Host::Param;
namespace CompoundBlurParam = Plugins::CompoundBlurParam;

struct Settings {
    double radius = 0;
    bool invert = false;
    double downsampleX = 1;
    double downsampleY = 1;
};

std::vector<Pixel> render(const ImageBuffer& source, ImageBuffer& map, const Settings& settings) {
    CompoundBlurPlugin<StandaloneHost> effect;
    effect.downsampleX = settings.downsampleX;
    effect.downsampleY = settings.downsampleY;
    ImageBuffer in;
    in.allocate(source.rect, source.pixelFormat());
    in.copyFrom(source);
    ImageBuffer* const layers[] = {&map};
    return pixelsOf(renderEffectImage(
        effect, in,
        [&](Param::Parameters& params) {
            params.setFloat(CompoundBlurParam::MaximumRadius, settings.radius);
            params.setBool(settings.invert, CompoundBlurParam::InvertBlur);
        },
        layers));
}

ImageBuffer flat(const PixelRect& rect, PixelFormat format, double fraction) {
    return fractionImage(rect, format, [&](int32_t, int32_t, int) { return fraction; });
}

// The output of the effect over the whole of `source`, worked out as the effect states it: float running
// sums along the rows, then down the columns, over the source (the whole frame, which is all a box
// around it can reach); boxes cut to that table, their fractional edges read by bilinear interpolation
// with cells outside it reading zero.
std::vector<Pixel> boxArithmetic(const ImageBuffer& source, const ImageBuffer& map, float radius,
                                 bool invert) {
    const PixelRect frame = source.rect, region = frame;
    const int width = region.width(), height = region.height();
    const std::vector<Pixel> in = pixelsOf(source), mapPixels = pixelsOf(map);
    const float white = static_cast<float>(Image::formatMaximum(source.pixelFormat()));
    std::vector<std::array<float, 4>> rows(static_cast<std::size_t>(width * height)), table(rows.size());
    for (int j = 0; j < height; ++j)
        for (int i = 0; i < width; ++i)
            for (int c = 0; c < 4; ++c) {
                const auto k = static_cast<std::size_t>(j * width + i);
                const float value = static_cast<float>(in[k][c]);
                rows[k][c] = i == 0 ? 0.0f + value : rows[k - 1][c] + value;
                table[k][c] =
                    j == 0 ? rows[k][c] : table[k - static_cast<std::size_t>(width)][c] + rows[k][c];
            }
    const auto cell = [&](int i, int j, int c) {
        return i < 0 || j < 0 || i >= width || j >= height
                   ? 0.0f
                   : table[static_cast<std::size_t>(j * width + i)][c];
    };
    const auto corner = [&](float px, float py, int c) {
        const float fx = std::floor(px), fy = std::floor(py), wx = px - fx, wy = py - fy;
        const int i = static_cast<int>(fx) - 1, j = static_cast<int>(fy) - 1;
        const float upper = cell(i, j, c) + (cell(i + 1, j, c) - cell(i, j, c)) * wx;
        const float lower = cell(i, j + 1, c) + (cell(i + 1, j + 1, c) - cell(i, j + 1, c)) * wx;
        return upper + (lower - upper) * wy;
    };
    const auto edge = [](float v, int32_t low, int32_t high) {
        return std::min(std::max(v, static_cast<float>(low)), static_cast<float>(high - 1));
    };
    std::vector<Pixel> out(in.size());
    for (int32_t y = frame.top; y < frame.bottom; ++y) {
        for (int32_t x = frame.left; x < frame.right; ++x) {
            float m = 0;
            if (map.rect.contains({x, y, x + 1, y + 1})) {
                const Pixel& p = mapPixels[static_cast<std::size_t>((y - map.rect.top) * map.rect.width() +
                                                                    (x - map.rect.left))];
                const auto fraction = [&](int c) {
                    const float v = static_cast<float>(p[c]);
                    return white == 255 ? v / 255.0f : white == 32768 ? v * 3.0517578e-5f : v;
                };
                m = std::max(0.0f, 0.3f * fraction(0) + 0.59f * fraction(1) + 0.11f * fraction(2));
            }
            const float h = (invert ? (m > 1 ? 0.0f : 1.0f - m) : std::min(1.0f, m)) * radius;
            const float fx = static_cast<float>(x), fy = static_cast<float>(y);
            const float l = edge(fx - h, region.left, region.right) - static_cast<float>(region.left);
            const float r = edge(fx + h + 1.0f - 1.0f, region.left, region.right) + 1.0f - region.left;
            const float t = edge(fy - h, region.top, region.bottom) - static_cast<float>(region.top);
            const float b = edge(fy + h + 1.0f - 1.0f, region.top, region.bottom) + 1.0f - region.top;
            const float inverse = 1.0f / ((b - t) * (r - l));
            Pixel& result = out[static_cast<std::size_t>((y - frame.top) * frame.width() + (x - frame.left))];
            for (int c = 0; c < 4; ++c) {
                const float v =
                    (corner(r, b, c) - corner(l, b, c) - corner(r, t, c) + corner(l, t, c)) * inverse;
                result[c] = white == 1 ? v : v < 0 ? 0 : v > white ? white : std::trunc(v);
            }
        }
    }
    return out;
}

// The mean of the source's stored values over the box of half width `h` around (x, y), cut to the frame.
Pixel boxMean(const ImageBuffer& source, int32_t x, int32_t y, int h) {
    const std::vector<Pixel> in = pixelsOf(source);
    const PixelRect box = PixelRect{x - h, y - h, x + h + 1, y + h + 1}.intersect(source.rect);
    Pixel sum{};
    for (int32_t j = box.top; j < box.bottom; ++j)
        for (int32_t i = box.left; i < box.right; ++i)
            for (int c = 0; c < 4; ++c)
                sum[c] += in[static_cast<std::size_t>((j - source.rect.top) * source.rect.width() + i -
                                                      source.rect.left)][c];
    for (double& c : sum)
        c /= box.width() * box.height();
    return sum;
}

TEST(CompoundBlur, FollowsTheBoxArithmeticAtEveryDepth) {
    // A map smaller than the frame and off its origin; radii whose boxes have fractional edges, the
    // larger reaching past the whole frame, so that the table is summed whole rather than by each worker.
    const PixelRect frame{-5, 3, 66, 52};
    for (const PixelFormat format : kGridFormats) {
        for (const bool invert : {false, true}) {
            for (const float radius : {6.5f, 40.5f}) {
                SCOPED_TRACE(testing::Message()
                             << Image::formatDepth(format) << " " << invert << " " << radius);
                const ImageBuffer source = patternImage(frame, format, 1);
                ImageBuffer map = patternImage({2, 0, 50, 40}, format, 2);
                EXPECT_EQ(render(source, map, {radius, invert}), boxArithmetic(source, map, radius, invert));
            }
        }
    }
}

TEST(CompoundBlur, BlackAndWhiteMapsGiveTheInputAndTheBoxMean) {
    const PixelRect frame{0, 0, 23, 19};
    constexpr int kRadius = 4;
    for (const PixelFormat format : kGridFormats) {
        SCOPED_TRACE(Image::formatDepth(format));
        const ImageBuffer source = patternImage(frame, format, 3);
        ImageBuffer black = flat(frame, format, 0), white = flat(frame, format, 1);
        // The sums of a frame this small are whole numbers well below 2^24 at 8 and 16 bits, and a box of
        // one gives each pixel back exactly. Float sums round from the first addition, in units of 2^-15
        // once they pass 256, and a box of one is the difference of four of them.
        const bool floats = Image::formatMaximum(format) == 1;
        for (const auto& out : {render(source, black, {kRadius}), render(source, white, {kRadius, true})}) {
            const auto in = pixelsOf(source);
            for (std::size_t i = 0; i < in.size(); ++i)
                for (int c = 0; c < 4; ++c)
                    EXPECT_NEAR(out[i][c], in[i][c], floats ? 1e-4 : 0) << i;
        }
        // Within float rounding at float; cut toward zero at 8 and 16 bits, so at most a level below.
        // Boxes at the edges are cut there, and their mean is over the pixels they keep.
        for (const auto& out : {render(source, white, {kRadius}), render(source, black, {kRadius, true})}) {
            for (int32_t y = frame.top; y < frame.bottom; ++y)
                for (int32_t x = frame.left; x < frame.right; ++x) {
                    const Pixel mean = boxMean(source, x, y, kRadius);
                    const Pixel& got = out[static_cast<std::size_t>(y * frame.width() + x)];
                    for (int c = 0; c < 4; ++c) {
                        EXPECT_LE(got[c], mean[c] + (floats ? 1e-5 : 1e-3)) << x << "," << y;
                        EXPECT_GT(got[c], mean[c] - (floats ? 1e-5 : 1)) << x << "," << y;
                    }
                }
        }
    }
}

TEST(CompoundBlur, NoRadiusOrNoMapBuildsNoNode) {
    CompoundBlurPlugin<StandaloneHost> effect;
    Param::Parameters params;
    effect.defineParameters(params);
    const PixelRect frame{0, 0, 16, 16};
    EXPECT_TRUE(effect.chainIsActive(params, frame));
    params.setFloat(CompoundBlurParam::MaximumRadius, 0);
    EXPECT_FALSE(effect.chainIsActive(params, frame));
    // Over images: no map chosen, and a map without pixels.
    params.setFloat(CompoundBlurParam::MaximumRadius, 5);
    ImageBuffer source = patternImage(frame, Image::fourCC("ae32"), 4), out, empty;
    out.allocate(frame, source.pixelFormat());
    empty.allocate(PixelRect{3, 3, 3, 9}, source.pixelFormat());
    ImageBuffer* const emptyMap[] = {&empty};
    for (Image::LayerImages layers : {Image::LayerImages{}, Image::LayerImages{emptyMap}}) {
        ASSERT_EQ(effect.render(params, source, out, layers), 0);
        EXPECT_EQ(pixelsOf(out), pixelsOf(source));
    }
}

TEST(CompoundBlur, TheHorizontalRadiusServesBothAxes) {
    // One bright pixel under a white map spreads evenly over a square whose half width is the radius
    // times the horizontal factor, whatever the vertical one.
    const PixelRect frame{0, 0, 31, 31};
    const auto format = Image::fourCC("ae32");
    ImageBuffer source =
        gridImage(frame, format, [](int32_t x, int32_t y, int) { return x == 15 && y == 15 ? 1.0 : 0.0; });
    ImageBuffer white = flat(frame, format, 1);
    for (const auto& [downsampleX, downsampleY, reach] : {std::tuple{0.5, 1.0, 2}, std::tuple{1.0, 0.5, 4}}) {
        const auto out = render(source, white, {4, false, downsampleX, downsampleY});
        const double share = 1.0 / ((2 * reach + 1) * (2 * reach + 1));
        for (int32_t y = 0; y < frame.bottom; ++y)
            for (int32_t x = 0; x < frame.right; ++x) {
                const bool inside = std::abs(x - 15) <= reach && std::abs(y - 15) <= reach;
                EXPECT_NEAR(out[static_cast<std::size_t>(y * 31 + x)][0], inside ? share : 0.0, 1e-6)
                    << x << "," << y;
            }
    }
}

TEST(CompoundBlur, EightBitSumsStayExactUpTo2To24) {
    // 256 x 257 white pixels sum to 16,776,960, just below 2^24: every sum of the table is exact, and a
    // black map gives the frame back. Four times the frame goes past it, where the float sums round as
    // stated.
    const auto format = Image::fourCC("bgra");
    const PixelRect exact{0, 0, 256, 257};
    ImageBuffer source = flat(exact, format, 1), black = flat(exact, format, 0);
    EXPECT_EQ(render(source, black, {3}), pixelsOf(source));
    const PixelRect beyond{0, 0, 512, 514};
    source = patternImage(beyond, format, 5);
    ImageBuffer map = patternImage(beyond, format, 6);
    EXPECT_EQ(render(source, map, {3}), boxArithmetic(source, map, 3, false));
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Test
