#pragma once

#include <cstdint>

namespace Tw::Host::Param {

// The code at the head of every record. The numbers are fixed: effects declare them and the host
// side switches on them, so a kind never changes its code.
enum class ParamKind : std::int32_t {
    None = 0,  // no control and no value
    IntSlider = 1,
    FloatSlider = 2,
    Checkbox = 3,
    String = 4,
    Popup = 5,        // value is the 0-based item index
    StringPopup = 6,  // value is the text of the chosen item
    Color = 7,
    Point = 8,
    GroupStart = 9,
    GroupEnd = 10,
    Layer = 11,
    Path = 12,
    Unused = 13,  // a second code with no control and no value
};

}  // namespace Tw::Host::Param
