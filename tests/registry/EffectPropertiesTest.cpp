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

#include "host/standalone/Host.h"
#include "plugins/EffectRegistry.h"
#include "tests/support/PatternImage.h"
#include "tools/common/ParameterLabels.h"
#include "tools/common/ParameterValues.h"

namespace Tw::Plugins {
namespace {

using Image::CpuFeatures;
using Image::fourCC;
using Image::ImageBuffer;
using Image::PixelFormat;
using Image::PixelRect;
using StandaloneHost = Tw::Host::Standalone::Host;
using Entry = EffectEntry<StandaloneHost>;
namespace ErrorCode = Tw::Host::Standalone::ErrorCode;

const PixelFormat kFormats[] = {fourCC("argb"), fourCC("ae16"), fourCC("ae32"),
                                fourCC("bgra"), fourCC("Bgra"), fourCC("BGra")};
const PixelRect kFrame = {0, 0, 61, 43};
// A further layer smaller than the frame and off its origin, so that both its edges and the frame's show.
const PixelRect kLayerFrame = {-7, 5, 40, 52};

enum class Settings { Defaults, Busy, Neutral };

struct Case {
    const Entry* effect;
    Settings settings;
};

std::string caseName(const testing::TestParamInfo<Case>& info) {
    return std::string(info.param.effect->shortName()) +
           (info.param.settings == Settings::Busy ? "Busy" : "Defaults");
}

std::vector<Case> casesOf(std::initializer_list<Settings> settings) {
    std::vector<Case> cases;
    for (const Entry& effect : effectRegistry<StandaloneHost>())
        for (Settings s : settings)
            cases.push_back({&effect, s});
    return cases;
}

// One render of an effect, set up as a user would: the frame, its further layers, the settings typed.
class Render {
public:
    Render(const Case& c, PixelFormat format)
        : effect_(c.effect->create()), input_(Test::patternImage(kFrame, format, 1)) {
        effect_->defineParameters(params_);
        const auto typed = c.settings == Settings::Busy      ? c.effect->busySettings
                           : c.settings == Settings::Neutral ? c.effect->neutralSettings
                                                             : std::span<const char* const>{};
        for (std::string_view setting : typed) {
            const std::size_t equals = setting.find('=');
            const int index = Tools::findParameter(params_, setting.substr(0, equals), c.effect->displayName);
            std::ostringstream warnings;
            Tools::setParameterFromText(params_, index, setting.substr(equals + 1), warnings);
            EXPECT_EQ(warnings.str(), "") << setting;
        }
        // Neutral settings leave the further layers unset, as a user switching the effect off would.
        if (c.effect->inputs == EffectInputs::Layers && c.settings != Settings::Neutral) {
            layer_ = Test::patternImage(kLayerFrame, format, 2);
            layers_.push_back(&layer_);
        }
    }

    StandaloneHost& host() { return *effect_; }
    const ImageBuffer& input() const { return input_; }

    // The effect's output over `rect`, from a render expected to succeed.
    ImageBuffer run(const PixelRect& rect) {
        ImageBuffer output;
        EXPECT_EQ(runInto(output, rect), ErrorCode::kNone);
        return output;
    }
    int32_t runInto(ImageBuffer& output, const PixelRect& rect) {
        output.allocate(rect, input_.pixelFormat());
        return effect_->render(params_, input_, output, layers_);
    }

private:
    std::unique_ptr<StandaloneHost> effect_;
    Tw::Host::Param::Parameters params_;
    ImageBuffer input_;
    ImageBuffer layer_;
    std::vector<ImageBuffer*> layers_;
};

std::string formatText(PixelFormat format) {
    return std::string(reinterpret_cast<const char*>(&format), 4);
}

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
                         testing::ValuesIn(casesOf({Settings::Defaults, Settings::Busy})), caseName);

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
    for (PixelFormat format : kFormats) {
        Render render(GetParam(), format);
        render.host().threadCount = 1;
        const ImageBuffer reference = render.run(kFrame);
        for (const Run& r : runs) {
            render.host().featureMask = r.features;
            render.host().threadCount = r.workers;
            EXPECT_TRUE(sameBits(render.run(kFrame), reference, kFrame))
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
// never more. A region read too short, or shifted, differs by the pattern's own contrast.
TEST_P(EveryEffect, GivesInARegionWhatTheWholeFrameGivesThere) {
    const PixelRect regions[] = {
        {17, 11, 40, 30}, {0, 0, 9, 43}, {52, 38, 61, 43}, {3, 20, 60, 21}, {-5, -3, 20, 12}};
    for (PixelFormat format : kFormats) {
        Render render(GetParam(), format);
        const ImageBuffer whole = render.run(kFrame);
        for (const PixelRect& region : regions) {
            const PixelRect inside = region.intersect(kFrame);
            EXPECT_LE(largestDifference(render.run(region), whole, inside), 1.01 / 255)
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
        const int32_t code = render.runInto(output, kFrame);
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
TEST(EffectSettings, BusyOnesChangeTheFrameAndNeutralOnesGiveItBack) {
    for (const Entry& effect : effectRegistry<StandaloneHost>()) {
        for (PixelFormat format : kFormats) {
            Render busy({&effect, Settings::Busy}, format);
            EXPECT_FALSE(sameBits(busy.run(kFrame), busy.input(), kFrame))
                << effect.displayName << " " << formatText(format);
            if (effect.inputs == EffectInputs::Generator) continue;  // it has no input to give back
            Render neutral({&effect, Settings::Neutral}, format);
            EXPECT_TRUE(sameBits(neutral.run(kFrame), neutral.input(), kFrame))
                << effect.displayName << " " << formatText(format);
        }
    }
}

}  // namespace
}  // namespace Tw::Plugins
