// The domain transform blur against a plain scalar model of its recursion, and the node in the graph.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <optional>
#include <random>

#include "host/standalone/Host.h"
#include "image/filters/retouch/DomainTransformBlurFilter.h"
#include "image/graph/Scheduler.h"
#include "image/graph/StoredVectors.h"
#include "image/graph/VectorMath.h"
#include "tests/support/BareHost.h"
#include "tests/support/ComponentGrid.h"

namespace Tw::Image {
namespace TW_FILE_LOCAL {

using Host = Tw::Host::Standalone::Host;
using Layer = FilterLayer<Host>;
using Blur = DomainTransformBlurFilter<Host>;
using Tw::Test::BareHost;

const PixelFormat kFormats[] = {fourCC("argb"), fourCC("ae16"), fourCC("ae32"), fourCC("bgra")};

// Components in memory order, in the image's own units, row after row.
struct Pixels {
    explicit Pixels(const PixelRect& r) : rect(r), v(std::size_t(r.width()) * r.height() * 4) {}
    std::size_t index(int32_t x, int32_t y, int c) const {
        return (std::size_t(y - rect.top) * rect.width() + (x - rect.left)) * 4 + c;
    }
    float& at(int32_t x, int32_t y, int c) { return v[index(x, y, c)]; }
    float at(int32_t x, int32_t y, int c) const { return v[index(x, y, c)]; }
    bool operator==(const Pixels& o) const {  // bit for bit
        return rect == o.rect && std::memcmp(v.data(), o.v.data(), v.size() * sizeof(float)) == 0;
    }
    PixelRect rect;
    std::vector<float> v;
};

ImageBuffer imageOf(const Pixels& pixels, PixelFormat format) {
    return Tw::Test::gridImage(pixels.rect, format,
                               [&](int32_t x, int32_t y, int c) { return pixels.at(x, y, c); });
}

Pixels pixelsOf(const ImageBuffer& image) {
    Pixels pixels(image.rect);
    Tw::Test::forEachComponent(image,
                               [&](int32_t x, int32_t y, int c, double v) { pixels.at(x, y, c) = float(v); });
    return pixels;
}

// Random values of the depth: 16-bit ones at times beyond white, float ones a little outside 0..1.
Pixels randomPixels(const PixelRect& rect, int depth, uint32_t seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> unit(-0.1f, 1.2f);
    Pixels pixels(rect);
    for (float& v : pixels.v) {
        const float u = unit(random);
        v = depth == 32  ? u
            : depth == 8 ? std::floor(std::clamp(u, 0.0f, 1.0f) * 255)
                         : std::floor(std::max(u, 0.0f) * 32768);
    }
    return pixels;
}

// The filter as it is described, written plainly: scalar, one component at a time.
struct Model {
    DomainTransformParams p;  // as the filter holds them
    int depth;
    PixelRect bounds;

