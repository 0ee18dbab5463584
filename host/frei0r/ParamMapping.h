// Between an effect's parameter records and the values a frei0r host sets and reads.
//
// A frei0r double runs from 0 to 1 by convention, and hosts show it so. Sliders map it linearly over
// their slider range, so that a host's full control spans the values an artist uses; a host that passes
// a number beyond 0..1 reaches the rest of the valid range, and the record's clamp holds it there.
// Integer sliders round to the nearest whole number. A popup is a double that selects item
// round(v * (items - 1)); its explanation lists the number of each item. Checkboxes are bools, colours
// take their three components in 0..1, points their position as fractions of the frame (as the records
// keep them), text records their text.
//
// Layer records are no frei0r parameters: their images are the mixer's further inputs. Groups, hidden
// records, paths and records without a value have no frei0r control either.
#pragma once

#include <optional>
#include <string>

#include "host/frei0r/Frei0rApi.h"
#include "host/param/Parameters.h"

namespace Tw::Host::Frei0r {

namespace Param = ::Tw::Host::Param;

// A value as a frei0r host passes it; the field of the record's frei0r kind is the one that counts.
struct HostValue {
    double number = 0.0;  // F0R_PARAM_BOOL and F0R_PARAM_DOUBLE
    f0r_param_color_t color{};
    f0r_param_position_t position{};
    std::string text;
};

// The frei0r kind (F0R_PARAM_*) of the record's control, or none.
std::optional<int> hostKindOf(const Param::ParamRecord& record);

// What a host shows beside the control: the effect's values that 0..1 spans, or the popup's items.
std::string explanationOf(const Param::ParamRecord& record);

// The host's value for the record's current value.
HostValue hostValueOf(const Param::ParamRecord& record);

// Sets the record at `index` from a host's value, through the list's clamping setters. Returns whether
// the host will read the value back as it gave it: false when the value was limited to the record's
// range, or was no finite number or the record has no frei0r control, which leave the record as it was.
bool setFromHost(Param::Parameters& params, int index, const HostValue& value);

}  // namespace Tw::Host::Frei0r
