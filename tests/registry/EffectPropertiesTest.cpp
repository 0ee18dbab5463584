// What every effect of the registry must do, whatever it computes: give the same bits in every processor
// variant and for any number of workers, give inside a region exactly what the whole frame gives there,
// release every image when a render is cancelled, give back its input at its neutral settings and change
// it at its busy ones. Each effect runs at its defaults and at the busy settings it declares, at every
// depth and in both component orders; an effect joins these tests by joining the registry.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "tests/registry/EffectRender.h"

namespace Tw::Plugins {
namespace TW_FILE_LOCAL {

using Image::CpuFeatures;
using Image::fourCC;
using Image::ImageBuffer;
using Image::PixelFormat;
using Image::PixelRect;
using Test::EffectSettings;
using Test::formatText;
using Test::kEveryFormat;
using Test::kTestFrame;
using Test::RegistryEntry;
using Test::StandaloneHost;
namespace ErrorCode = Tw::Host::Standalone::ErrorCode;

struct Case {
    const RegistryEntry* effect;
    EffectSettings settings;
};

std::string caseName(const testing::TestParamInfo<Case>& info) {
    return std::string(info.param.effect->shortName()) + Test::nameOf(info.param.settings);
}

std::vector<Case> casesOf(std::initializer_list<EffectSettings> settings) {
    std::vector<Case> cases;
    for (const RegistryEntry& effect : effectRegistry<StandaloneHost>())
        for (EffectSettings s : settings)
            cases.push_back({&effect, s});
    return cases;
}

// A render of the test frame expected to succeed.
class Render : public Test::EffectRender {
public:
    Render(const Case& c, PixelFormat format) : EffectRender(*c.effect, c.settings, format) {}
    ImageBuffer run(const PixelRect& rect) {
        ImageBuffer output;
        EXPECT_EQ(EffectRender::run(output, rect), ErrorCode::kNone);
        return output;
    }
    ImageBuffer runOnAskedInput(const PixelRect& rect) {
        ImageBuffer output;
        EXPECT_EQ(EffectRender::runOnAskedInput(output, rect), ErrorCode::kNone);
        return output;
    }
    using EffectRender::run;
};

// Whether `a` and `b` hold the same bits over `rect`, which both cover.
bool sameBits(const ImageBuffer& a, const ImageBuffer& b, const PixelRect& rect) {
    const std::size_t rowBytes = static_cast<std::size_t>(rect.width()) * 4 * (a.depth() / 8);
    for (int32_t y = rect.top; y < rect.bottom; ++y)
        if (std::memcmp(a.pixelAddress(rect.left, y), b.pixelAddress(rect.left, y), rowBytes) != 0)
            return false;
    return true;
}

class EveryEffect : public testing::TestWithParam<Case> {};

INSTANTIATE_TEST_SUITE_P(Registry, EveryEffect,
                         testing::ValuesIn(casesOf({EffectSettings::Defaults, EffectSettings::Busy})),
                         caseName);

TEST_P(EveryEffect, GivesTheSameBitsInEveryVariantAndForAnyNumberOfWorkers) {
    struct Run {
        CpuFeatures features;
        uint32_t workers;
    };
    const Run runs[] = {{~0u, 2},
                        {~0u, 3},
                        {~0u, 8},
                        {~Image::CpuFeature::kAvx2, 3},
                        {~(Image::CpuFeature::kAvx2 | Image::CpuFeature::kSse41), 2},
                        {0u, 8}};
    for (PixelFormat format : kEveryFormat) {
        Render render(GetParam(), format);
        render.host().threadCount = 1;
        const ImageBuffer reference = render.run(kTestFrame);
        for (const Run& r : runs) {
            render.host().featureMask = r.features;
            render.host().threadCount = r.workers;
            EXPECT_TRUE(sameBits(render.run(kTestFrame), reference, kTestFrame))
                << formatText(format) << " features " << std::hex << r.features << std::dec << ", "
                << r.workers << " workers";
        }
    }
}

// The largest difference between `a` and `b` over `rect`, in fractions of white.
double largestDifference(const ImageBuffer& a, const ImageBuffer& b, const PixelRect& rect) {
    double largest = 0;
    Image::dispatchLayout(a, [&](auto layout) {
        using T = typename decltype(layout)::Component;
        for (int32_t y = rect.top; y < rect.bottom; ++y) {
            const T* p = reinterpret_cast<const T*>(a.pixelAddress(rect.left, y));
            const T* q = reinterpret_cast<const T*>(b.pixelAddress(rect.left, y));
            for (int32_t i = 0; i < rect.width() * 4; ++i)
                largest = std::max(largest, std::abs(double(p[i]) - double(q[i])) / decltype(layout)::white);
        }
    });
    return largest;
}

// The recursive blurs start their recursion where the region they read ends, a few widths out, where the
// whole frame's recursion carries on: a region may differ from the whole frame by about a step of 8 bits,
// never more. A region read too short, or shifted, differs by the pattern's own contrast. The effect gets
// only the input it asks for, as from a host.
TEST_P(EveryEffect, GivesInARegionWhatTheWholeFrameGivesThere) {
    const PixelRect regions[] = {
        {17, 11, 40, 30}, {0, 0, 9, 43}, {52, 38, 61, 43}, {3, 20, 60, 21}, {-5, -3, 20, 12}};
    for (PixelFormat format : kEveryFormat) {
        Render render(GetParam(), format);
        const ImageBuffer whole = render.run(kTestFrame);
        for (const PixelRect& region : regions) {
            const PixelRect inside = region.intersect(kTestFrame);
            EXPECT_LE(largestDifference(render.runOnAskedInput(region), whole, inside), 1.01 / 255)
                << formatText(format) << " region " << region.left << "," << region.top << " " << region.right
                << "," << region.bottom;
        }
    }
}

TEST_P(EveryEffect, ReleasesEveryImageWhenCancelledAtAnyReport) {
    for (int cancelAt = 1;; ++cancelAt) {
        Render render(GetParam(), fourCC("Bgra"));
        int reports = 0;
        render.host().setProgressCallback([&](uint64_t, uint64_t) { return ++reports < cancelAt; });
        ImageBuffer output;
        const int32_t code = render.run(output, kTestFrame);
        EXPECT_EQ(render.host().bytesInUse(), 0u) << "cancelled at report " << cancelAt;
        if (reports < cancelAt) {  // the render finished before that report
            EXPECT_EQ(code, ErrorCode::kNone);
            EXPECT_GT(cancelAt, 1) << "a render reports its progress";
            break;
        }
        EXPECT_EQ(code, ErrorCode::kInterrupted) << "cancelled at report " << cancelAt;
    }
}

// The busy settings are what the tests above lean on, so they must do something; the neutral ones are
// what a user reaches for to switch an effect off.
TEST(DeclaredSettings, BusyOnesChangeTheFrameAndNeutralOnesGiveItBack) {
    for (const RegistryEntry& effect : effectRegistry<StandaloneHost>()) {
        for (PixelFormat format : kEveryFormat) {
            Render busy({&effect, EffectSettings::Busy}, format);
            EXPECT_FALSE(sameBits(busy.run(kTestFrame), busy.input(), kTestFrame))
                << effect.displayName << " " << formatText(format);
            // A generator has no input to give back, and some filters no setting that gives it back.
            if (effect.inputs == EffectInputs::Generator || !effect.hasNeutralSettings) continue;
            Render neutral({&effect, EffectSettings::Neutral}, format);
            EXPECT_TRUE(sameBits(neutral.run(kTestFrame), neutral.input(), kTestFrame))
                << effect.displayName << " " << formatText(format);
        }
    }
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Plugins