    float inUnits(float v) const { return depth == 8 ? v / 255.0f : depth == 16 ? v * 0x1p-15f : v; }
    float stored(float acc) const {
        const float white = depth == 8 ? 255.0f : 32768.0f;
        return depth == 32                   ? acc
               : std::max(acc, 0.0f) > white ? white
                                             : std::trunc(std::max(acc, 0.0f) + 0.5f);
    }
    PixelRect margin(const PixelRect& out, uint64_t k) const {
        const int32_t mx = int32_t(std::ceil(p.sigmaX * 3.5f)) * int32_t(k);
        const int32_t my = int32_t(std::ceil(3.5f * p.sigmaY)) * int32_t(k);
        return PixelRect{out.left - mx, out.top - my, out.right + mx, out.bottom + my}.intersect(bounds);
    }
    // D in component 0: 1 + scale * the sum of |steps| to (x + dx, y + dy), clamped to the guide, plus edges.
    Pixels plane(const Pixels& guide, const Pixels* edges, float edgeScale, const PixelRect& rect, int dx,
                 int dy, float scale) const {
        Pixels d(rect);
        const PixelRect g = guide.rect;
        for (int32_t y = rect.top; y < rect.bottom; ++y) {
            for (int32_t x = rect.left; x < rect.right; ++x) {
                const int32_t x0 = std::clamp(x, g.left, g.right - 1),
                              x1 = std::clamp(x + dx, g.left, g.right - 1);
                const int32_t y0 = std::clamp(y, g.top, g.bottom - 1),
                              y1 = std::clamp(y + dy, g.top, g.bottom - 1);
                float sum = 0, edgeSum = 0;
                for (int c = 0; c < 4; ++c) {
                    sum += inUnits(std::fabs(guide.at(x1, y1, c) - guide.at(x0, y0, c)));
                    if (edges) edgeSum += edges->at(x, y, c);
                }
                d.at(x, y, 0) = 1.0f + scale * sum;
                if (edges) d.at(x, y, 0) = inUnits(edgeSum * edgeScale) + d.at(x, y, 0);
            }
        }
        return d;
    }
    // One line over positions 0..n-1, the destination taking begin..end-1.
    void line(int32_t n, int32_t begin, int32_t end, const std::function<float(int32_t)>& src,
              const std::function<float(int32_t)>& w, const std::function<void(int32_t, float)>& dst) const {
        std::vector<float> kept(static_cast<std::size_t>(n));
        float acc = kept[0] = src(0);
        for (int32_t q = 1; q < n; ++q)
            kept[q] = stored(acc = (acc - src(q)) * w(q) + src(q));
        for (int32_t q = n - 2; q >= end - 1; --q)
            acc = (acc - kept[q]) * w(q + 1) + kept[q];
        dst(end - 1, stored(acc));
        for (int32_t q = end - 2; q >= begin; --q) {
            acc = (acc - kept[q]) * w(q + 1) + kept[q];
            dst(q, stored(acc));
        }
    }
    static float weight(float sigma, float d) {
        return power2<4>(FloatVector<4>{} + -1.4142135f / sigma / std::log(2.0f) * d)[0];
    }
    Pixels run(Pixels source, const Pixels& guide, const Pixels* edges, float edgeScale,
               const PixelRect& out) const {
        const uint64_t n = p.iterations;
        const PixelRect full = margin(out, n);
        Pixels px = plane(guide, edges, edgeScale, full, 1, 0, p.sigmaX / p.sigmaR);
        Pixels py = plane(guide, edges, edgeScale, full, 0, 1, p.sigmaY / p.sigmaR);
        for (uint64_t i = 0; i < n; ++i) {
            const PixelRect a = margin(out, n - i), b = margin(out, n - i - 1);
            const float f =
                1.7320508f * std::exp2(float(n - 1 - i)) / std::sqrt(std::pow(4.0f, float(n)) - 1.0f);
            Pixels rows({b.left, a.top, b.right, a.bottom}), next(b);
            for (int32_t y = a.top; y < a.bottom; ++y)
                for (int c = 0; c < 4; ++c)
                    line(
                        a.width(), b.left - a.left, b.right - a.left,
                        [&](int32_t q) { return source.at(a.left + q, y, c); },
                        [&](int32_t q) { return weight(p.sigmaX * f, px.at(a.left + q, y, 0)); },
                        [&](int32_t q, float v) { rows.at(a.left + q, y, c) = v; });
            for (int32_t x = b.left; x < b.right; ++x)
                for (int c = 0; c < 4; ++c)
                    line(
                        a.height(), b.top - a.top, b.bottom - a.top,
                        [&](int32_t q) { return rows.at(x, a.top + q, c); },
                        [&](int32_t q) { return weight(p.sigmaY * f, py.at(x, a.top + q, 0)); },
                        [&](int32_t q, float v) { next.at(x, a.top + q, c) = v; });
            source = std::move(next);
        }
        return source;
    }
};

struct Options {
    ImageBuffer* guide = nullptr;
    ImageBuffer* edges = nullptr;
    float edgeScale = 0;
};

// The blur of `image` over `request`, through the graph.
Pixels render(ImageBuffer& image, const DomainTransformParams& params, const PixelRect& request,
              const Options& options = {}) {
    BareHost host;
    Layer layer(&image);
    std::optional<Layer> guide, edges;
    Blur blur(layer, params, options.guide != nullptr);
    if (options.guide) blur.appendInput(guide.emplace(options.guide));
    if (options.edges) blur.appendInput(edges.emplace(options.edges));
    blur.edgeScale = options.edgeScale;
    ImageBuffer out;
    out.allocate(request, image.pixelFormat());
    prepareGraph<Host>(blur, host, out);
    EXPECT_EQ(host.bytesInUse(), 0u);
    return pixelsOf(out);
}

Model modelOf(ImageBuffer& image, const DomainTransformParams& params) {
    Layer layer(&image);
    return {Blur(layer, params, true).params, image.depth(), image.rect};
}

TEST(DomainTransformPictures, AFlatImageStaysExactlyFlat) {
    for (const PixelFormat format : kFormats) {
        Pixels flat({0, 0, 23, 17});
        for (std::size_t i = 0; i < flat.v.size(); ++i)
            flat.v[i] = formatDepth(format) == 32 ? 0.3f + 0.2f * (i % 4) : float(40 + 50 * (i % 4));
        ImageBuffer image = imageOf(flat, format);
        for (const uint64_t iterations : {1u, 3u})
            EXPECT_TRUE(render(image, {4, 6, 0.2f, iterations}, image.rect) == flat) << formatDepth(format);
    }
}

TEST(DomainTransformPictures, AStepEdgeStaysAStepWhereAPlainBlurSmearsIt) {
    Pixels step({0, 0, 64, 4});
    for (std::size_t i = 0; i < step.v.size(); ++i)
        step.v[i] = i % 4 == 3 ? 1.0f : i / 4 % 64 < 32 ? 0.2f : 0.8f;
    ImageBuffer image = imageOf(step, fourCC("ae32"));
    Pixels kept = render(image, {8, 8, 0.1f, 3}, image.rect);
    float jump = 0, boxJump = 0, previousBox = 0.2f;
    for (int32_t x = 1; x < 64; ++x) {
        jump = std::max(jump, std::fabs(kept.at(x, 2, 0) - kept.at(x - 1, 2, 0)));
        float box = 0;  // radius 8
        for (int32_t u = x - 8; u <= x + 8; ++u)
            box += step.at(std::clamp(u, 0, 63), 2, 0) / 17;
        boxJump = std::max(boxJump, std::fabs(box - previousBox));
        previousBox = box;
    }
    EXPECT_GT(jump, 0.3f);
    EXPECT_LT(boxJump, 0.05f);
    // The plane at x holds the step to x + 1 and feeds the step into x, so the blur stops one pixel early:
    // the dark side keeps its value up to the pixel before the last, and the last joins the bright side.
    for (int32_t x = 0; x < 31; ++x)
        ASSERT_EQ(kept.at(x, 2, 0), 0.2f) << x;
    EXPECT_GT(kept.at(31, 2, 0), 0.5f);
    EXPECT_NEAR(kept.at(63, 2, 0), 0.8f, 0.01f);
}

TEST(DomainTransformModel, EveryEightBitStepIsDividedBy255AsTheDivisionRoundsIt) {
    for (int step = 0; step <= 255; ++step) {
        volatile float quotient = float(step) / 255.0f;  // kept from being folded into a multiplication
        ASSERT_EQ(wholeStepOf255(float(step)), quotient) << step;
    }
}

TEST(DomainTransformModel, MatchesBitForBitAtEveryDepthIterationsAndInputs) {
    const PixelRect frame{-5, 3, 40, 31}, part{9, 12, 30, 20};
    for (const PixelFormat format : kFormats) {
        const int depth = formatDepth(format);
        const Pixels pixels = randomPixels(frame, depth, 7), other = randomPixels(frame, depth, 8);
        const Pixels edgePixels = randomPixels(frame, depth, 9);
        ImageBuffer image = imageOf(pixels, format), guide = imageOf(other, format),
                    edges = imageOf(edgePixels, format);
        for (const auto& params :
             {DomainTransformParams{2.5f, 1.5f, 0.3f, 1}, DomainTransformParams{2.5f, 1.5f, 0.3f, 3},
              DomainTransformParams{9, 9, 0.05f, 3}}) {
            SCOPED_TRACE(testing::Message() << depth << " bits, " << params.iterations << " iterations");
            const Model model = modelOf(image, params);
            for (const PixelRect& out : {frame, part, PixelRect{30, 3, 31, 31}})
                EXPECT_TRUE(render(image, params, out) == model.run(pixels, pixels, nullptr, 0, out));
            EXPECT_TRUE(render(image, params, part, {.guide = &guide}) ==
                        model.run(pixels, other, nullptr, 0, part));
            EXPECT_TRUE(render(image, params, part, {.edges = &edges, .edgeScale = 0.75f}) ==
                        model.run(pixels, pixels, &edgePixels, 0.75f, part));
            EXPECT_TRUE(render(image, params, frame, {.guide = &guide, .edges = &edges, .edgeScale = 1}) ==
                        model.run(pixels, other, &edgePixels, 1, frame));
        }
    }
}

TEST(DomainTransformModel, ProductsBelowTheSmallestNormalFloatChangeNoStoredValue) {
    // One white column, then black, with a narrow reach: the accumulator decays from white by a fifth a
    // step and goes below the smallest normal float well before the end of the line. Integer images
    // flush such results. Float images keep them, and their black here is itself below the smallest
    // normal float, which a flush would turn into zero.
    const PixelRect frame{0, 0, 64, 4};
    const DomainTransformParams params{1, 1, 0.5f, 3};
    for (const PixelFormat format : kFormats) {
        const int depth = formatDepth(format);
        const float black = depth == 32 ? 1e-40f : 0.0f;
        const float white = depth == 8 ? 255.0f : depth == 16 ? 32768.0f : 1.0f;
        Pixels stripes(frame);
        for (std::size_t i = 0; i < stripes.v.size(); ++i)
            stripes.v[i] = i / 4 % 64 == 0 ? white : black;
        ImageBuffer image = imageOf(stripes, format);
        const Pixels expected = modelOf(image, params).run(stripes, stripes, nullptr, 0, frame);
        EXPECT_TRUE(render(image, params, frame) == expected) << depth;
        if (depth == 32) {
            const bool keepsTinyValues = std::any_of(expected.v.begin(), expected.v.end(), [](float v) {
                return v != 0 && std::fabs(v) < std::numeric_limits<float>::min();
            });
            EXPECT_TRUE(keepsTinyValues);
        }
    }
}

TEST(DomainTransformRegions, PartOfTheFrameIsTheWholeFrameInsideTheMargin) {
    const PixelRect frame{0, 0, 90, 70};
    ImageBuffer image = imageOf(randomPixels(frame, 32, 5), fourCC("ae32"));
    const DomainTransformParams params{2, 2, 0.3f, 3};  // 7 pixels of margin a pass
    Pixels whole = render(image, params, frame);
    // Within one pass's margin of every edge, all passes but the last see the whole frame, and the last
    // reads whole lines: the same bits.
    const PixelRect near{6, 5, 84, 64};
    Pixels part = render(image, params, near);
    // Deeper inside the margins cut the lines short; what they cut weighs less than a float's last bit.
    const PixelRect deep{30, 25, 60, 45};
    Pixels inner = render(image, params, deep);
    for (int32_t y = near.top; y < near.bottom; ++y)
        for (int32_t x = near.left; x < near.right; ++x)
            for (int c = 0; c < 4; ++c) {
                ASSERT_EQ(part.at(x, y, c), whole.at(x, y, c)) << x << "," << y;
                if (deep.contains({x, y, x + 1, y + 1})) {
                    ASSERT_NEAR(inner.at(x, y, c), whole.at(x, y, c), 1e-6);
                }
            }
    // Where the output reaches beyond the bounds the blur has nothing to say: transparent black.
    Pixels wider = render(image, params, {-2, -1, 92, 71});
    EXPECT_EQ(wider.at(-2, -1, 0), 0.0f);
    EXPECT_EQ(wider.at(91, 40, 3), 0.0f);
    EXPECT_EQ(wider.at(45, 70, 1), 0.0f);
    EXPECT_EQ(wider.at(45, 69, 1), whole.at(45, 69, 1));

    Layer layer(&image);
    Blur blur(layer, {2.1f, 1, 0.1f, 3}, true);  // 8 and 4 pixels a pass
    EXPECT_EQ(blur.marginRect({50, 20, 60, 30}, 0), (PixelRect{50, 20, 60, 30}));
    EXPECT_EQ(blur.marginRect({50, 20, 60, 30}, 2), (PixelRect{34, 12, 76, 38}));
    EXPECT_EQ(blur.inputRect({50, 20, 60, 30}, 2), (PixelRect{26, 8, 84, 42}));
    EXPECT_EQ(blur.inputRect({80, 60, 90, 70}, 0), (PixelRect{56, 48, 90, 70}));
    // The planes ask for one more column, and no more rows even down the columns.
    BareHost host;
    blur.splitPasses(host);
    EXPECT_EQ(blur.dxNode.inputRect({50, 20, 60, 30}, 0), (PixelRect{50, 20, 61, 30}));
    EXPECT_EQ(blur.dyNode.inputRect({50, 20, 60, 30}, 0), (PixelRect{50, 20, 61, 30}));
    EXPECT_EQ(blur.dyNode.inputRect({50, 20, 90, 70}, 0), (PixelRect{50, 20, 90, 70}));
}

TEST(DomainTransformSigmas, EachIterationTakesItsShareWidestFirst) {
    EXPECT_EQ(domainTransformSigmaFactor(0, 1), 1.0f);
    const float root63 = std::sqrt(63.0f), root3 = std::sqrt(3.0f);
    EXPECT_NEAR(domainTransformSigmaFactor(0, 3), 4 * root3 / root63, 1e-6);
    EXPECT_NEAR(domainTransformSigmaFactor(1, 3), 2 * root3 / root63, 1e-6);
    EXPECT_NEAR(domainTransformSigmaFactor(2, 3), root3 / root63, 1e-6);
    ImageBuffer image;
    image.allocate({0, 0, 4, 4}, fourCC("ae32"));
    Layer layer(&image);
    const Blur small(layer, {0, -2, 0.0001f, 2}, true);
    EXPECT_EQ(small.params.sigmaX, 0.001f);
    EXPECT_EQ(small.params.sigmaY, 0.001f);
    EXPECT_EQ(small.params.sigmaR, 0.001f);
}

TEST(DomainTransformGraph, NoReachOrNoIterationsPassesTheInputThrough) {
    const Pixels pixels = randomPixels({0, 0, 6, 5}, 32, 3);
    ImageBuffer image = imageOf(pixels, fourCC("ae32"));
    Layer layer(&image);
    EXPECT_EQ(Blur(layer, {0, 0, 0.1f, 3}, true).passThroughInput(), 0);
    EXPECT_EQ(Blur(layer, {0.001f, 0.0005f, 0.1f, 3}, true).passThroughInput(), 0);
    EXPECT_EQ(Blur(layer, {5, 5, 0.1f, 0}, true).passThroughInput(), 0);
    EXPECT_EQ(Blur(layer, {0.0011f, 0, 0.1f, 1}, true).passThroughInput(), -1);
    EXPECT_TRUE(render(image, {0, 0, 0.1f, 3}, image.rect) == pixels);
    EXPECT_TRUE(render(image, {4, 4, 0.1f, 0}, image.rect) == pixels);
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Image
