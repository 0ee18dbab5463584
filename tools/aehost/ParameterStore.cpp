#include "tools/aehost/ParameterStore.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>

namespace Tw::Tools::AeHost {

std::string RecordedParameter::label() const {
    if (definition.param_type == PF_Param_CHECKBOX && definition.name[0] == '\0') return checkboxName;
    return definition.name;
}

ParameterStore::~ParameterStore() {
    for (PF_Handle handle : ownedHandles_)
        handles_.dispose(handle);
}

void ParameterStore::beginSetup() {
    recorded_.clear();
}

PF_Err ParameterStore::add(PF_ParamIndex index, const PF_ParamDef& definition) {
    const PF_ParamIndex next = count() + 1;
    if (index != -1 && index != next) return PF_Err_INVALID_INDEX;
    RecordedParameter& record = recorded_.emplace_back();
    record.hostIndex = next;
    record.definition = definition;
    PF_ParamDef& copy = record.definition;
    copy.name[sizeof(copy.name) - 1] = '\0';
    if (copy.param_type == PF_Param_POPUP && definition.u.pd.u.namesptr) {
        record.popupNames = definition.u.pd.u.namesptr;
        copy.u.pd.u.namesptr = record.popupNames.c_str();
    }
    if (copy.param_type == PF_Param_CHECKBOX && definition.u.bd.u.nameptr) {
        record.checkboxName = definition.u.bd.u.nameptr;
        copy.u.bd.u.nameptr = record.checkboxName.c_str();
    }
    if (copy.param_type == PF_Param_ARBITRARY_DATA && definition.u.arb_d.dephault) {
        // The default is the host's from now on; the value is the host's own copy of it.
        const PF_Handle fallback = definition.u.arb_d.dephault;
        ownedHandles_.push_back(fallback);
        const std::size_t size = handles_.size(fallback);
        const PF_Handle value = handles_.allocate(size);
        std::memcpy(handles_.lock(value), handles_.lock(fallback), size);
        handles_.unlock(fallback);
        handles_.unlock(value);
        ownedHandles_.push_back(value);
        copy.u.arb_d.value = value;
    }
    const A_long id = copy.uu.id;
    if (!values_.count(id)) values_.emplace(id, copy);
    return PF_Err_NONE;
}

const PF_ParamDef* ParameterStore::value(PF_ParamIndex index) const {
    if (index < 1 || index > count()) return nullptr;
    const auto found = values_.find(recorded_[static_cast<std::size_t>(index - 1)].definition.uu.id);
    return found == values_.end() ? nullptr : &found->second;
}

std::vector<PF_ParamIndex> ParameterStore::textIndices() const {
    std::vector<PF_ParamIndex> indices;
    for (const RecordedParameter& record : recorded_)
        if (record.definition.param_type == PF_Param_ARBITRARY_DATA) indices.push_back(record.hostIndex);
    return indices;
}

void ParameterStore::replaceText(PF_ParamIndex index, PF_Handle handle) {
    PF_ArbitraryH& value = valueOfType(index, PF_Param_ARBITRARY_DATA, "text").u.arb_d.value;
    std::erase(ownedHandles_, value);
    value = handle;
    if (handle) ownedHandles_.push_back(handle);
}

PF_ParamDef* ParameterStore::mutableValue(PF_ParamIndex index) {
    return const_cast<PF_ParamDef*>(static_cast<const ParameterStore&>(*this).value(index));
}

PF_ParamDef ParameterStore::handed(PF_ParamIndex index, int32_t width, int32_t height) const {
    PF_ParamDef definition = *value(index);
    if (definition.param_type == PF_Param_POINT) {
        definition.u.td.x_value = static_cast<PF_Fixed>(std::lround(definition.u.td.x_value / 100.0 * width));
        definition.u.td.y_value =
            static_cast<PF_Fixed>(std::lround(definition.u.td.y_value / 100.0 * height));
    }
    return definition;
}

void ParameterStore::store(PF_ParamIndex index, const PF_ParamDef& changed, int32_t width, int32_t height) {
    PF_ParamDef* current = mutableValue(index);
    if (!current) return;
    // Only the value changes; the definition's text stays the host's own.
    current->u = changed.u;
    const PF_ParamDef& added = recorded_[static_cast<std::size_t>(index - 1)].definition;
    if (added.param_type == PF_Param_POPUP) current->u.pd.u.namesptr = added.u.pd.u.namesptr;
    if (added.param_type == PF_Param_CHECKBOX) current->u.bd.u.nameptr = added.u.bd.u.nameptr;
    if (added.param_type == PF_Param_POINT && width > 0 && height > 0) {
        current->u.td.x_value = static_cast<PF_Fixed>(std::lround(changed.u.td.x_value * 100.0 / width));
        current->u.td.y_value = static_cast<PF_Fixed>(std::lround(changed.u.td.y_value * 100.0 / height));
    }
}

const PF_PixelFloat* ParameterStore::colorSet(A_long id, const PF_Pixel& pixel) const {
    const auto found = colors_.find(id);
    const auto value = values_.find(id);
    if (found == colors_.end() || value == values_.end()) return nullptr;
    return std::memcmp(&value->second.u.cd.value, &pixel, sizeof pixel) == 0 ? &found->second : nullptr;
}

PF_ParamDef& ParameterStore::valueOfType(PF_ParamIndex index, PF_ParamType type, const char* what) {
    PF_ParamDef* current = mutableValue(index);
    if (!current || current->param_type != type)
        throw std::invalid_argument("parameter " + std::to_string(index) + " is no " + what);
    return *current;
}

void ParameterStore::setSlider(PF_ParamIndex index, double setting) {
    PF_ParamDef* current = mutableValue(index);
    const PF_ParamType type = current ? current->param_type : PF_Param_RESERVED;
    if (type == PF_Param_SLIDER) {
        current->u.sd.value = static_cast<PF_ParamValue>(std::lround(setting));
    } else if (type == PF_Param_FIX_SLIDER) {
        current->u.fd.value = static_cast<PF_Fixed>(std::lround(setting * 65536));
    } else if (type == PF_Param_FLOAT_SLIDER) {
        current->u.fs_d.value = setting;
    } else {
        throw std::invalid_argument("parameter " + std::to_string(index) + " is no slider");
    }
}

void ParameterStore::setAngle(PF_ParamIndex index, double degrees) {
    valueOfType(index, PF_Param_ANGLE, "angle").u.ad.value =
        static_cast<PF_Fixed>(std::lround(degrees * 65536));
}

void ParameterStore::setCheckbox(PF_ParamIndex index, bool checked) {
    valueOfType(index, PF_Param_CHECKBOX, "checkbox").u.bd.value = checked ? 1 : 0;
}

void ParameterStore::setPopup(PF_ParamIndex index, int choice) {
    PF_ParamDef& popup = valueOfType(index, PF_Param_POPUP, "popup");
    if (choice < 1 || choice > popup.u.pd.num_choices) throw std::invalid_argument("no such choice");
    popup.u.pd.value = choice;
}

void ParameterStore::setColor(PF_ParamIndex index, PF_PixelFloat color) {
    PF_ParamDef& definition = valueOfType(index, PF_Param_COLOR, "colour");
    const auto component = [](PF_FpShort value) {
        return static_cast<A_u_char>(std::lround(std::clamp(value, 0.0f, 1.0f) * 255));
    };
    definition.u.cd.value =
        PF_Pixel{255, component(color.red), component(color.green), component(color.blue)};
    colors_[definition.uu.id] = PF_PixelFloat{1, color.red, color.green, color.blue};
}

void ParameterStore::setPoint(PF_ParamIndex index, double x, double y) {
    PF_ParamDef& point = valueOfType(index, PF_Param_POINT, "point");
    point.u.td.x_value = static_cast<PF_Fixed>(std::lround(x * 100 * 65536));
    point.u.td.y_value = static_cast<PF_Fixed>(std::lround(y * 100 * 65536));
}

void ParameterStore::setLayer(PF_ParamIndex index, std::optional<Frame> frame) {
    layers_[valueOfType(index, PF_Param_LAYER, "layer").uu.id] = std::move(frame);
}

const std::optional<Frame>* ParameterStore::layerChoice(PF_ParamIndex index) const {
    const PF_ParamDef* current = value(index);
    if (!current || current->param_type != PF_Param_LAYER) return nullptr;
    const auto found = layers_.find(current->uu.id);
    return found == layers_.end() ? nullptr : &found->second;
}

}  // namespace Tw::Tools::AeHost
