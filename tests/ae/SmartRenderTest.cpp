// PF_Cmd_SMART_PRE_RENDER and PF_Cmd_SMART_RENDER: what each effect checks out of its input for a requested
// output, the rectangles it answers, the pre-render data that carries its checkouts to the render, parts of
// a frame rendered alone, and Blend's second layer when it is smaller or larger than the input.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <ostream>
#include <string>

#include "tests/ae/BuiltBundle.h"
#include "tests/ae/StandaloneReference.h"
#include "tests/ae/TestFrames.h"
#include "tools/aehost/SimulatedHost.h"

// Rectangles compared and printed by the assertions, which look for these beside PF_LRect.
static bool operator==(const PF_LRect& a, const PF_LRect& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

static std::ostream& operator<<(std::ostream& out, const PF_LRect& r) {
    return out << "(" << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << ")";
}

namespace Tw::Tools::AeHost {
namespace TW_FILE_LOCAL {

using ::testing::IsEmpty;

constexpr int32_t kWidth = 64;
constexpr int32_t kHeight = 48;
constexpr PF_LRect kWhole{0, 0, kWidth, kHeight};

bool contains(const PF_LRect& outer, const PF_LRect& inner) {
    return outer.left <= inner.left && outer.top <= inner.top && outer.right >= inner.right &&
           outer.bottom >= inner.bottom;
}

PF_LRect intersection(const PF_LRect& a, const PF_LRect& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

Frame crop(const Frame& frame, const PF_LRect& rect) {
    Frame part = Frame::blank(rect.right - rect.left, rect.bottom - rect.top, frame.depth, frame.order);
    for (int32_t y = 0; y < part.height; ++y)
        std::memcpy(part.row(y),
                    frame.row(rect.top + y) + static_cast<std::ptrdiff_t>(rect.left) * frame.bytesPerPixel(),
                    static_cast<std::size_t>(part.rowBytes()));
    return part;
}

// The same part rendered by the standalone host. Not the part cut from the whole render: float Gaussian
// blurs differ from it in the last bits, by the region they compute.
Frame standalonePart(const std::string& entry, const Frame& input, const PF_LRect& part,
                     std::vector<std::optional<PlacedLayer>> layers = {}) {
    StandaloneRender render{entry, input, busySettingsOf(entry)};
    render.layers = std::move(layers);
    render.part = part;
    return renderStandalone(render);
}

// A host for `entry` with its parameters added, the test settings and a pattern as input.
std::unique_ptr<SimulatedHost> preparedHost(const std::string& entry, HostSettings settings = {}) {
    auto host = std::make_unique<SimulatedHost>(bundleEntry(entry), settings);
    EXPECT_EQ(host->paramsSetup(), PF_Err_NONE);
    host->setInput(patternFrame(kWidth, kHeight, settings.depth, ComponentOrder::Argb, 7));
    applySettings(*host, busySettingsOf(entry));
    return host;
}

TEST(SmartPreRender, EachEffectChecksOutWhatItNeedsOfItsInput) {
    struct Case {
        const char* entry;
        bool needsMargin;
    };
    for (const Case& c :
         {Case{"BalanceEntry", false}, Case{"BalanceRGBEntry", false}, Case{"BlurEntry", true},
          Case{"MaxEntry", true}, Case{"MinEntry", true}, Case{"SmoothingEntry", true}}) {
        for (const PF_LRect request : {PF_LRect{10, 8, 50, 40}, PF_LRect{40, 30, 80, 60}}) {
            SCOPED_TRACE(::testing::Message() << c.entry << " asked for " << request);
            const auto host = preparedHost(c.entry);
            const PreRenderOutcome pre = host->smartPreRender(request);
            ASSERT_EQ(pre.error, PF_Err_NONE);
            ASSERT_EQ(pre.checkouts.size(), 1u)
                << "an effect without layer parameters checks out its input alone";
            const LayerCheckout& input = pre.checkouts[0];
            EXPECT_EQ(input.index, 0);
            EXPECT_EQ(input.id, 0);
            EXPECT_EQ(input.time, host->inData().current_time);
            EXPECT_EQ(input.timeStep, host->inData().time_step);
            EXPECT_EQ(input.timeScale, host->inData().time_scale);
            if (c.needsMargin) {
                EXPECT_TRUE(input.request.left < request.left && input.request.top < request.top &&
                            input.request.right > request.right && input.request.bottom > request.bottom)
                    << "a neighbourhood filter needs more than the output: " << input.request;
            } else {
                EXPECT_EQ(input.request, request);
            }
            const PF_LRect produced = intersection(request, kWhole);
            EXPECT_EQ(pre.resultRect, produced);
            EXPECT_TRUE(contains(pre.maxResultRect, pre.resultRect) && contains(kWhole, pre.maxResultRect))
                << pre.maxResultRect;
            ASSERT_EQ(pre.records.size(), 1u);
            EXPECT_EQ(pre.records[0],
                      (std::array<int32_t, 7>{input.resultRect.left, input.resultRect.top,
                                              input.resultRect.right, input.resultRect.bottom, 0, 0, 0}));
            EXPECT_THAT(host->faults(), IsEmpty());
        }
    }
}

// Auto-Balance measures the whole layer, whatever part of the frame is asked for.
TEST(SmartPreRender, AutoBalanceChecksOutTheWholeLayerForAnyPart) {
    for (const PF_LRect request : {PF_LRect{10, 8, 11, 9}, PF_LRect{40, 30, 80, 60}}) {
        SCOPED_TRACE(::testing::Message() << "asked for " << request);
        const auto host = preparedHost("AutoBalanceEntry");
        const PreRenderOutcome pre = host->smartPreRender(request);
        ASSERT_EQ(pre.error, PF_Err_NONE);
        ASSERT_EQ(pre.checkouts.size(), 1u);
        EXPECT_TRUE(contains(pre.checkouts[0].request, kWhole)) << pre.checkouts[0].request;
        EXPECT_EQ(pre.resultRect, intersection(request, kWhole));
        EXPECT_THAT(host->faults(), IsEmpty());
    }
}

TEST(SmartRender, APartOfTheFrameIsThatPartOfTheWholeRender) {
    for (const int depth : {8, 32}) {
        for (const char* entry : {"BalanceEntry", "BlurEntry", "MaxEntry", "SmoothingEntry"}) {
            for (const PF_LRect request : {PF_LRect{10, 8, 50, 40}, PF_LRect{40, 30, 80, 60}}) {
                SCOPED_TRACE(::testing::Message() << entry << " at " << depth << " bits, part " << request);
                HostSettings settings;
                settings.depth = depth;
                const auto host = preparedHost(entry, settings);
                const RenderOutcome outcome = host->renderSmart(request);
                ASSERT_EQ(outcome.error, PF_Err_NONE);
                const PF_LRect part = intersection(request, kWhole);
                EXPECT_EQ(outcome.outputRect, part);
                const Frame expected = standalonePart(entry, host->input(), part);
                EXPECT_TRUE(outcome.output == expected) << firstDifference(outcome.output, expected);
                EXPECT_THAT(host->faults(), IsEmpty());
            }
        }
    }
}

// Blend checks out its layer parameter's whole extent first (id 1001), to centre the layer on the
// input, then the part it needs under id 1; the pre-render data records where the layer lies.
TEST(SmartPreRender, BlendChecksOutItsLayerCentredOnTheInput) {
    for (const auto& [width, height] : {std::pair{40, 30}, std::pair{80, 60}, std::pair{kWidth, kHeight}}) {
        SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height));
        const auto host = preparedHost("BlendEntry");
        host->setLayer("Layer", patternFrame(width, height, 8, ComponentOrder::Argb, 8));
        const PreRenderOutcome pre = host->smartPreRender(kWhole);
        ASSERT_EQ(pre.error, PF_Err_NONE);
        ASSERT_EQ(pre.checkouts.size(), 3u);
        const int32_t dx = (kWidth - width) / 2;
        const int32_t dy = (kHeight - height) / 2;
        const LayerCheckout& extent = pre.checkouts[1];
        const LayerCheckout& layer = pre.checkouts[2];
        EXPECT_EQ(pre.checkouts[0].id, 0);
        EXPECT_EQ(extent.index, 1);
        EXPECT_EQ(extent.id, 1001);
        EXPECT_TRUE(contains(extent.request, PF_LRect{0, 0, width, height})) << extent.request;
        EXPECT_EQ(layer.index, 1);
        EXPECT_EQ(layer.id, 1);
        EXPECT_EQ(layer.time, host->inData().current_time);
        // In the layer's own coordinates: the part that lies under the output.
        EXPECT_TRUE(contains(layer.request, intersection(PF_LRect{-dx, -dy, kWidth - dx, kHeight - dy},
                                                         PF_LRect{0, 0, width, height})))
            << layer.request;
        ASSERT_EQ(pre.records.size(), 2u);
        EXPECT_EQ(pre.records[0], (std::array<int32_t, 7>{0, 0, kWidth, kHeight, 0, 0, 0}));
        EXPECT_EQ(pre.records[1], (std::array<int32_t, 7>{dx, dy, dx + width, dy + height, dx, dy, 0}));
        EXPECT_EQ(pre.resultRect, kWhole);
        EXPECT_THAT(host->faults(), IsEmpty());
    }
}

TEST(SmartRender, BlendWithALayerOfAnotherSizeMatchesTheStandaloneHost) {
    for (const int depth : {8, 32}) {
        for (const auto& [width, height] :
             {std::pair{40, 30}, std::pair{80, 60}, std::pair{kWidth, kHeight}}) {
            for (const PF_LRect request : {kWhole, PF_LRect{10, 8, 50, 40}}) {
                SCOPED_TRACE(::testing::Message() << "a " << width << " x " << height << " layer at " << depth
                                                  << " bits, part " << request);
                HostSettings settings;
                settings.depth = depth;
                const auto host = preparedHost("BlendEntry", settings);
                const Frame layer =
                    patternFrame(width, height, depth, ComponentOrder::Argb, 9).flippedVertically();
                host->setLayer("Layer", layer);
                const RenderOutcome outcome = host->renderSmart(request);
                ASSERT_EQ(outcome.error, PF_Err_NONE);
                const PlacedLayer placed{layer, (kWidth - width) / 2, (kHeight - height) / 2};
                const Frame expected = standalonePart("BlendEntry", host->input(), request, {placed});
                EXPECT_TRUE(outcome.output == expected) << firstDifference(outcome.output, expected);
                EXPECT_NE(outcome.output, crop(host->input(), request)) << "the layer should show";
                EXPECT_THAT(host->faults(), IsEmpty());
            }
        }
    }
}

// A layer parameter left at none: the layer checks out empty and the input passes through.
TEST(SmartRender, BlendWithoutALayerPassesTheInputThrough) {
    const auto host = preparedHost("BlendEntry");
    const PreRenderOutcome pre = host->smartPreRender(kWhole);
    ASSERT_EQ(pre.error, PF_Err_NONE);
    for (const LayerCheckout& checkout : pre.checkouts)
        if (checkout.index == 1) {
            EXPECT_EQ(checkout.resultRect, (PF_LRect{0, 0, 0, 0}));
        }
    const RenderOutcome outcome = host->smartRender();
    ASSERT_EQ(outcome.error, PF_Err_NONE);
    EXPECT_TRUE(outcome.output == host->input()) << firstDifference(outcome.output, host->input());
    EXPECT_THAT(host->faults(), IsEmpty());
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::AeHost
