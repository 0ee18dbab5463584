// The parameter commands: registering the effect's list with the host, and keeping each string popup and
// its text companion in step when the user changes one or the host redraws the controls.
#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>
#include <utility>

#include "host/ae/FixedPoint.h"
#include "host/ae/Host.h"
#include "host/ae/HostHandle.h"
#include "host/ae/HostIndex.h"
#include "host/ae/Parameters.h"

namespace Tw::Host::AE {

using Param::ParamKind;
using Param::ParamPoint;
using Param::ParamRecord;
using Param::ParamValue;
namespace ParamFlag = Param::ParamFlag;

namespace {

// Added to a string popup's identifier for the popup; the identifier itself goes to its text companion.
constexpr A_long popupIdMark = 32768;

// The host's name field holds 31 characters and the terminator; a longer label is cut.
void setName(const PF_InData& in, PF_ParamDef& definition, const std::string& label) {
    const std::string cut = label.substr(0, sizeof definition.name - 1);
    in.utils->ansi.strcpy(definition.name, cut.c_str());
}

void applyRecordFlags(const ParamRecord& record, PF_ParamDef& definition) {
    if (record.hasFlag(ParamFlag::Hidden)) definition.ui_flags |= PF_PUI_INVISIBLE | PF_PUI_NO_ECW_UI;
    static constexpr std::pair<std::uint32_t, PF_ParamFlags> hostFlags[] = {
        {ParamFlag::CannotTimeVary, PF_ParamFlag_CANNOT_TIME_VARY},
        {ParamFlag::CannotInterpolate, PF_ParamFlag_CANNOT_INTERP},
        {ParamFlag::StartCollapsed, PF_ParamFlag_START_COLLAPSED},
        {ParamFlag::Supervised, PF_ParamFlag_SUPERVISE},
    };
    for (const auto& [ours, host] : hostFlags) {
        if (record.hasFlag(ours)) definition.flags |= host;
    }
}

// The value the control starts at: the default, unless the record sends both. The host then also gives
// the value to a project saved before the parameter existed.
const ParamValue& startValue(const ParamRecord& record, PF_ParamDef& definition) {
    if (!record.hasFlag(ParamFlag::SendValueAndDefault)) return record.defaultValue;
    definition.flags |= PF_ParamFlag_USE_VALUE_FOR_OLD_PROJECTS;
    return record.value;
}

PF_Pixel toPixel(Param::ParamColor color) {
    const auto channel = [](double value) { return static_cast<A_u_char>(static_cast<int>(value * 255)); };
    return {255, channel(color.red), channel(color.green), channel(color.blue)};
}

// The position of `text` among the items, or the first item when it is none of them.
A_long itemPosition(const ParamRecord& record, const std::string& text) {
    const auto found = std::find(record.items.begin(), record.items.end(), text);
    return found == record.items.end() ? 0 : static_cast<A_long>(std::distance(record.items.begin(), found));
}

// `names` holds the joined items and must outlive the adding of the definition.
void describePopup(const ParamRecord& record, PF_ParamDef& definition, std::string& names,
                   A_long defaultPosition, A_long startPosition) {
    for (std::size_t item = 0; item < record.items.size(); ++item) {
        if (item > 0) names += '|';
        names += record.items[item];
    }
    definition.param_type = PF_Param_POPUP;
    definition.u.pd.num_choices = static_cast<A_short>(record.items.size());
    definition.u.pd.dephault = static_cast<A_short>(defaultPosition + 1);
    definition.u.pd.value = startPosition + 1;
    definition.u.pd.u.namesptr = names.c_str();
}

// A text parameter: arbitrary data whose default handle holds the text, copied, compared and stored by
// the arbitrary-data callback, which knows it by its refcon. False when the host has no memory for it.
bool describeText(const PF_UtilCallbacks& utils, PF_ParamDef& definition, A_long identifier,
                  const std::string& text) {
    const PF_Handle handle = storeText(utils, nullptr, text);
    if (!handle) return false;
    definition.param_type = PF_Param_ARBITRARY_DATA;
    definition.flags &= ~(PF_ParamFlag_CANNOT_INTERP | PF_ParamFlag_SUPERVISE);
    definition.uu.id = identifier;
    definition.u.arb_d.id = static_cast<A_short>(identifier);
    definition.u.arb_d.value = nullptr;
    definition.u.arb_d.dephault = handle;
    definition.u.arb_d.refconPV = reinterpret_cast<void*>(identifier | textRefconMark);
    return true;
}

// The kinds that take one host parameter and no memory of the host's. Points start as percentages of
// the layer, since the host has no layer size yet.
void describeControl(const ParamRecord& record, PF_ParamDef& definition, std::string& names) {
    auto& u = definition.u;
    switch (record.kind) {
        case ParamKind::IntSlider:
            definition.param_type = PF_Param_SLIDER;
            u.sd.value = startValue(record, definition).asInt();
            u.sd.valid_min = record.validMin.asInt();
            u.sd.valid_max = record.validMax.asInt();
            u.sd.slider_min = record.sliderMin.asInt();
            u.sd.slider_max = record.sliderMax.asInt();
            u.sd.dephault = record.defaultValue.asInt();
            break;
        case ParamKind::FloatSlider:
            if (record.hasFlag(ParamFlag::Angle)) {
                definition.param_type = PF_Param_ANGLE;
                u.ad.value = toFixed(startValue(record, definition).asFloat());
                u.ad.dephault = toFixed(record.defaultValue.asFloat());
                break;
            }
            definition.param_type = PF_Param_FLOAT_SLIDER;
            u.fs_d.value = startValue(record, definition).asFloat();
            u.fs_d.valid_min = static_cast<PF_FpShort>(record.validMin.asFloat());
            u.fs_d.valid_max = static_cast<PF_FpShort>(record.validMax.asFloat());
            u.fs_d.slider_min = static_cast<PF_FpShort>(record.sliderMin.asFloat());
            u.fs_d.slider_max = static_cast<PF_FpShort>(record.sliderMax.asFloat());
            u.fs_d.dephault = static_cast<PF_FpShort>(record.defaultValue.asFloat());
            if (record.hasFlag(ParamFlag::Percent)) {
                u.fs_d.precision = PF_Precision_TENTHS;
                u.fs_d.display_flags = PF_ValueDisplayFlag_PERCENT;
            } else {
                u.fs_d.precision = PF_Precision_HUNDREDTHS;
                u.fs_d.display_flags = PF_ValueDisplayFlag_NONE;
            }
            u.fs_d.curve_tolerance = 0.05f;
            break;
        case ParamKind::Checkbox:
            // The label goes beside the box, the name column stays empty.
            definition.param_type = PF_Param_CHECKBOX;
            u.bd.value = startValue(record, definition).asBool();
            u.bd.dephault = record.defaultValue.asBool();
            u.bd.u.nameptr = record.label.c_str();
            break;
        case ParamKind::Popup:
            describePopup(record, definition, names, record.defaultValue.asInt(),
                          startValue(record, definition).asInt());
            break;
        case ParamKind::Color:
            definition.param_type = PF_Param_COLOR;
            u.cd.value = toPixel(startValue(record, definition).asColor());
            u.cd.dephault = toPixel(record.defaultValue.asColor());
            break;
        case ParamKind::Point: {
            definition.param_type = PF_Param_POINT;
            const ParamPoint start = startValue(record, definition).asPoint();
            const ParamPoint dephault = record.defaultValue.asPoint();
            u.td.x_dephault = static_cast<A_long>(dephault.x * 100) << 16;
            u.td.y_dephault = static_cast<A_long>(dephault.y * 100) << 16;
            const bool sendsValue = record.hasFlag(ParamFlag::SendValueAndDefault);
            u.td.x_value = sendsValue ? toFixed(start.x * 100) : u.td.x_dephault;
            u.td.y_value = sendsValue ? toFixed(start.y * 100) : u.td.y_dephault;
            // A point held inside the layer is kept there by the host.
            u.td.restrict_bounds = record.validMin.asPoint() == ParamPoint{0, 0} &&
                                   record.validMax.asPoint() == ParamPoint{1, 1};
            break;
        }
        case ParamKind::GroupStart:
            definition.param_type = PF_Param_GROUP_START;
            break;
        case ParamKind::GroupEnd:
            definition.param_type = PF_Param_GROUP_END;
            break;
        case ParamKind::Layer:
            definition.param_type = PF_Param_LAYER;
            u.ld.dephault =
                record.hasFlag(ParamFlag::DefaultToOwnLayer) ? PF_LayerDefault_MYSELF : PF_LayerDefault_NONE;
            break;
        case ParamKind::Path:
            definition.param_type = PF_Param_PATH;
            u.path_d.dephault = 0;
            break;
        default:
            break;
    }
}

}  // namespace

PF_Err Host::paramsSetup() {
    const auto list = newParameters();
    defineParameters(*list);
    outData->num_params = 0;
    A_long added = 1;     // the host's parameter 0 is the input layer
    A_long numbered = 0;  // records past the filter, which number them when the effect has no table
    const auto add = [&](PF_ParamDef& definition) {
        const PF_Err error = inData->inter.add_param(inData->effect_ref, -1, &definition);
        if (error == PF_Err_NONE) ++added;
        return error;
    };

    for (std::size_t index = 0; index < list->records.size(); ++index) {
        ParamRecord& record = list->records[index];
        const A_long identifier = parameterIds ? parameterIds[index] : numbered + 1;
        record.id = identifier;
        PF_ParamDef definition{};
        if (!filterParameter(record, definition)) continue;
        ++numbered;
        applyRecordFlags(record, definition);
        int32_t width = 0;
        int32_t height = 0;
        if (customParameterSize(record, width, height)) {
            definition.ui_flags |= PF_PUI_CONTROL;
            definition.ui_width = static_cast<A_short>(width);
            definition.ui_height = static_cast<A_short>(height);
        }
        definition.uu.id = identifier;
        if (record.kind != ParamKind::Checkbox && record.kind != ParamKind::GroupEnd)
            setName(*inData, definition, record.label);

        std::string names;
        PF_Err error = PF_Err_NONE;
        switch (record.kind) {
            case ParamKind::None:
            case ParamKind::Unused:
                // No control, but a supervised one still holds the host index it would have.
                if (record.hasFlag(ParamFlag::Supervised)) ++added;
                break;
            case ParamKind::String:
                if (!describeText(*inData->utils, definition, identifier, record.defaultValue.text))
                    return PF_Err_OUT_OF_MEMORY;
                if (!(definition.ui_flags & (PF_PUI_TOPIC | PF_PUI_CONTROL)))
                    definition.ui_flags |= PF_PUI_NO_ECW_UI;
                error = add(definition);
                break;
            case ParamKind::StringPopup: {
                // The chosen text lives in a hidden companion, added first, so that a project keeps the
                // choice when the items change; the popup only shows it.
                PF_ParamDef companion = definition;
                if (!describeText(*inData->utils, companion, identifier, record.defaultValue.text))
                    return PF_Err_OUT_OF_MEMORY;
                companion.ui_flags = PF_PUI_NO_ECW_UI;
                setName(*inData, companion, record.label + " String");
                error = add(companion);
                if (error != PF_Err_NONE) break;
                describePopup(record, definition, names, itemPosition(record, record.defaultValue.text),
                              itemPosition(record, startValue(record, definition).text));
                definition.flags |=
                    PF_ParamFlag_CANNOT_TIME_VARY | PF_ParamFlag_CANNOT_INTERP | PF_ParamFlag_SUPERVISE;
                definition.ui_flags = PF_PUI_STD_CONTROL_ONLY;
                definition.uu.id = identifier | popupIdMark;
                error = add(definition);
                break;
            }
            default:
                describeControl(record, definition, names);
                error = add(definition);
                break;
        }
        if (error != PF_Err_NONE) return error;
    }
    outData->num_params = added;

    PF_CustomUIInfo info{};
    if (wantsCustomUI(info)) return inData->inter.register_ui(inData->effect_ref, &info);
    return PF_Err_NONE;
}

PF_Err Host::userChangedParam() {
    if (!wantsUserChangedParam() && !wantsUpdateParamsUI() && handlers.empty()) return PF_Err_NONE;
    const auto list = newParameters();
    defineParameters(*list);
    const std::vector<ParamRecord>& records = list->records;
    const PF_ParamIndex hostIndex = static_cast<const PF_UserChangedParamExtra*>(extra)->param_index;
    const int index = listIndexOf(records, hostIndex);
    const bool atPopup = index < static_cast<int>(records.size()) &&
                         records[index].kind == ParamKind::StringPopup &&
                         hostIndex == hostIndexOf(records, index);
    if (atPopup) {
        // The user chose an item: its text goes to the companion. A string popup's getInt is the popup's
        // own choice, counted from 1.
        const std::vector<std::string>& items = records[index].items;
        const std::int32_t choice = list->getInt(index);
        list->setString(
            choice >= 1 && choice <= static_cast<std::int32_t>(items.size()) ? items[choice - 1] : "", index);
    }
    parameterChanged(*list, index);
    return PF_Err_NONE;
}

// The companion's text can change without its popup (the host restores and keys each on its own), so
// each popup is set to show the item its companion names.
PF_Err Host::updateParamsUI() {
    if (!wantsUpdateParamsUI()) return PF_Err_NONE;
    const auto list = newParameters();
    defineParameters(*list);
    for (int index = 0; index < static_cast<int>(list->records.size()); ++index) {
        const ParamRecord& record = list->records[index];
        if (record.kind != ParamKind::StringPopup) continue;
        const A_long choice = itemPosition(record, list->getString(index)) + 1;
        if (!suites.paramUtils) {
            list->setInt(choice, index);
            continue;
        }
        const PF_ParamIndex popupIndex = hostIndexOf(list->records, index);
        PF_ParamDef copy = definitionCopy(*this, popupIndex);
        copy.u.pd.value = choice;
        const PF_Err error = suites.paramUtils->PF_UpdateParamUI(inData->effect_ref, popupIndex, &copy);
        if (error != PF_Err_NONE) return error;
    }
    parameterChanged(*list, -1);
    return PF_Err_NONE;
}

}  // namespace Tw::Host::AE
