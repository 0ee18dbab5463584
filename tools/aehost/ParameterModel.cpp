#include "tools/aehost/ParameterModel.h"

#include <limits>
#include <string>
#include <vector>

namespace Tw::Tools::AeHost {
namespace {

using Param::ParamRecord;
namespace ParamFlag = Param::ParamFlag;

// The host's 16.16 fixed-point numbers.
double fromFixed(PF_Fixed value) {
    return value / 65536.0;
}

// The items of a popup, written "A|B|C" by the effect.
std::vector<std::string> itemsOf(const char* names, int count) {
    std::vector<std::string> items;
    const std::string text = names ? names : "";
    for (std::size_t start = 0; static_cast<int>(items.size()) < count;) {
        const std::size_t bar = text.find('|', start);
        items.push_back(text.substr(start, bar - start));
        if (bar == std::string::npos) break;
        start = bar + 1;
    }
    items.resize(static_cast<std::size_t>(count));
    return items;
}

std::uint32_t percentFlag(PF_ValueDisplayFlags flags) {
    return (flags & PF_ValueDisplayFlag_PERCENT) ? ParamFlag::Percent : 0;
}

// An 8-bit colour component as a fraction, the way a colour without the user's own float reads.
double unit(A_u_char component) {
    return component / 255.0;
}

ParamRecord recordOf(const RecordedParameter& added, const PF_ParamDef& current,
                     const ParameterStore& store) {
    const PF_ParamDef& d = added.definition;
    const std::string label = added.label();
    switch (d.param_type) {
        case PF_Param_SLIDER: {
            ParamRecord record =
                ParamRecord::intSlider(label, d.u.sd.dephault, d.u.sd.valid_min, d.u.sd.valid_max)
                    .withSliderRange(d.u.sd.slider_min, d.u.sd.slider_max);
            record.value.setInt(current.u.sd.value);
            return record;
        }
        case PF_Param_FIX_SLIDER: {
            ParamRecord record =
                ParamRecord::floatSlider(label, fromFixed(d.u.fd.dephault), fromFixed(d.u.fd.valid_min),
                                         fromFixed(d.u.fd.valid_max), percentFlag(d.u.fd.display_flags))
                    .withSliderRange(fromFixed(d.u.fd.slider_min), fromFixed(d.u.fd.slider_max));
            record.value.setFloat(fromFixed(current.u.fd.value));
            return record;
        }
        case PF_Param_FLOAT_SLIDER: {
            ParamRecord record =
                ParamRecord::floatSlider(label, d.u.fs_d.dephault, d.u.fs_d.valid_min, d.u.fs_d.valid_max,
                                         percentFlag(d.u.fs_d.display_flags))
                    .withSliderRange(d.u.fs_d.slider_min, d.u.fs_d.slider_max);
            record.value.setFloat(current.u.fs_d.value);
            return record;
        }
        case PF_Param_ANGLE: {
            // Any number of turns, as far as the host's fixed point reaches.
            const double turns = fromFixed(std::numeric_limits<PF_Fixed>::max());
            ParamRecord record =
                ParamRecord::floatSlider(label, fromFixed(d.u.ad.dephault), -turns, turns, ParamFlag::Angle);
            record.value.setFloat(fromFixed(current.u.ad.value));
            return record;
        }
        case PF_Param_CHECKBOX: {
            ParamRecord record = ParamRecord::checkbox(label, d.u.bd.dephault != 0);
            record.value.setBool(current.u.bd.value != 0);
            return record;
        }
        case PF_Param_POPUP: {
            ParamRecord record = ParamRecord::popup(label, itemsOf(d.u.pd.u.namesptr, d.u.pd.num_choices),
                                                    d.u.pd.dephault - 1);
            record.value.setInt(current.u.pd.value - 1);
            return record;
        }
        case PF_Param_COLOR: {
            const PF_Pixel& fallback = d.u.cd.dephault;
            ParamRecord record =
                ParamRecord::color(label, {unit(fallback.red), unit(fallback.green), unit(fallback.blue)});
            const PF_Pixel& pixel = current.u.cd.value;
            const PF_PixelFloat* set = store.colorSet(current.uu.id, pixel);
            record.value.setColor(
                set ? Param::ParamColor{set->red, set->green, set->blue}
                    : Param::ParamColor{unit(pixel.red), unit(pixel.green), unit(pixel.blue)});
            return record;
        }
        case PF_Param_POINT: {
            // Kept in percent of the layer; the list, like a user, counts in fractions of it.
            const auto fraction = [](PF_Fixed percent) { return fromFixed(percent) / 100; };
            ParamRecord record =
                ParamRecord::point(label, {fraction(d.u.td.x_dephault), fraction(d.u.td.y_dephault)});
            record.value.setPoint({fraction(current.u.td.x_value), fraction(current.u.td.y_value)});
            return record;
        }
        case PF_Param_LAYER:
            return ParamRecord::layer(
                label, d.u.ld.dephault == PF_LayerDefault_MYSELF ? ParamFlag::DefaultToOwnLayer : 0);
        case PF_Param_GROUP_START:
            return ParamRecord::groupStart(label);
        case PF_Param_GROUP_END:
            return ParamRecord::groupEnd();
        default: {
            ParamRecord record;
            record.label = label;
            return record;
        }
    }
}

}  // namespace

void describeParameters(const ParameterStore& store, Param::Parameters& list) {
    list.records.clear();
    for (const RecordedParameter& added : store.recorded())
        list.records.push_back(recordOf(added, *store.value(added.hostIndex), store));
}

void storeValue(const Param::Parameters& list, int index, ParameterStore& store) {
    const PF_ParamIndex hostIndex = index + 1;
    switch (store.value(hostIndex)->param_type) {
        case PF_Param_SLIDER:
            return store.setSlider(hostIndex, list.getInt(index));
        case PF_Param_FIX_SLIDER:
        case PF_Param_FLOAT_SLIDER:
            return store.setSlider(hostIndex, list.getFloat(index));
        case PF_Param_ANGLE:
            return store.setAngle(hostIndex, list.getFloat(index));
        case PF_Param_CHECKBOX:
            return store.setCheckbox(hostIndex, list.getBool(index));
        case PF_Param_POPUP:
            return store.setPopup(hostIndex, list.getInt(index) + 1);
        case PF_Param_COLOR: {
            const Param::ParamColor color = list.getColor(index);
            return store.setColor(
                hostIndex, {1, static_cast<PF_FpShort>(color.red), static_cast<PF_FpShort>(color.green),
                            static_cast<PF_FpShort>(color.blue)});
        }
        case PF_Param_POINT: {
            const Param::ParamPoint point = list.getPoint(index);
            return store.setPoint(hostIndex, point.x, point.y);
        }
        default:
            return;
    }
}

}  // namespace Tw::Tools::AeHost
