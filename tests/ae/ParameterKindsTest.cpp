// The parameter kinds no effect of the bundle uses yet (angles, colours, points, hidden records, string
// popups), through a test effect built on the adapter: how the host receives them at setup, and what the
// effect reads back at render after a user has changed them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/ae/EffectMain.h"
#include "plugins/FilterPlugin.h"
#include "tests/ae/TestFrames.h"
#include "tools/aehost/SimulatedHost.h"

namespace Tw::Tools::AeHost {
namespace TW_FILE_LOCAL {

namespace Param = ::Tw::Host::Param;
using AeHost = Tw::Host::AE::Host;
using ::testing::IsEmpty;

// What the effect read at its last render.
struct Readings {
    double angle = 0;
    Param::ParamColor color;
    Param::ParamPoint point;
    int32_t hidden = 0;
    std::string look;
};
Readings readings;
// What the next render asks besides: the point written back as it was read, once, and read again; "After"
// at this time in seconds; and the value of a list index.
bool writePointBack = false;
Param::ParamPoint pointAgain;
std::optional<double> secondsToRead;
std::optional<int> indexToRead;

struct KindsFilters {
    static Image::FilterBase<AeHost>& makeFilters(Plugins::FilterChain<AeHost>& chain,
                                                  Param::Parameters& params) {
        readings = {params.getFloat(0), params.getColor(1), params.getPoint(2), params.getInt(3),
                    params.getString(4)};
        if (writePointBack) {
            writePointBack = false;
            params.setPoint(readings.point, 2);
            pointAgain = params.getPoint(2);
        }
        if (secondsToRead) params.getFloatAtTime(5, *secondsToRead);
        if (indexToRead) params.getFloat(*indexToRead);
        return chain.source();
    }
};

class KindsPlugin final : public Plugins::FilterPlugin<AeHost, KindsFilters> {
public:
    static constexpr bool pixelIndependent = true;
    const char* effectName() const override { return "Kinds"; }
    bool wantsUserChangedParam() const override { return true; }
    void defineParameters(Param::Parameters& list) override {
        list.records.push_back(
            Param::ParamRecord::floatSlider("Direction", 30, -360, 360, Param::ParamFlag::Angle));
        list.records.push_back(Param::ParamRecord::color("Tint", {1.0, 0.5, 0.25}));
        list.records.push_back(Param::ParamRecord::point("Centre", {0.5, 0.25}));
        list.records.push_back(Param::ParamRecord::intSlider("Secret", 7, 0, 10, Param::ParamFlag::Hidden));
        list.records.push_back(
            Param::ParamRecord::stringPopup("Look", {"Soft", "Medium", "Strong"}, "Medium"));
        list.records.push_back(Param::ParamRecord::floatSlider("After", 1, 0, 2));
    }
};

PF_Err kindsEntry(PF_Cmd command, PF_InData* in, PF_OutData* out, PF_ParamDef* params[], PF_LayerDef* output,
                  void* extra) {
    return Tw::Host::AE::runEffectCommand<KindsPlugin>(command, in, out, params, output, extra);
}

const PF_ParamDef& added(SimulatedHost& host, PF_ParamIndex index) {
    return host.parameters().recorded().at(static_cast<std::size_t>(index - 1)).definition;
}

TEST(ParameterKinds, HostReceivesEachKindInItsOwnUnits) {
    SimulatedHost host(&kindsEntry);
    ASSERT_EQ(host.paramsSetup(), PF_Err_NONE);
    ASSERT_EQ(host.parameters().count(), 7) << "a string popup takes two host parameters";
    EXPECT_EQ(host.outData().num_params, 8);

    const PF_ParamDef& direction = added(host, 1);
    EXPECT_EQ(direction.param_type, PF_Param_ANGLE);
    EXPECT_EQ(direction.u.ad.dephault, 30 * 65536);
    const PF_ParamDef& tint = added(host, 2);
    EXPECT_EQ(tint.param_type, PF_Param_COLOR);
    EXPECT_EQ(tint.u.cd.dephault.alpha, 255);
    EXPECT_EQ(tint.u.cd.dephault.red, 255);
    EXPECT_EQ(tint.u.cd.dephault.green, 127);
    EXPECT_EQ(tint.u.cd.dephault.blue, 63);
    const PF_ParamDef& centre = added(host, 3);
    EXPECT_EQ(centre.param_type, PF_Param_POINT);
    EXPECT_EQ(centre.u.td.x_dephault, 50 << 16) << "points go to the host in percent";
    EXPECT_EQ(centre.u.td.y_dephault, 25 << 16);
    const PF_ParamDef& secret = added(host, 4);
    EXPECT_EQ(secret.ui_flags & PF_PUI_INVISIBLE, PF_PUI_INVISIBLE) << "hidden, yet it takes an index";
    const PF_ParamDef& text = added(host, 5);
    EXPECT_EQ(text.param_type, PF_Param_ARBITRARY_DATA);
    EXPECT_STREQ(text.name, "Look String");
    EXPECT_EQ(text.ui_flags, PF_PUI_NO_ECW_UI);
    const PF_ParamDef& look = added(host, 6);
    EXPECT_EQ(look.param_type, PF_Param_POPUP);
    EXPECT_EQ(look.u.pd.num_choices, 3);
    EXPECT_EQ(look.u.pd.dephault, 2) << "the default text's item, counted from 1";
    EXPECT_EQ(look.flags & PF_ParamFlag_SUPERVISE, PF_ParamFlag_SUPERVISE);
    EXPECT_STREQ(added(host, 7).name, "After");
    EXPECT_THAT(host.faults(), IsEmpty());
}

TEST(ParameterKinds, EffectReadsWhatTheUserSet) {
    for (const bool flipped : {false, true}) {
        SCOPED_TRACE(flipped ? "negative row bytes" : "positive row bytes");
        HostSettings settings;
        settings.negativeRowBytes = flipped;
        SimulatedHost host(&kindsEntry, settings);
        ASSERT_EQ(host.paramsSetup(), PF_Err_NONE);
        host.setInput(patternFrame(16, 12, 8, ComponentOrder::Argb));
        host.set("Direction", "45.5");
        host.set("Tint", "1, 0, 0.2");
        host.set("Centre", "0.625, 0.25");
        host.set("Look", "Strong");
        ASSERT_EQ(host.userChangedParam(6), PF_Err_NONE) << "the popup's choice is stored as its text";

        ASSERT_EQ(host.renderSmart().error, PF_Err_NONE);
        EXPECT_EQ(readings.angle, 45.5);
        EXPECT_EQ(readings.color.red, 1.0);
        EXPECT_EQ(readings.color.green, 0.0);
        EXPECT_EQ(readings.color.blue, 0.2f) << "the colour as the user set it, not its 8-bit form";
        EXPECT_EQ(readings.point.x, 10);
        EXPECT_EQ(readings.point.y, flipped ? 12 - 1 - 3 : 3) << "points follow the rows' direction";
        EXPECT_EQ(readings.hidden, 7);
        EXPECT_EQ(readings.look, "Strong");

        // The text survives a saved and reopened project: flattened, disposed of and unflattened through
        // the effect's callback, between the sequence commands.
        ASSERT_EQ(host.sequenceSetup(), PF_Err_NONE);
        ASSERT_EQ(host.saveAndReopen(), PF_Err_NONE);
        readings.look.clear();
        ASSERT_EQ(host.renderSmart().error, PF_Err_NONE);
        EXPECT_EQ(readings.look, "Strong");
        ASSERT_EQ(host.sequenceSetdown(), PF_Err_NONE);
        ASSERT_EQ(host.globalSetdown(), PF_Err_NONE);
        EXPECT_THAT(host.faults(), IsEmpty());
    }
}

// A point is read in the rendered frame's pixels and rows in memory order, and written back in full
// resolution and the host's rows: at a downsampling and in a flipped world the two differ, and saved
// projects hold what the writes made. A time in seconds is asked as the frame duration times the seconds,
// cut to a whole number. The plain render writes into the host's own parameter array, which the second
// read reads.
TEST(ParameterKinds, PointsAndTimesConvertAsProjectsWereSaved) {
    for (const bool flipped : {false, true}) {
        SCOPED_TRACE(flipped ? "negative row bytes" : "positive row bytes");
        HostSettings settings;
        settings.negativeRowBytes = flipped;
        settings.downsampleX = {1, 2};
        settings.downsampleY = {1, 4};
        SimulatedHost host(&kindsEntry, settings);
        ASSERT_EQ(host.paramsSetup(), PF_Err_NONE);
        // A 32 x 48 layer at a half by a quarter of its resolution.
        host.setInput(patternFrame(16, 12, 8, ComponentOrder::Argb));
        host.set("Centre", "0.25, 0.75");
        secondsToRead = 1.75;
        ASSERT_EQ(host.render().error, PF_Err_NONE);
        secondsToRead.reset();
        EXPECT_EQ(readings.point.x, 4);
        EXPECT_EQ(readings.point.y, flipped ? 12 - 1 - 9 : 9);
        writePointBack = true;
        ASSERT_EQ(host.render().error, PF_Err_NONE);
        // Row 2 of a flipped world written as it is: 8 full-resolution rows, read back from the bottom.
        EXPECT_EQ(pointAgain.x, 8);
        EXPECT_EQ(pointAgain.y, flipped ? 12 - 1 - 8 : 36);
        const std::vector<ParameterCheckout> checkouts = host.parameterCheckouts();
        ASSERT_FALSE(checkouts.empty());
        EXPECT_EQ(checkouts.back().index, 7) << "\"After\", past the string popup's two parameters";
        EXPECT_EQ(checkouts.back().time, 3) << "time step 2 times 1.75 seconds";
        EXPECT_THAT(host.faults(), IsEmpty());
    }
}

// An index past the list is the effect's own error: a clear message, and never a read past the host's
// parameters, whether the command passed its array or the parameters are checked out.
TEST(ParameterKinds, AnIndexPastTheListIsAnErrorWithAMessage) {
    for (const bool plain : {true, false}) {
        for (const int index : {6, 40, -1}) {
            SCOPED_TRACE(std::string(plain ? "plain" : "smart") + " render, index " + std::to_string(index));
            SimulatedHost host(&kindsEntry);
            ASSERT_EQ(host.paramsSetup(), PF_Err_NONE);
            host.setInput(patternFrame(8, 6, 8, ComponentOrder::Argb));
            indexToRead = index;
            const RenderOutcome outcome = plain ? host.render() : host.renderSmart();
            indexToRead.reset();
            EXPECT_EQ(outcome.error, PF_Err_INTERNAL_STRUCT_DAMAGED);
            EXPECT_EQ(std::string(host.outData().return_msg),
                      "Parameter index " + std::to_string(index) + ": the effect has 6 parameters");
            EXPECT_THAT(host.faults(), IsEmpty());
        }
    }
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::AeHost
