// "Blend"'s node: every mode against its formula worked out here one component at a time, at 8, 16 and
// 32 bits in both component orders; values picked by hand where a tie-break or a boundary decides; the
// inputs' places, the bounds, and the effect without a second layer.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <numeric>
#include <tuple>
#include <utility>
#include <vector>

#include "host/standalone/Host.h"
#include "plugins/BlendPlugin.h"
#include "tests/core/TestHost.h"
#include "tests/support/NodeRender.h"

namespace Tw::Plugins {
namespace TW_FILE_LOCAL {

using Image::fourCC;
using Image::ImageBuffer;
using Image::PixelFormat;
using Image::PixelRect;
using StandaloneHost = Tw::Host::Standalone::Host;
using BlendNode = Image::BlendFilter<StandaloneHost>;
using Layer = Image::FilterLayer<StandaloneHost>;

using Test::imageOf;
using Test::Pixel;
using Test::pixelsOf;

namespace Mode {
// clang-format off
enum : int {
    Normal, Darken, Multiply, ColorBurn, ClassicColorBurn, LinearBurn, DarkerColor, Add, Lighten, Screen,
    ColorDodge, ClassicColorDodge, LinearDodge, LighterColor, Overlay, SoftLight, HardLight, LinearLight,
    VividLight, PinLight, HardMix, Difference, ClassicDifference, Exclusion, Subtract, Divide, Hue, Saturation,
    Color, Luminosity, StencilAlpha, StencilLuma, SilhouetteAlpha, SilhouetteLuma, AlphaAdd, LuminescentPremul,
    Average, Negation, Reflect, Glow, Phoenix, Behind
};
// clang-format on
}  // namespace Mode

// ---- The formulas, one component at a time in plain float ----

using Rgb = std::array<float, 3>;

float luminanceL(const Rgb& c) {
    return 0.3f * c[0] + 0.59f * c[1] + 0.11f * c[2];
}
float luminanceLum(const Rgb& c) {
    return (30 * c[0] + 59 * c[1] + 11 * c[2]) / 100;
}
Rgb clipColor(Rgb c) {
    const float l = luminanceL(c);
    const float n = std::min({c[0], c[1], c[2]}), x = std::max({c[0], c[1], c[2]});
    if (0 > n)
        for (float& v : c)
            v = (v - l) * l / (l - n) + l;
    if (x > 1)
        for (float& v : c)
            v = (v - l) * (1 - l) / (x - l) + l;
    return c;
}
Rgb setLum(Rgb c, float target) {
    const float d = target - luminanceLum(c);
    for (float& v : c)
        v += d;
    return clipColor(c);
}
Rgb setSat(const Rgb& c, float s) {
    int mx, md;
    if (c[0] == std::max({c[0], c[1], c[2]})) {
        mx = 0, md = c[1] > c[2] ? 1 : 2;
    } else if (c[1] == std::max({c[0], c[1], c[2]})) {
        mx = 1, md = c[0] > c[2] ? 0 : 2;
    } else {
        mx = 2, md = c[0] > c[1] ? 0 : 1;
    }
    const int mn = 3 - mx - md;
    Rgb out{};
    if (c[mx] > c[mn]) {
        out[md] = (c[md] - c[mn]) * s / (c[mx] - c[mn]);
        out[mx] = s;
    }
    return out;
}
float saturation(const Rgb& c) {
    return std::max({c[0], c[1], c[2]}) - std::min({c[0], c[1], c[2]});
}
float burn(float b, float t) {
    if (t <= 0) return t;
    const float q = (1 - b) / t;
    return q > 1 ? 0 : 1 - q;
}
float dodge(float b, float t) {
    return t >= 1 ? t : std::min(1.0f, b / (1 - t));
}
float vivid(float b, float t) {
    return 0.5f > t ? burn(b, 2 * t) : dodge(b, 2 * (t - 0.5f));
}

// B of the rule S modes that work component by component, from normalised base x and top y.
const std::map<int, float (*)(float, float)> kComponentB = {
    {Mode::Multiply, [](float x, float y) { return x * y; }},
    {Mode::ColorBurn, [](float x, float y) { return burn(x, y); }},
    {Mode::LinearBurn, [](float x, float y) { return std::max(0.0f, x + y - 1); }},
    {Mode::Add, [](float x, float y) { return x + y; }},
    {Mode::Screen, [](float x, float y) { return 1 - (1 - y) * (1 - x); }},
    {Mode::ColorDodge, [](float x, float y) { return dodge(x, y); }},
    {Mode::LinearDodge, [](float x, float y) { return std::min(1.0f, x + y); }},
    {Mode::Overlay, [](float x, float y) { return 0.5f > x ? 2 * x * y : 1 - 2 * (1 - y) * (1 - x); }},
    {Mode::HardLight, [](float x, float y) { return 0.5f > y ? 2 * y * x : 1 - 2 * (1 - x) * (1 - y); }},
    {Mode::LinearLight,
     [](float x, float y) {
         return 0.5f > y ? std::max(0.0f, 2 * y + x - 1) : std::min(1.0f, 2 * (y - 0.5f) + x);
     }},
    {Mode::VividLight, [](float x, float y) { return vivid(x, y); }},
    {Mode::PinLight,
     [](float x, float y) { return 0.5f > y ? std::min(x, 2 * y) : std::max(x, 2 * (y - 0.5f)); }},
    {Mode::HardMix, [](float x, float y) { return vivid(x, y) < 0.5f ? 0.0f : 1.0f; }},
    {Mode::Difference, [](float x, float y) { return std::fabs(x - y); }},
    {Mode::Exclusion, [](float x, float y) { return x + y - 2 * x * y; }},
    {Mode::Subtract, [](float x, float y) { return x - y; }},
    {Mode::Divide, [](float x, float y) { return y == 0 ? y : x / y; }},
    {Mode::Average, [](float x, float y) { return (x + y) * 0.5f; }},
    {Mode::Negation, [](float x, float y) { return 1 - std::fabs(1 - x - y); }},
    {Mode::Reflect, [](float x, float y) { return y >= 1 ? y : std::min(1.0f, x * x / (1 - y)); }},
    {Mode::Glow, [](float x, float y) { return x >= 1 ? x : std::min(1.0f, y * y / (1 - x)); }},
    {Mode::Phoenix, [](float x, float y) { return std::min(y, x) - std::max(y, x) + 1; }},
};

// B of a rule S mode, from normalised colours.
Rgb colourB(int mode, const Rgb& b, const Rgb& t) {
    const float gain = 0.3f * (t[0] - b[0]) + 0.59f * (t[1] - b[1]) + 0.11f * (t[2] - b[2]);
    switch (mode) {
        case Mode::DarkerColor:
            return gain > 0 ? b : t;
        case Mode::LighterColor:
            return 0 > gain ? b : t;
        case Mode::Hue:
            return setLum(setSat(t, saturation(b)), luminanceLum(b));
        case Mode::Saturation:
            return setLum(setSat(b, saturation(t)), luminanceLum(b));
        case Mode::Color:
            return setLum(t, luminanceLum(b));
        case Mode::Luminosity:
            return setLum(b, luminanceLum(t));
    }
    Rgb B;
    for (int c = 0; c < 3; ++c)
        B[c] = kComponentB.at(mode)(b[c], t[c]);
    return B;
}

// The integers' conversion: truncated toward zero (out of range gives the lowest int), low bits kept.
double lowBits(float v, int depth) {
    const bool fits = v > -2147483648.0f && v < 2147483648.0f;
    const int32_t i = fits ? static_cast<int32_t>(v) : INT32_MIN;
    return i & (depth == 8 ? 0xff : 0xffff);
}

// The whole pixel as the formulas give it.
Pixel expected(int mode, Pixel base, Pixel top, float o, int depth) {
    if (mode == Mode::Behind) std::swap(base, top), mode = Mode::Normal;
    const float white = depth == 8 ? 255.0f : depth == 16 ? 32768.0f : 1.0f;
    const auto norm = [&](float v) { return depth == 8 ? v / 255 : depth == 16 ? v * 3.0517578e-5f : v; };
    const auto stored = [&](float v) { return depth == 32 ? v : lowBits(v + 0.5f, depth); };
    Rgb b, t, bn, tn;
    for (int c = 0; c < 3; ++c) {
        b[c] = static_cast<float>(base[c]), t[c] = static_cast<float>(top[c]);
        bn[c] = norm(b[c]), tn[c] = norm(t[c]);
    }
    const float ba = norm(static_cast<float>(base[3])), a = norm(static_cast<float>(top[3]) * o);
    float A = ba + a - ba * a;
    const float f = A > 0 ? a / A : a;
    Rgb out;  // in the stored scale
    const auto fromNormalised = [&](const Rgb& v) {
        for (int c = 0; c < 3; ++c)
            out[c] = v[c] * white;
    };
    const auto premultiplied = [&](const std::function<float(float, float)>& r, bool burned) {
        Rgb v;
        for (int c = 0; c < 3; ++c) {
            const float q = A > 0 ? r(bn[c], tn[c]) / A : r(bn[c], tn[c]);
            v[c] = burned ? 1 - q : q;
        }
        fromNormalised(v);
    };
    const auto direct = [&](const std::function<float(float, float)>& C) {
        Rgb v;
        for (int c = 0; c < 3; ++c)
            v[c] = f * (C(bn[c], tn[c]) - bn[c]) + bn[c];
        fromNormalised(v);
    };
    switch (mode) {
        case Mode::Normal:
            for (int c = 0; c < 3; ++c)
                out[c] = f * (t[c] - b[c]) + b[c];
            break;
        case Mode::Darken:
            direct([&](float x, float y) { return std::min((x - 1) * ba + 1, y); });
            break;
        case Mode::Lighten:
            direct([&](float x, float y) { return std::max(ba * x, y); });
            break;
        case Mode::SoftLight:
            direct([&](float x, float y) {
                const float d = (x - 0.5f) * ba + 0.5f;
                const float g = 0.25f > d ? ((16 * d - 12) * d + 4) * d : std::sqrt(d);
                return 0.5f > y ? d - (1 - d) * (1 - 2 * y) * d : d + (g - d) * (2 * y - 1);
            });
            break;
        case Mode::ClassicColorBurn:
            premultiplied(
                [&](float x, float y) {
                    const float u = (1 - y) * a;
                    return u >= 1 ? u : std::min(1.0f, (1 - x) * ba / (1 - u));
                },
                true);
            break;
        case Mode::ClassicColorDodge:
            premultiplied(
                [&](float x, float y) {
                    const float p = x * ba, q = y * a;
                    return q >= 1 ? q : std::min(1.0f, p / (1 - q));
                },
                false);
            break;
        case Mode::ClassicDifference:
            premultiplied([&](float x, float y) { return std::fabs(x * ba - y * a); }, false);
            break;
        case Mode::StencilAlpha:
        case Mode::StencilLuma:
        case Mode::SilhouetteAlpha:
        case Mode::SilhouetteLuma: {
            out = b;
            const float weight =
                mode == Mode::StencilLuma || mode == Mode::SilhouetteLuma ? luminanceL(tn) * a : a;
            A = mode <= Mode::StencilLuma ? ba * weight : ba * (1 - weight);
            break;
        }
        case Mode::AlphaAdd: {
            A = std::min(1.0f, ba + a);
            const float share = A > 0 ? a / A : a;
            Rgb v;
            for (int c = 0; c < 3; ++c)
                v[c] = share * (tn[c] - bn[c]) + bn[c];
            fromNormalised(v);
            break;
        }
        case Mode::LuminescentPremul: {
            const float k = A > 0 ? 1 / A : 0, e = A > 0 ? a * k : a;
            Rgb v;
            for (int c = 0; c < 3; ++c)
                v[c] = k * tn[c] + (1 - e) * bn[c];
            fromNormalised(v);
            break;
        }
        default: {  // rule S
            const Rgb blended = colourB(mode, bn, tn);
            const bool leavesRange = mode == Mode::Add || mode == Mode::Subtract || mode == Mode::Divide;
            for (int c = 0; c < 3; ++c) {
                float B = blended[c];
                if (depth != 32) {
                    B = leavesRange ? std::trunc(std::clamp(B * white, 0.0f, white))
                                    : static_cast<float>(lowBits(B * white + 0.5f, depth));
                }
                out[c] = f * (ba * (B - t[c]) + t[c] - b[c]) + b[c];
            }
        }
    }
    return {stored(out[0]), stored(out[1]), stored(out[2]), stored(A * white)};
}

// ---- Images and renders ----

// The pixels of `top` over `base` through a node of `mode`, into an output the size of `base`.
std::vector<Pixel> blend(int mode, float opacity, ImageBuffer& base, ImageBuffer& top) {
    Layer baseLayer(&base), topLayer(&top);
    BlendNode node(baseLayer, topLayer, mode, opacity);
    return Test::renderNode(node, base.rect, base.pixelFormat());
}

double whiteOf(int depth) {
    return depth == 8 ? 255 : depth == 16 ? 32768 : 1;
}

// Pairs of base and top pixels: every corner of transparent and opaque, plain values, ties, and at
// float values outside 0..1; at 16 bits a few values above white, which the kernels take as they are.
std::pair<std::vector<Pixel>, std::vector<Pixel>> pixelPairs(int depth) {
    const double white = whiteOf(depth);
    std::vector<double> values = {0, 0.2, 0.25, 0.5, 0.6, 0.75, 0.9, 1, 0.33, 0.5};
    if (depth == 32) values.insert(values.end(), {-0.3, 1.4, 2.0});
    if (depth == 16) values.push_back(40000 / white);
    const std::vector<double> alphas = {0, 1, 0.4, 0.75};
    const auto units = [&](double v) { return depth == 32 ? v : std::round(v * white); };
    std::vector<Pixel> base, top;
    uint32_t seed = 7;
    const auto next = [&](std::size_t n) { return (seed = seed * 1103515245u + 12345u) / 65536u % n; };
    for (int i = 0; i < 61; ++i) {
        Pixel b, t;
        for (int c = 0; c < 3; ++c)
            b[c] = units(values[next(values.size())]), t[c] = units(values[next(values.size())]);
        b[3] = units(alphas[i % 4]), t[3] = units(alphas[i / 4 % 4]);
        if (i % 5 == 0) t[1] = t[0];  // ties in the largest or middle component
        if (i % 7 == 0) b[2] = b[0];
        base.push_back(b), top.push_back(t);
    }
    return {base, top};
}

bool same(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

// Every mode of `modes` at every depth and order, at two opacities, against the formulas.
void expectFormulas(const std::vector<int>& modes) {
    for (const PixelFormat format : Test::kEveryFormat) {
        const int depth = Image::formatDepth(format);
        const auto [basePixels, topPixels] = pixelPairs(depth);
        ImageBuffer base = imageOf(basePixels, format), top = imageOf(topPixels, format);
        for (const int mode : modes) {
            for (const float opacity : {1.0f, 0.6f}) {
                const auto out = blend(mode, opacity, base, top);
                for (std::size_t x = 0; x < out.size(); ++x) {
                    const Pixel want = expected(mode, basePixels[x], topPixels[x], opacity, depth);
                    for (int c = 0; c < 4; ++c)
                        EXPECT_PRED2(same, out[x][c], want[c])
                            << "mode " << mode << " format " << std::hex << format << std::dec << " opacity "
                            << opacity << " pixel " << x << " component " << c;
                }
            }
        }
    }
}

// One pixel of `mode` over one pixel, at the depth of `format`.
Pixel blendOne(int mode, const Pixel& base, const Pixel& top, PixelFormat format, float opacity = 1) {
    ImageBuffer baseImage = imageOf({base}, format), topImage = imageOf({top}, format);
    return blend(mode, opacity, baseImage, topImage)[0];
}

// ---- The modes ----

TEST(BlendModes, EveryModeFollowsItsFormula) {
    std::vector<int> modes(Image::kBlendModeCount);
    std::iota(modes.begin(), modes.end(), 0);
    expectFormulas(modes);
}

// Values worked out by hand where a rounding, a tie or a boundary decides, or a value lies beyond 0..1.
TEST(BlendModes, ValuesWorkedByHand) {
    const PixelFormat k8 = fourCC("argb"), k8b = fourCC("bgra"), k16 = fourCC("Bgra"), k32 = fourCC("ae32");
    const double w16 = 32768;
    struct Case {
        int mode;
        Pixel base, top;
        PixelFormat format;
        float opacity;
        Pixel want;
    };
    const Case cases[] = {
        // 200 * 100 / 255 = 78.4: B is rounded to a whole value before the composition.
        {Mode::Multiply, {200, 0, 255, 255}, {100, 0, 255, 255}, k8, 1, {78, 0, 255, 255}},
        // Add stops at white and Subtract at 0 at 8 bits; float goes beyond.
        {Mode::Add, {200, 0, 0, 255}, {100, 0, 0, 255}, k8, 1, {255, 0, 0, 255}},
        {Mode::Subtract, {100, 0, 0, 255}, {200, 0, 0, 255}, k8, 1, {0, 0, 0, 255}},
        {Mode::Add, {0.75, 0, 0, 1}, {0.5, 0, 0, 1}, k32, 1, {1.25, 0, 0, 1}},
        {Mode::Subtract, {0.25, 0, 0, 1}, {0.5, 0, 0, 1}, k32, 1, {-0.25, 0, 0, 1}},
        // Divide by zero gives the top, zero; by a negative float it divides.
        {Mode::Divide, {0.25, 0.25, 0, 1}, {0, -0.5, 0, 1}, k32, 1, {0, -0.5, 0, 1}},
        // Burns at a top of 0 or below take the top itself; dodges at a top of 1 or above likewise.
        {Mode::ColorBurn, {0.5, 0.5, 0.5, 1}, {-0.5, 0, 0.75, 1}, k32, 1, {-0.5, 0, 1 - 0.5 / 0.75, 1}},
        {Mode::ColorDodge, {0.3, 0, 0.5, 1}, {1, 1.5, 0.5, 1}, k32, 1, {1, 1.5, 1, 1}},
        {Mode::VividLight, {0.5, 0.5, 0.5, 1}, {0, 1, 0.25, 1}, k32, 1, {0, 1, 0, 1}},
        // Equal luminance: 0.3 * 0.59 - 0.59 * 0.3 is exactly 0, and both modes then take the top.
        {Mode::DarkerColor, {0, 0.3, 0.5, 1}, {0.59, 0, 0.5, 1}, k32, 1, {0.59, 0, 0.5, 1}},
        {Mode::LighterColor, {0, 0.3, 0.5, 1}, {0.59, 0, 0.5, 1}, k32, 1, {0.59, 0, 0.5, 1}},
        {Mode::DarkerColor, {0, 0.3, 0.5, 1}, {0.6, 0, 0.5, 1}, k32, 1, {0, 0.3, 0.5, 1}},
        // The hue of a grey is none at all: a grey of the base's luminance, 30 * 0.2 + 59 * 0.6 + 11 * 0.4.
        {Mode::Hue, {0.2, 0.6, 0.4, 1}, {0.5, 0.5, 0.5, 1}, k32, 1, {0.458, 0.458, 0.458, 1}},
        {Mode::Darken, {100, 200, 50, 255}, {150, 120, 50, 255}, k8, 1, {100, 120, 50, 255}},
        {Mode::Lighten, {100, 200, 50, 255}, {150, 120, 50, 255}, k8, 1, {150, 200, 50, 255}},
        // A transparent base stands aside: the top's colours.
        {Mode::Darken, {10, 200, 50, 0}, {150, 120, 60, 255}, k8, 1, {150, 120, 60, 255}},
        // A top of a half leaves the base as it is.
        {Mode::SoftLight, {0.3, 0.7, 0.1, 1}, {0.5, 0.5, 0.5, 1}, k32, 1, {0.3, 0.7, 0.1, 1}},
        // Both transparent: no division, and the burn's 1 - r with r = 0 is white at alpha 0.
        {Mode::ClassicColorBurn, {10, 20, 30, 0}, {40, 50, 60, 0}, k8, 1, {255, 255, 255, 0}},
        {Mode::ClassicDifference, {0.75, 0.25, 0.5, 1}, {0.5, 0.5, 0.5, 1}, k32, 1, {0.25, 0.25, 0, 1}},
        // A weighted top at 1 or above stands for r as it is.
        {Mode::ClassicColorDodge, {6554, 0, 30000, w16}, {w16, w16, w16, w16}, k16, 1, {w16, w16, w16, w16}},
        // The base's colours with alpha cut by the top; a black top has no luminance: the stencil is
        // empty, the silhouette full.
        {Mode::StencilAlpha, {10, 20, 30, 255}, {255, 255, 255, 128}, k8, 1, {10, 20, 30, 128}},
        {Mode::SilhouetteAlpha, {10, 20, 30, 255}, {255, 255, 255, 128}, k8, 1, {10, 20, 30, 127}},
        {Mode::StencilLuma, {10, 20, 30, 255}, {0, 0, 0, 255}, k8b, 1, {10, 20, 30, 0}},
        {Mode::SilhouetteLuma, {10, 20, 30, 255}, {0, 0, 0, 255}, k8b, 1, {10, 20, 30, 255}},
        // Normal works in the stored scale: (t - b) f + b + 0.5 with f = 0.6 / 0.6. An opacity of 0 gives
        // the base.
        {Mode::Normal, {100, 0, 255, 0}, {201, 50, 0, 255}, k8, 0.6f, {201, 50, 0, 153}},
        {Mode::Normal, {0.1, 0.2, 0.3, 0.4}, {1, 1, 1, 1}, k32, 0, {0.1f, 0.2f, 0.3f, 0.4f}},
        // Behind: the second input under the first, the opacity on the first.
        {Mode::Behind, {200, 100, 0, 255}, {0, 50, 100, 255}, k8, 0.5f, {100, 75, 50, 255}},
        // Alpha Add: 0.5 + 0.5 = 1, the top's share a half.
        {Mode::AlphaAdd, {0.25, 0, 1, 0.5}, {0.75, 1, 0, 0.5}, k32, 1, {0.5, 0.5, 0.5, 1}},
        // Luminescent Premul: over an opaque base A = 1, k = 1 and e = a: out = t + (1 - a) b.
        {Mode::LuminescentPremul, {0.5, 0.25, 1, 1}, {0.25, 0.5, 0, 0.5}, k32, 1, {0.5, 0.625, 0.5, 1}},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const Case& c = cases[i];
        const Pixel got = blendOne(c.mode, c.base, c.top, c.format, c.opacity);
        for (int k = 0; k < 4; ++k)
            EXPECT_NEAR(got[k], c.want[k], 1e-6) << "case " << i << ", component " << k;
    }
}

// Where two components tie for the largest, the first of red, green, blue takes the saturation as it is
// and the other, as the middle one, takes (md - mn) s / (mx - mn), which here differs from s in the last
// bit: the order shows in the output.
TEST(BlendModes, SetSatTiesGoInAFixedOrder) {
    const Pixel base = {0.1, 0.1, 0.9, 1};
    const std::tuple<Pixel, int, int> ties[] = {
        {{0.3, 0.3, 0.1, 1}, 0, 1}, {{0.1, 0.3, 0.3, 1}, 1, 2}, {{0.3, 0.1, 0.3, 1}, 0, 2}};
    for (const auto& [top, largest, middle] : ties) {
        const Pixel out = blendOne(Mode::Hue, base, top, fourCC("ae32"));
        EXPECT_EQ(out, expected(Mode::Hue, base, top, 1, 32));
        EXPECT_NE(out[largest], out[middle]);
    }
}

// The base's colour at the top's luminance, 0.5, has a component below 0 and one above 1: both pulls
// apply, the second to the result of the first, and bring it into 0..1 at the same luminance. At a
// luminance above 1 no test can bring the colour back, and no clamp follows: the largest component comes
// to 1 and the others lie beyond it.
TEST(BlendModes, ClipColorLimitsByItsTwoTestsAlone) {
    const Pixel out = blendOne(Mode::Luminosity, {1.5, 0.2, -0.6, 1}, {0.5, 0.5, 0.5, 1}, fourCC("ae32"));
    EXPECT_EQ(out, expected(Mode::Luminosity, {1.5, 0.2, -0.6, 1}, {0.5, 0.5, 0.5, 1}, 1, 32));
    EXPECT_NEAR(0.3 * out[0] + 0.59 * out[1] + 0.11 * out[2], 0.5, 1e-6);
    EXPECT_GE(*std::min_element(out.begin(), out.begin() + 3), -1e-6);
    EXPECT_LE(*std::max_element(out.begin(), out.begin() + 3), 1 + 1e-6);
    const Pixel bright = blendOne(Mode::Luminosity, {0.2, 0.6, 0.4, 1}, {1.5, 1.5, 1.5, 1}, fourCC("ae32"));
    EXPECT_NEAR(bright[1], 1, 1e-6);
    EXPECT_GT(bright[0], 2);
    EXPECT_GT(bright[2], 1.5);
}

// ---- Layers and bounds ----

TEST(Blend, InputsKeepTheirPlacesAndReadAsTransparentOutsideThem) {
    ImageBuffer base, top;
    base.allocate({0, 0, 6, 3}, fourCC("argb"));
    top.allocate({3, 1, 5, 2}, fourCC("argb"));
    Image::Testing::fill<uint8_t>(base, 200);
    Image::Testing::fill<uint8_t>(top, 255);
    const auto normal = blend(Mode::Normal, 1, base, top);
    const auto stencil = blend(Mode::StencilAlpha, 1, base, top);
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 6; ++x) {
            const bool inTop = y == 1 && x >= 3 && x < 5;
            const auto& n = normal[static_cast<std::size_t>(y * 6 + x)];
            const auto& s = stencil[static_cast<std::size_t>(y * 6 + x)];
            EXPECT_EQ(n, (inTop ? Pixel{255, 255, 255, 255} : Pixel{200, 200, 200, 200})) << x << "," << y;
            EXPECT_EQ(s, (Pixel{200, 200, 200, inTop ? 200.0 : 0.0})) << x << "," << y;
        }
    }
}

TEST(BlendFilter, BoundsFollowTheModeAndTheSelection) {
    Layer base(nullptr, {0, 0, 10, 10}), top(nullptr, {5, 5, 20, 8}),
        generator(nullptr, PixelRect::infinite());
    const PixelRect overlap{5, 5, 10, 8}, box{0, 0, 20, 10};
    for (const int mode : {Mode::Darken, Mode::StencilAlpha, Mode::StencilLuma}) {
        BlendNode node(base, top, mode, 1);
        EXPECT_EQ(node.bounds(), overlap);
        EXPECT_EQ(BlendNode(base, generator, mode, 1).bounds(), base.bounds());
    }
    for (const int mode : {Mode::Normal, Mode::Multiply, Mode::SilhouetteAlpha, Mode::Behind}) {
        BlendNode node(base, top, mode, 1);
        EXPECT_EQ(node.bounds(), box);
        EXPECT_TRUE(BlendNode(generator, top, mode, 1).bounds().isInfinite());
    }
    BlendNode node(base, top, Mode::Darken, 1);
    const std::pair<int32_t, PixelRect> selections[] = {
        {1, overlap}, {2, box}, {3, base.bounds()}, {4, top.bounds()}, {7, box}};
    for (const auto& [selection, bounds] : selections) {
        node.boundsSelection = static_cast<Image::BlendBounds>(selection);
        EXPECT_EQ(node.bounds(), bounds) << selection;
    }

    // Each input is asked only for what it can give of the request.
    EXPECT_EQ(node.inputRect({2, 2, 30, 6}, 0), (PixelRect{2, 2, 10, 6}));
    EXPECT_EQ(node.inputRect({2, 2, 30, 6}, 1), (PixelRect{5, 5, 20, 6}));
    EXPECT_TRUE(node.inputRect({30, 30, 40, 40}, 1).isEmpty());
}

// Without a second layer, or with one that has no pixels, the effect's own layer passes through whatever
// the mode, even one that would change it under a transparent top.
TEST(BlendPlugin, WithoutASecondLayerTheInputPassesThrough) {
    const std::vector<Pixel> pixels = {{0.25, 0.5, 2, 0.75}, {-1, 0, 1, 0}};
    ImageBuffer empty;
    empty.allocate(PixelRect::empty(), fourCC("ae32"));
    for (const int mode : {Mode::StencilAlpha, Mode::ClassicColorBurn}) {
        for (ImageBuffer* layer : {static_cast<ImageBuffer*>(nullptr), &empty}) {
            ImageBuffer* layers[] = {layer};
            const auto setMode = [&](Param::Parameters& params) { params.setInt(mode, BlendParam::Mode); };
            EXPECT_EQ(
                Tw::Test::renderEffect<BlendPlugin<StandaloneHost>>(pixels, fourCC("ae32"), setMode, layers),
                pixels)
                << mode;
        }
    }
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Plugins
