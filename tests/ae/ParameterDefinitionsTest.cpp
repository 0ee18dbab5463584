// PF_Cmd_PARAMS_SETUP: the definitions as the host receives them, for every effect against its own
// declaration, and a few written out in full as a user sees them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "host/standalone/Host.h"
#include "plugins/BlendPlugin.h"
#include "plugins/EffectRegistry.h"
#include "tests/ae/SimulatedHost.h"

namespace Tw::Test::AE {
namespace {

namespace Param = ::Tw::Host::Param;
using ::testing::IsEmpty;

std::string joined(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items)
        text += (text.empty() ? "" : "|") + item;
    return text;
}

// What the host must have received for `record`, added as host parameter `index`.
void expectDefinition(const Param::ParamRecord& record, const RecordedParameter& added, PF_ParamIndex index) {
    SCOPED_TRACE(record.label);
    const PF_ParamDef& d = added.definition;
    EXPECT_EQ(added.hostIndex, index);
    EXPECT_EQ(d.uu.id, index) << "identifiers count the parameters from 1";
    EXPECT_EQ(added.label(), record.label);
    EXPECT_EQ(d.ui_flags, 0);
    EXPECT_EQ(d.flags, 0);
    const auto asFloat = [](const Param::ParamValue& v) { return static_cast<PF_FpShort>(v.asFloat()); };
    switch (record.kind) {
        case Param::ParamKind::FloatSlider: {
            const bool percent = record.hasFlag(Param::ParamFlag::Percent);
            ASSERT_EQ(d.param_type, PF_Param_FLOAT_SLIDER);
            EXPECT_EQ(d.u.fs_d.value, record.defaultValue.asFloat());
            EXPECT_EQ(d.u.fs_d.dephault, asFloat(record.defaultValue));
            EXPECT_EQ(d.u.fs_d.valid_min, asFloat(record.validMin));
            EXPECT_EQ(d.u.fs_d.valid_max, asFloat(record.validMax));
            EXPECT_EQ(d.u.fs_d.slider_min, asFloat(record.sliderMin));
            EXPECT_EQ(d.u.fs_d.slider_max, asFloat(record.sliderMax));
            EXPECT_EQ(d.u.fs_d.precision, percent ? 1 : 2);
            EXPECT_EQ(d.u.fs_d.display_flags, percent ? PF_ValueDisplayFlag_PERCENT : 0);
            break;
        }
        case Param::ParamKind::IntSlider:
            ASSERT_EQ(d.param_type, PF_Param_SLIDER);
            EXPECT_EQ(d.u.sd.value, record.defaultValue.asInt());
            EXPECT_EQ(d.u.sd.dephault, record.defaultValue.asInt());
            EXPECT_EQ(d.u.sd.valid_min, record.validMin.asInt());
            EXPECT_EQ(d.u.sd.valid_max, record.validMax.asInt());
            EXPECT_EQ(d.u.sd.slider_min, record.sliderMin.asInt());
            EXPECT_EQ(d.u.sd.slider_max, record.sliderMax.asInt());
            break;
        case Param::ParamKind::Checkbox:
            ASSERT_EQ(d.param_type, PF_Param_CHECKBOX);
            EXPECT_STREQ(d.name, "") << "a checkbox shows its label beside the box, not as its name";
            EXPECT_EQ(added.checkboxName, record.label);
            EXPECT_EQ(d.u.bd.value, record.defaultValue.asBool() ? 1 : 0);
            EXPECT_EQ(d.u.bd.dephault, record.defaultValue.asBool() ? 1 : 0);
            break;
        case Param::ParamKind::Popup:
            ASSERT_EQ(d.param_type, PF_Param_POPUP);
            EXPECT_EQ(d.u.pd.num_choices, static_cast<A_short>(record.items.size()));
            EXPECT_EQ(d.u.pd.value, record.defaultValue.asInt() + 1) << "the host counts choices from 1";
            EXPECT_EQ(d.u.pd.dephault, record.defaultValue.asInt() + 1);
            EXPECT_EQ(added.popupNames, joined(record.items));
            break;
        case Param::ParamKind::Color: {
            ASSERT_EQ(d.param_type, PF_Param_COLOR);
            const Param::ParamColor c = record.defaultValue.asColor();
            const PF_Pixel expected{255, static_cast<A_u_char>(c.red * 255),
                                    static_cast<A_u_char>(c.green * 255),
                                    static_cast<A_u_char>(c.blue * 255)};
            EXPECT_EQ(std::memcmp(&d.u.cd.value, &expected, sizeof expected), 0);
            EXPECT_EQ(std::memcmp(&d.u.cd.dephault, &expected, sizeof expected), 0);
            break;
        }
        case Param::ParamKind::Layer:
            ASSERT_EQ(d.param_type, PF_Param_LAYER);
            EXPECT_EQ(d.u.ld.dephault, record.hasFlag(Param::ParamFlag::DefaultToOwnLayer)
                                           ? PF_LayerDefault_MYSELF
                                           : PF_LayerDefault_NONE);
            break;
        default:
            ADD_FAILURE() << "an effect declares a kind this test doesn't know: "
                          << static_cast<int>(record.kind);
    }
}

TEST(ParameterDefinitions, EveryEffectAddsItsListInOrder) {
    for (const auto& entry : Plugins::effectRegistry<Host::Standalone::Host>()) {
        SCOPED_TRACE(entry.entryName);
        Param::Parameters declared;
        entry.create()->defineParameters(declared);
        SimulatedHost host(entry.entryName);
        ASSERT_EQ(host.paramsSetup(), PF_Err_NONE);
        ASSERT_EQ(host.parameters().count(), static_cast<int>(declared.records.size()));
        EXPECT_EQ(host.outData().num_params, static_cast<A_long>(declared.records.size()) + 1)
            << "the count includes the input layer";
        for (std::size_t i = 0; i < declared.records.size(); ++i)
            expectDefinition(declared.records[i], host.parameters().recorded()[i],
                             static_cast<PF_ParamIndex>(i + 1));
        EXPECT_THAT(host.faults(), IsEmpty());
    }
}

TEST(ParameterDefinitions, BlendAndSmoothingAsAUserSeesThem) {
    SimulatedHost blend("BlendEntry");
    ASSERT_EQ(blend.paramsSetup(), PF_Err_NONE);
    EXPECT_EQ(blend.parameters().indexOf("Layer"), 1);
    EXPECT_EQ(blend.parameters().indexOf("Blend Mode"), 2);
    EXPECT_EQ(blend.parameters().indexOf("Opacity"), 3);
    const PF_ParamDef& mode = blend.parameters().recorded()[1].definition;
    EXPECT_EQ(mode.u.pd.num_choices, 41);
    EXPECT_EQ(mode.u.pd.value, 1);
    EXPECT_EQ(mode.u.pd.dephault, 1);
    EXPECT_EQ(std::string(mode.u.pd.u.namesptr).substr(0, 33), "Normal|Darken|Multiply|Color Burn");
    const PF_ParamDef& opacity = blend.parameters().recorded()[2].definition;
    EXPECT_EQ(opacity.u.fs_d.display_flags, PF_ValueDisplayFlag_PERCENT);
    EXPECT_EQ(opacity.u.fs_d.precision, 1);
    EXPECT_EQ(opacity.u.fs_d.valid_max, 100.0f);
    EXPECT_EQ(blend.parameters().recorded()[0].definition.u.ld.dephault, PF_LayerDefault_NONE);

    SimulatedHost smoothing("SmoothingEntry");
    ASSERT_EQ(smoothing.paramsSetup(), PF_Err_NONE);
    const char* labels[] = {"Locked", "Smoothing Amount", "Skin Detail Smoothing", "Contrast Enhance"};
    for (PF_ParamIndex index = 1; index <= 4; ++index)
        EXPECT_EQ(smoothing.parameters().indexOf(labels[index - 1]), index);
    const PF_ParamDef& detail = smoothing.parameters().recorded()[2].definition;
    EXPECT_EQ(detail.u.fs_d.valid_min, -400.0f);
    EXPECT_EQ(detail.u.fs_d.dephault, 40.0f);
    EXPECT_EQ(detail.u.fs_d.precision, 2);
    EXPECT_EQ(detail.u.fs_d.display_flags, 0);
    EXPECT_THAT(blend.faults(), IsEmpty());
    EXPECT_THAT(smoothing.faults(), IsEmpty());
}

// A project reopened: the values stay with their identifiers when the effect adds its list again.
TEST(ParameterDefinitions, ValuesSurviveASecondSetupByIdentifier) {
    SimulatedHost host("BlendEntry");
    ASSERT_EQ(host.paramsSetup(), PF_Err_NONE);
    host.setPopup("Blend Mode", 5);
    host.setSlider("Opacity", 40);
    ASSERT_EQ(host.paramsSetup(), PF_Err_NONE);
    EXPECT_EQ(host.parameters().value(2)->u.pd.value, 5);
    EXPECT_EQ(host.parameters().value(3)->u.fs_d.value, 40.0);
    EXPECT_THAT(host.faults(), IsEmpty());
}

}  // namespace
}  // namespace Tw::Test::AE
