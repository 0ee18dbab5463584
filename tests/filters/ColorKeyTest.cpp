// The colour key: its space against the formulas worked out in double precision, its box and softness,
// and what its nodes write at every depth and in both component orders.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "image/filters/retouch/ColorKeyCCFilter.h"
#include "image/filters/retouch/ColorKeyFilter.h"
#include "tests/support/LabReference.h"
#include "tests/support/NodeRender.h"

namespace Tw::Test {
namespace TW_FILE_LOCAL {

using Image::ColorKeySampleComp;
using Image::ColorKeySampleMask;
using Image::ImageBuffer;
using Image::KeyPoint;
using Image::MaskGetAlpha;
using Image::MaskGetRGB;
using Image::PixelFormat;
using Image::SkinKey;
using ColorKey = Image::ColorKeyFilter<StandaloneHost, ColorKeySampleComp>;
using ColorKeyMask = Image::ColorKeyFilter<StandaloneHost, ColorKeySampleMask<MaskGetRGB>>;
using ColorKeyMaskAlpha = Image::ColorKeyFilter<StandaloneHost, ColorKeySampleMask<MaskGetAlpha>>;
using ColorKeyCC = Image::ColorKeyCCFilter<StandaloneHost>;

std::array<double, 3> pointOf(const Lab& lab) {
    const double angle = std::atan2(lab.b, lab.a);
    const double degrees =
        angle > 0 ? angle / std::numbers::pi * 180 : std::fabs(angle) / -std::numbers::pi * 180 + 360;
    return {degrees / 360, std::hypot(lab.a, lab.b) / 128, lab.lightness / 105};
}

double strengthOf(const SkinKey& key, std::array<double, 3> p) {
    double e = p[0] - key.fgmin[0];
    p[0] = (e < -0.5 ? e + 1 : e > 0.5 ? e - 1 : e) + key.fgmin[0];
    double sum = 0;
    for (int axis = 0; axis < 3; ++axis) {
        const double lo = key.fgmin[axis], hi = key.fgmax[axis];
        const double d = (p[axis] < lo ? p[axis] - lo : p[axis] > hi ? p[axis] - hi : 0) / key.sigma[axis];
        sum += d * d;
    }
    return std::exp(-0.5 * sum);
}

// The default skin key of the retouching effect.
SkinKey skinKey() {
    return Image::makeKeyRange(Image::rgbToKeySpace(222 / 255.f, 180 / 255.f, 166 / 255.f),
                               Image::rgbToKeySpace(1, 202 / 255.f, 176 / 255.f), {0.08f, 0.15f, 0.15f});
}

const Pixel kSkin = {238 / 255., 191 / 255., 171 / 255., 1};  // inside the skin box on every axis
const Pixel kBlue = {0, 0, 1, 0.5};

// `NodeType` over a layer of `base` and one of `keyed`, both fractions of white; over one layer of `base`
// alone when `keyed` is empty.
template <class NodeType, class... Arguments>
std::vector<Pixel> over(const std::vector<Pixel>& base, const std::vector<Pixel>& keyed, PixelFormat format,
                        Arguments... arguments) {
    ImageBuffer a = imageOf(inUnitsOf(base, format), format);
    ImageBuffer b = imageOf(inUnitsOf(keyed.empty() ? base : keyed, format), format);
    Layer first(&a), second(&b);
    NodeType node(first, keyed.empty() ? first : second, arguments...);
    return renderNode(node, a.rect, format);
}

// Colours spread over the whole cube, some beyond white.
std::vector<Pixel> randomColours(int count, double top) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> unit(0, top);
    std::vector<Pixel> colours(static_cast<std::size_t>(count));
    for (Pixel& p : colours)
        p = {unit(random), unit(random), unit(random), unit(random)};
    return colours;
}

TEST(ColorKeySpace, ColoursTakeThePointsOfTheFormulas) {
    const Pixel colours[] = {{222 / 255., 180 / 255., 166 / 255.},
                             {0.2, 0.7, 0.3},
                             {0, 0, 1},
                             {0.01, 0.02, 0.03},
                             {1.5, 0.8, 0.2},
                             {0.9, 0.1, 0.6}};
    for (const Pixel& colour : colours) {
        const auto expected = pointOf(labOf(colour));
        const KeyPoint point = Image::rgbToKeySpace(float(colour[0]), float(colour[1]), float(colour[2]));
        for (int axis = 0; axis < 3; ++axis)
            EXPECT_NEAR(point[axis], expected[axis], 1e-5) << colour[0] << " " << colour[1] << " " << axis;
    }
    // Black has a = b = 0 exactly, an angle of 0, and so a whole turn.
    EXPECT_EQ(Image::rgbToKeySpace(0, 0, 0), (KeyPoint{1.0f, 0.0f, Image::rgbToKeySpace(0, 0, 0)[2]}));
    // A grey does not: the white point and the matrix leave a and b slightly off 0, and its hue is theirs.
    const KeyPoint grey = Image::rgbToKeySpace(0.5f, 0.5f, 0.5f);
    EXPECT_NEAR(grey[0], pointOf(labOf({0.5, 0.5, 0.5}))[0], 0.01);
    EXPECT_LT(grey[1], 1e-4);
}

TEST(ColorKeySpace, KeyRangesTakeTheShortWayRoundTheHueCircle) {
    const SkinKey across = Image::makeKeyRange({0.83f, 0.4f, 0.3f}, {0.12f, 0.7f, 0.7f}, {0.1f, 0.2f, 0.3f});
    EXPECT_NEAR(across.fgmin[0], 0.12 - 0.29, 1e-6);
    EXPECT_FLOAT_EQ(across.fgmax[0], 0.12f);
    EXPECT_EQ(across.fgmin[1], 0.4f);
    EXPECT_EQ(across.fgmax[2], 0.7f);
    EXPECT_EQ(across.sigma, (KeyPoint{0.1f, 0.2f, 0.3f}));
    const SkinKey within = Image::makeKeyRange({0.3f, 0.5f, 0.5f}, {0.1f, 0.5f, 0.5f}, {});
    EXPECT_FLOAT_EQ(within.fgmin[0], 0.1f);
    EXPECT_FLOAT_EQ(within.fgmax[0], 0.3f);

    // The retouching effect's shine key, from bright skin to white, by the ratios to the white point.
    const SkinKey shine = Image::makeKeyRange(
        Image::keySpaceOfWhiteRatios(0.6502138376235962f, 0.5370203256607056f, 0.32642418146133423f),
        Image::keySpaceOfWhiteRatios(1.000031590461731f, 1.0f, 1.0001561641693115f), {1, 0.05f, 0.1f});
    EXPECT_NEAR(shine.fgmin[0], -0.1758, 1e-4);
    EXPECT_NEAR(shine.fgmax[0], 0.1192, 1e-4);
    EXPECT_NEAR(shine.fgmin[1], 0.0001, 1e-4);
    EXPECT_NEAR(shine.fgmax[1], 0.2853, 1e-4);
    EXPECT_NEAR(shine.fgmin[2], 0.7456, 1e-4);
    EXPECT_NEAR(shine.fgmax[2], 0.9524, 1e-4);
}

TEST(ColorKey, SkinIsKeyedFullyAndBlueNotAtAll) {
    const Pixel base = {0.1, 0.5, 0.9, 0.25};
    const std::vector<Pixel> keyed = {kSkin, kBlue, kSkin, kBlue, kSkin, kBlue,
                                      kSkin, kBlue, kSkin, kBlue, kSkin};
    const std::vector<Pixel> bases(keyed.size(), base);
    for (const PixelFormat format : kEveryFormat) {
        SCOPED_TRACE(Image::formatDepth(format));
        const double white = whiteOf(format);
        const auto keyedUnits = inUnitsOf(keyed, format);
        const auto baseUnits = inUnitsOf(bases, format);
        const auto mask = over<ColorKeyMaskAlpha>(bases, keyed, format, skinKey(), false);
        const auto colourMask = over<ColorKeyMask>(bases, keyed, format, skinKey(), false);
        const auto mix = over<ColorKey>(bases, keyed, format, skinKey(), false);
        for (std::size_t x = 0; x < keyed.size(); ++x) {
            const bool skin = x % 2 == 0;
            // Blue lies some 6 softnesses off the box: a strength of 7e-12, nothing at the integer depths.
            for (int c = 0; c < 4; ++c) {
                EXPECT_NEAR(mask[x][c], skin ? white : 0, skin ? 0 : 1e-11) << x;
                EXPECT_EQ(colourMask[x][c], c == 3 ? baseUnits[x][3] : mask[x][c]) << x;
            }
            for (int c = 0; c < 4; ++c) {
                if (skin) {
                    EXPECT_NEAR(mix[x][c], keyedUnits[x][c], white == 1 ? 1e-7 : 0) << x;
                } else {
                    EXPECT_EQ(mix[x][c], baseUnits[x][c]) << x;
                }
            }
        }
    }
}

TEST(ColorKey, StrengthFollowsTheFormulaAndFallsOffSmoothly) {
    // Skin darkened step by step leaves the box through its lightness.
    std::vector<Pixel> ramp;
    for (int i = 0; i <= 140; ++i) {
        const double k = 1 - i / 200.0;
        ramp.push_back({kSkin[0] * k, kSkin[1] * k, kSkin[2] * k, 1});
    }
    const SkinKey key = skinKey();
    const auto mask = over<ColorKeyMaskAlpha>(ramp, ramp, Image::fourCC("ae32"), key, false);
    EXPECT_EQ(mask[0][0], 1);
    for (std::size_t x = 0; x < ramp.size(); ++x) {
        EXPECT_NEAR(mask[x][0], strengthOf(key, pointOf(labOf(ramp[x]))), 2e-5) << x;
        if (x > 0) {
            EXPECT_LE(mask[x][0], mask[x - 1][0]);
            EXPECT_LT(mask[x - 1][0] - mask[x][0], 0.03) << x;
        }
    }
    EXPECT_LT(mask.back()[0], 0.01);

    // Any colours, and a box that starts below 0: a hue of 0.96 is taken as -0.04, inside.
    const SkinKey across =
        Image::makeKeyRange({0.83f, 0.4f, 0.3f}, {0.12f, 0.7f, 0.7f}, {0.08f, 0.15f, 0.15f});
    auto colours = randomColours(37, 1.2);
    colours.push_back({220 / 255., 60 / 255., 160 / 255., 1});
    const auto acrossMask = over<ColorKeyMaskAlpha>(colours, colours, Image::fourCC("BGra"), across, false);
    for (std::size_t x = 0; x < colours.size(); ++x)
        EXPECT_NEAR(acrossMask[x][0], strengthOf(across, pointOf(labOf(colours[x]))), 2e-5) << x;
    EXPECT_EQ(acrossMask.back()[0], 1);
}

TEST(ColorKey, InvertedAndPlainAddUpToOne) {
    const auto colours = randomColours(29, 1);
    const auto plain = over<ColorKeyMaskAlpha>(colours, colours, Image::fourCC("ae32"), skinKey(), false);
    const auto inverted = over<ColorKeyMaskAlpha>(colours, colours, Image::fourCC("ae32"), skinKey(), true);
    for (std::size_t x = 0; x < colours.size(); ++x)
        EXPECT_NEAR(plain[x][0] + inverted[x][0], 1, 1e-7);
}

TEST(ColorKey, AnImageMixedWithItselfIsThatImage) {
    const auto colours = randomColours(41, 1.3);
    for (const PixelFormat format : kEveryFormat) {
        std::vector<Pixel> in = colours;
        if (whiteOf(format) != 1) {
            for (Pixel& p : in)
                for (double& c : p)
                    c = std::min(c, 1.0);
        }
        EXPECT_EQ(over<ColorKey>(in, {}, format, skinKey(), false), inUnitsOf(in, format)) << format;
    }
}

TEST(ColorKey, IntegerMixesAreCutTowardZero) {
    // Colours of whole 8-bit steps, and the key's strength for each from a float image of the same values.
    std::vector<Pixel> keyed, bases;
    for (int i = 0; i < 25; ++i) {
        const double k = 1 - i / 50.0;
        keyed.push_back({std::round(238 * k) / 255, std::round(191 * k) / 255, std::round(171 * k) / 255, 1});
        bases.push_back({(i * 37 % 256) / 255.0, (i * 11 % 256) / 255.0, 1, (i * 5 % 256) / 255.0});
    }
    const auto m = over<ColorKeyMaskAlpha>(keyed, keyed, Image::fourCC("ae32"), skinKey(), false);
    for (const PixelFormat format : {Image::fourCC("argb"), Image::fourCC("bgra")}) {
        const auto mix = over<ColorKey>(bases, keyed, format, skinKey(), false);
        const auto a = inUnitsOf(bases, format), b = inUnitsOf(keyed, format);
        for (std::size_t x = 0; x < keyed.size(); ++x) {
            for (int c = 0; c < 4; ++c) {
                const float mixed = float(b[x][c] - a[x][c]) * float(m[x][0]) + float(a[x][c]);
                EXPECT_EQ(mix[x][c], std::trunc(mixed)) << x << " " << c;
            }
        }
    }
}

// The key's correction from its formulas: hue turned forward by `turn`, chroma and lightness scaled.
Pixel correctedBy(const Pixel& rgb, double turn, double chroma, double lightness) {
    const auto point = pointOf(labOf(rgb));
    const double angle = (point[0] + turn) * 2 * std::numbers::pi;
    const double c = point[1] * chroma * 128;
    return encodedOf({point[2] * lightness * 105, std::cos(angle) * c, std::sin(angle) * c}, rgb);
}

TEST(ColorKeyCC, WithoutCorrectionItIsThePlainKeyedMix) {
    const auto colours = randomColours(23, 1), bases = randomColours(23, 0.5);
    for (const PixelFormat format : kEveryFormat) {
        EXPECT_EQ(over<ColorKeyCC>(bases, colours, format, skinKey(), true, 0.0f, 0.0f, 0.0f),
                  over<ColorKey>(bases, colours, format, skinKey(), true));
    }
}

TEST(ColorKeyCC, KeysTheColourBeforeItsCorrection) {
    // Half a turn takes skin far out of the box; it is mixed in fully all the same. Blue stays out.
    const std::vector<Pixel> keyed = {kSkin, kBlue, kSkin, kBlue, kSkin, kBlue, kSkin, kBlue, kSkin};
    const std::vector<Pixel> bases(keyed.size(), {0.5, 0.5, 0.5, 0.5});
    const Pixel turned = correctedBy(kSkin, 0.5, 0.8, 0.9);
    for (const PixelFormat format : kEveryFormat) {
        const double white = whiteOf(format);
        const auto out = over<ColorKeyCC>(bases, keyed, format, skinKey(), false, 0.5f, -0.2f, -0.1f);
        const auto b = inUnitsOf(keyed, format), a = inUnitsOf(bases, format);
        for (std::size_t x = 0; x < keyed.size(); ++x) {
            for (int c = 0; c < 4; ++c) {
                if (x % 2 == 1) {
                    EXPECT_EQ(out[x][c], a[x][c]);
                } else if (c == 3) {
                    EXPECT_EQ(out[x][c], b[x][c]);
                } else {
                    EXPECT_NEAR(out[x][c], white == 1 ? turned[c] : std::trunc(turned[c] * white),
                                white == 1 ? 1e-5 : 1)
                        << c;
                }
            }
        }
    }
    // The turn is forward: the key's hue of the result grows by the turn.
    const auto quarter =
        over<ColorKeyCC>(bases, keyed, Image::fourCC("ae32"), skinKey(), false, 0.25f, 0.0f, 0.0f);
    const KeyPoint before = Image::rgbToKeySpace(float(kSkin[0]), float(kSkin[1]), float(kSkin[2]));
    const KeyPoint after =
        Image::rgbToKeySpace(float(quarter[0][0]), float(quarter[0][1]), float(quarter[0][2]));
    EXPECT_NEAR(after[0], before[0] + 0.25, 1e-3);
    EXPECT_NEAR(after[1], before[1], 1e-3);
    EXPECT_NEAR(after[2], before[2], 1e-4);
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Test
