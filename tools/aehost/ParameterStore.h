// The parameters of one effect instance as the host keeps them: the definitions the effect added at
// PF_Cmd_PARAMS_SETUP, deep-copied with their host indices (0 is the input layer, the first added is 1),
// and the current values by parameter identifier, the way a project stores them. A value starts as what
// the effect sent and changes when a user sets it; a second PARAMS_SETUP keeps the values of identifiers
// already known, as reopening a project does.
//
// Points are kept as the effect adds them, in percent of the layer, and handed to a command in pixels of
// the layer as that command renders it (`handed`). Colours keep the floating-point colour a user set beside
// the 8-bit pixel of the definition, as After Effects does, for "PF ColorParamSuite" to give back.
//
// Text values (arbitrary data) are handles. The host takes over the default handle the effect passes to
// add_param and keeps a copy of its bytes, made with its own handle calls, as the parameter's value.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/ae/sdk/AeSdk.h"
#include "tools/aehost/Frame.h"
#include "tools/aehost/HostHandles.h"

namespace Tw::Tools::AeHost {

struct RecordedParameter {
    PF_ParamIndex hostIndex = 0;
    // As added, with its text pointers moved to the copies below.
    PF_ParamDef definition{};
    std::string popupNames;
    std::string checkboxName;
    // The label a user reads: the definition's name, or for a checkbox its nameptr text when the name is
    // empty.
    std::string label() const;
};

class ParameterStore {
public:
    explicit ParameterStore(HostHandles& handles) : handles_(handles) {}
    ParameterStore(const ParameterStore&) = delete;
    ParameterStore& operator=(const ParameterStore&) = delete;
    ~ParameterStore();

    // A new PARAMS_SETUP: the definitions go, the values stay.
    void beginSetup();
    // add_param's work; an error for an index other than -1 or the next, or a reused identifier.
    PF_Err add(PF_ParamIndex index, const PF_ParamDef& definition);

    const std::deque<RecordedParameter>& recorded() const { return recorded_; }
    // The memory handles the host keeps as parameter values and defaults.
    std::size_t ownedHandleCount() const { return ownedHandles_.size(); }
    int count() const { return static_cast<int>(recorded_.size()); }
    // The host indices of the text values, for a project to save and load them.
    std::vector<PF_ParamIndex> textIndices() const;
    // Gives the value of text `index` up to the effect, which disposes of it, and takes `handle` (made by
    // the effect, possibly null) as the value from now on.
    void replaceText(PF_ParamIndex index, PF_Handle handle);
    // The current value as a full definition; null for an index the effect never added.
    const PF_ParamDef* value(PF_ParamIndex index) const;
    // The current value as a command hands it over for a layer of `width` by `height` pixels.
    PF_ParamDef handed(PF_ParamIndex index, int32_t width, int32_t height) const;
    // Takes the value the effect wrote back with PF_ChangeFlag_CHANGED_VALUE in a command that handed its
    // parameters over for a layer of `width` by `height`.
    void store(PF_ParamIndex index, const PF_ParamDef& changed, int32_t width, int32_t height);
    // The floating-point colour a user set on the colour parameter `id`, while its 8-bit form is `pixel`.
    const PF_PixelFloat* colorSet(A_long id, const PF_Pixel& pixel) const;

    // A user's settings. Each throws std::invalid_argument for a parameter of another type.
    void setSlider(PF_ParamIndex index, double setting);
    void setAngle(PF_ParamIndex index, double degrees);
    void setCheckbox(PF_ParamIndex index, bool checked);
    // Counted from 1, as the host shows the choices.
    void setPopup(PF_ParamIndex index, int choice);
    // Components from 0 to 1.
    void setColor(PF_ParamIndex index, PF_PixelFloat color);
    // As fractions of the layer.
    void setPoint(PF_ParamIndex index, double x, double y);
    // A frame, possibly of another size than the input, or none.
    void setLayer(PF_ParamIndex index, std::optional<Frame> frame);
    // The user's choice for a layer parameter (a frame, or none); null while the user hasn't chosen, when
    // the parameter's default decides.
    const std::optional<Frame>* layerChoice(PF_ParamIndex index) const;

private:
    PF_ParamDef* mutableValue(PF_ParamIndex index);
    PF_ParamDef& valueOfType(PF_ParamIndex index, PF_ParamType type, const char* what);

    HostHandles& handles_;
    std::deque<RecordedParameter> recorded_;
    std::map<A_long, PF_ParamDef> values_;
    std::map<A_long, std::optional<Frame>> layers_;
    std::map<A_long, PF_PixelFloat> colors_;
    // Handles the host owns: the effects' defaults and the host's value copies.
    std::vector<PF_Handle> ownedHandles_;
};

}  // namespace Tw::Tools::AeHost
