#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/param/ParamFlags.h"
#include "host/param/ParamKind.h"
#include "host/param/ParamValue.h"

namespace Tw::Host::Param {

// One entry of an effect's parameter list. Effects declare records with the factories below, which
// set value equal to the default, stepScale to 1 and id to -1, and make the slider range equal to
// the valid range; withSliderRange narrows the slider where the two differ.
struct ParamRecord {
    ParamKind kind = ParamKind::None;
    std::string label;  // shown by the host, and the key of the record in the text file
    std::uint64_t reserved = 0;
    std::vector<std::uint32_t> itemCodes;  // popups: a four-character code or 0 per item
    std::vector<std::string> items;        // popups: the item names
    ParamValue value;
    ParamValue defaultValue;
    ParamValue sliderMin;
    ParamValue sliderMax;
    ParamValue validMin;
    ParamValue validMax;
    std::uint32_t flags = 0;  // ParamFlag bits
    double stepScale = 1.0;
    std::int32_t id = -1;  // the host's parameter identifier, once the list is registered

    static ParamRecord intSlider(std::string label, std::int32_t defaultValue, std::int32_t min,
                                 std::int32_t max, std::uint32_t flags = 0);
    static ParamRecord floatSlider(std::string label, double defaultValue, double min, double max,
                                   std::uint32_t flags = 0);
    static ParamRecord checkbox(std::string label, bool defaultValue, std::uint32_t flags = 0);
    static ParamRecord text(std::string label, std::string defaultText, std::uint32_t flags = 0);
    // The range is 0 to the last item index; every item starts with code 0 (see withItemCodes).
    static ParamRecord popup(std::string label, std::vector<std::string> items, std::int32_t defaultIndex,
                             std::uint32_t flags = 0);
    static ParamRecord stringPopup(std::string label, std::vector<std::string> items, std::string defaultItem,
                                   std::uint32_t flags = 0);
    static ParamRecord color(std::string label, ParamColor defaultColor, std::uint32_t flags = 0);
    // A point is a fraction of the layer's size unless flagged ParamFlag::UnscaledPoint.
    static ParamRecord point(std::string label, ParamPoint defaultPoint, std::uint32_t flags = 0);
    static ParamRecord groupStart(std::string label, std::uint32_t flags = 0);
    static ParamRecord groupEnd();
    // Value 0 is no layer; the range admits any layer index, since setInt clamps to it.
    static ParamRecord layer(std::string label, std::uint32_t flags = 0);

    // Both ranges, and the slider range alone, written with the width of the record's kind.
    ParamRecord& withRange(double min, double max);
    ParamRecord& withSliderRange(double min, double max);
    // One code per item, in item order; throws std::invalid_argument if the counts differ.
    ParamRecord& withItemCodes(std::vector<std::uint32_t> codes);

    bool hasFlag(std::uint32_t flag) const { return (flags & flag) != 0; }
};

}  // namespace Tw::Host::Param
