#include "tests/ae/ParameterStore.h"

#include <cmath>
#include <cstring>
#include <stdexcept>

namespace Tw::Test::AE {

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

PF_ParamIndex ParameterStore::indexOf(const std::string& label) const {
    PF_ParamIndex found = 0;
    for (const RecordedParameter& record : recorded_) {
        if (record.label() != label) continue;
        if (found != 0) throw std::invalid_argument("two parameters are labelled " + label);
        found = record.hostIndex;
    }
    if (found == 0) throw std::invalid_argument("no parameter is labelled " + label);
    return found;
}

const PF_ParamDef* ParameterStore::value(PF_ParamIndex index) const {
    if (index < 1 || index > count()) return nullptr;
    const auto found = values_.find(recorded_[static_cast<std::size_t>(index - 1)].definition.uu.id);
    return found == values_.end() ? nullptr : &found->second;
}

PF_ParamDef* ParameterStore::value(PF_ParamIndex index) {
    return const_cast<PF_ParamDef*>(static_cast<const ParameterStore&>(*this).value(index));
}

void ParameterStore::store(PF_ParamIndex index, const PF_ParamDef& changed) {
    PF_ParamDef* current = value(index);
    if (!current) return;
    // Only the value changes; the definition's text stays the host's own.
    current->u = changed.u;
    const PF_ParamDef& added = recorded_[static_cast<std::size_t>(index - 1)].definition;
    if (added.param_type == PF_Param_POPUP) current->u.pd.u.namesptr = added.u.pd.u.namesptr;
    if (added.param_type == PF_Param_CHECKBOX) current->u.bd.u.nameptr = added.u.bd.u.nameptr;
}

PF_ParamDef& ParameterStore::valueOfType(PF_ParamIndex index, PF_ParamType type, const char* what) {
    PF_ParamDef* current = value(index);
    if (!current || current->param_type != type)
        throw std::invalid_argument("parameter " + std::to_string(index) + " is no " + what);
    return *current;
}

void ParameterStore::setSlider(PF_ParamIndex index, double setting) {
    PF_ParamDef* current = value(index);
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

void ParameterStore::setColor(PF_ParamIndex index, uint8_t red, uint8_t green, uint8_t blue) {
    valueOfType(index, PF_Param_COLOR, "colour").u.cd.value = PF_Pixel{255, red, green, blue};
}

void ParameterStore::setPoint(PF_ParamIndex index, double x, double y) {
    PF_ParamDef& point = valueOfType(index, PF_Param_POINT, "point");
    point.u.td.x_value = static_cast<PF_Fixed>(std::lround(x * 65536));
    point.u.td.y_value = static_cast<PF_Fixed>(std::lround(y * 65536));
}

void ParameterStore::setLayer(PF_ParamIndex index, std::optional<TestFrame> frame) {
    layers_[valueOfType(index, PF_Param_LAYER, "layer").uu.id] = std::move(frame);
}

const std::optional<TestFrame>* ParameterStore::layerChoice(PF_ParamIndex index) const {
    const PF_ParamDef* current = value(index);
    if (!current || current->param_type != PF_Param_LAYER) return nullptr;
    const auto found = layers_.find(current->uu.id);
    return found == layers_.end() ? nullptr : &found->second;
}

}  // namespace Tw::Test::AE
