// "Edges": its combining node against the formula transcribed plainly below in single precision, at every
// depth and in both component orders, and the effect on pictures whose edges are known: flat, a step in
// either direction and either orientation, a threshold, a transparent frame.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>

#include "plugins/EdgesPlugin.h"
#include "tests/support/ComponentGrid.h"

namespace Tw::Test {
namespace TW_FILE_LOCAL {

using Image::ImageBuffer;
using Image::PixelFormat;
using Image::PixelRect;
using Plugins::EdgesPlugin;
namespace Param = Tw::Host::Param;
namespace EdgesParam = Plugins::EdgesParam;
using EdgesNode = Image::EdgesFilter<StandaloneHost>;

// The shade of two stored responses per colour component, alpha white, as `format` stores it: the
// formula in single precision on fractions of white.
Pixel shadeOf(const Pixel& x, const Pixel& y, PixelFormat format, float thresh, bool invert) {
    const auto white = static_cast<float>(whiteOf(format));
    const auto positive = [&](double v) {
        return std::max(0.0f, white == 255 ? static_cast<float>(v) / 255.0f : static_cast<float>(v) / white);
    };
    Pixel out{0, 0, 0, white};
    for (int c = 0; c < 3; ++c) {
        const float m = std::sqrt(positive(y[c]) * positive(y[c]) + positive(x[c]) * positive(x[c]));
        const float shade = invert ? (m >= thresh ? 1.0f - m : 1.0f) : (m >= thresh ? m : 0.0f);
        out[c] = white == 1 ? shade : std::trunc(std::clamp(shade * white + 0.5f, 0.0f, white));
    }
    return out;
}

TEST(EdgesNode, CombinesTheTwoResponsesPerComponent) {
    // Responses of either sign, beyond white, and with a strength right at the threshold of 0.5 (the last
    // pixel's red, where the second response, one pixel short, reads as 0).
    const std::vector<Pixel> across = {{0.3, -0.2, 0.9, 0.1}, {0, 0, 0, 1},         {0.6, 0.8, 0.05, 0.5},
                                       {1.5, 0.02, 0.45, 0},  {-0.7, 0.33, 0.2, 1}, {0.5, 0.7, 0.1, 0.3}};
    const std::vector<Pixel> along = {{0.4, 0.9, -0.5, 0.9},
                                      {0, 0.1, 0.5, 0},
                                      {0.8, 0.6, 0.05, 0.5},
                                      {0.2, 0.01, 0.3, 1},
                                      {-0.1, 0.44, 0, 0}};
    for (const bool invert : {false, true}) {
        for (const float thresh : {0.0f, 0.5f}) {
            for (const PixelFormat format : kEveryFormat) {
                SCOPED_TRACE(testing::Message() << format << " invert " << invert << " thresh " << thresh);
                // Integer responses have lost their negative values already.
                auto stored = [&](std::vector<Pixel> fractions) {
                    if (whiteOf(format) != 1)
                        for (Pixel& p : fractions)
                            for (double& c : p)
                                c = std::clamp(c, 0.0, 1.0);
                    return inUnitsOf(fractions, format);
                };
                const auto x = stored(across), y = stored(along);
                ImageBuffer xImage = imageOf(x, format), yImage = imageOf(y, format);
                Layer xLayer(&xImage), yLayer(&yImage);
                EdgesNode node(xLayer, yLayer, thresh, invert);
                const auto out = renderNode(node, xImage.rect, format);
                for (std::size_t i = 0; i < x.size(); ++i)
                    EXPECT_EQ(out[i], shadeOf(x[i], i < y.size() ? y[i] : Pixel{}, format, thresh, invert))
                        << i;
            }
        }
    }
}

std::vector<Pixel> render(ImageBuffer& in, double radius, bool invert = false, double threshold = 0) {
    EdgesPlugin<StandaloneHost> effect;
    return pixelsOf(renderEffectImage(effect, in, [&](Param::Parameters& params) {
        params.setFloat(EdgesParam::Radius, radius);
        params.setBool(invert, EdgesParam::Invert);
        params.setFloat(EdgesParam::Threshold, threshold);
    }));
}

// A frame whose pixel (x, y) has the colour value(x, y) in red, green and blue, with alpha `alpha`.
ImageBuffer frameOf(const PixelRect& rect, PixelFormat format, const std::function<double(int, int)>& value,
                    double alpha = 1) {
    const int alphaPlace = Image::componentPositions(format).value()[3];
    return fractionImage(rect, format,
                         [&](int32_t x, int32_t y, int c) { return c == alphaPlace ? alpha : value(x, y); });
}

// Nothing changes across a flat frame: it is black, or white inverted, and opaque though the frame is
// transparent. Its borders too: the derivatives see the frame start from nothing there, a step whose
// dark side lies outside.
TEST(Edges, AFlatFrameIsBlackOrWhiteInvertedAndOpaque) {
    const PixelRect rect{0, 0, 64, 48};
    for (const PixelFormat format : kEveryFormat) {
        ImageBuffer in = frameOf(
            rect, format, [](int, int) { return 0.6; }, 0);
        for (const bool invert : {false, true}) {
            SCOPED_TRACE(testing::Message() << format << " invert " << invert);
            const double white = whiteOf(format);
            const Pixel expected{invert ? white : 0, invert ? white : 0, invert ? white : 0, white};
            for (const Pixel& p : render(in, 3, invert))
                ASSERT_EQ(p, expected);
        }
    }
}

// A step darkens nothing and lights up its dark side alone, where the second derivative is positive;
// a step the other way, or across the other axis, mirrors or transposes the picture.
TEST(Edges, AStepLightsItsDarkSideAloneMirroredAndTransposed) {
    const auto format = Image::fourCC("ae32");
    const int w = 70, h = 50, step = 35;
    const auto rising = [&](int x, int) { return x < step ? 0.2 : 0.8; };
    ImageBuffer risingImage = frameOf({0, 0, w, h}, format, rising);
    ImageBuffer fallingImage =
        frameOf({0, 0, w, h}, format, [&](int x, int y) { return rising(w - 1 - x, y); });
    ImageBuffer acrossImage = frameOf({0, 0, h, w}, format, [&](int x, int y) { return rising(y, x); });
    const auto up = render(risingImage, 4), down = render(fallingImage, 4), across = render(acrossImage, 4);
    const auto at = [](const std::vector<Pixel>& p, int width, int x, int y) {
        return p[static_cast<std::size_t>(y * width + x)][1];
    };
    for (int y = 12; y < h - 12; ++y) {
        for (int x = 0; x < w; ++x) {
            ASSERT_NEAR(at(down, w, w - 1 - x, y), at(up, w, x, y), 1e-6) << x << "," << y;
            ASSERT_NEAR(at(across, h, y, x), at(up, w, x, y), 1e-6) << x << "," << y;
        }
        EXPECT_GT(at(up, w, step - 2, y), 0.01);
        for (int x = step; x < w - 12; ++x)
            ASSERT_EQ(at(up, w, x, y), 0.0) << x << "," << y;
    }
}

// With "Threshold" at 100 only strengths of 1 and more stay, which a float frame may reach.
TEST(Edges, AThresholdOf100BlacksOutAllBelowOne) {
    for (const PixelFormat format : {Image::fourCC("argb"), Image::fourCC("ae32")}) {
        ImageBuffer in = frameOf({0, 0, 60, 20}, format, [](int x, int) {
            return x < 30 ? 0 : x < 45 ? 1 : 40;
        });
        const auto all = render(in, 1.5), kept = render(in, 1.5, false, 100),
                   inverted = render(in, 1.5, true, 100);
        const double white = whiteOf(format);
        int strong = 0;
        for (std::size_t i = 0; i < all.size(); ++i) {
            for (int c = 0; c < 3; ++c) {
                const bool stays = all[i][c] >= white;
                strong += stays;
                ASSERT_EQ(kept[i][c], stays ? all[i][c] : 0.0) << i;
                ASSERT_EQ(inverted[i][c], stays ? 1.0f - static_cast<float>(all[i][c]) : white) << i;
            }
        }
        EXPECT_EQ(strong > 0, white == 1);
    }
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Test
