// The parameter kinds no effect of the bundle uses yet (angles, colours, points, hidden records, string
// popups), through a test effect built on the adapter: how the host receives them at setup, and what the
// effect reads back at render after a user has changed them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/ae/EffectMain.h"
#include "plugins/FilterPlugin.h"
#include "tools/aehost/SimulatedHost.h"

namespace Tw::Tools::AeHost {
namespace {

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

struct KindsFilters {
    static Image::FilterBase<AeHost>& makeFilters(Plugins::FilterChain<AeHost>& chain,
                                                  Param::Parameters& params) {
        readings = {params.getFloat(0), params.getColor(1), params.getPoint(2), params.getInt(3),
                    params.getString(4)};
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
        host.setInput(Frame::pattern(16, 12, 8, ComponentOrder::Argb));
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
        EXPECT_THAT(host.faults(), IsEmpty());
    }
}

}  // namespace
}  // namespace Tw::Tools::AeHost
