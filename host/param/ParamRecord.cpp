#include "host/param/ParamRecord.h"

#include <limits>
#include <stdexcept>
#include <utility>

namespace Tw::Host::Param {

namespace {

ParamRecord declare(ParamKind kind, std::string label, ParamValue defaultValue, std::uint32_t flags) {
    ParamRecord record;
    record.kind = kind;
    record.label = std::move(label);
    record.value = defaultValue;
    record.defaultValue = std::move(defaultValue);
    record.flags = flags;
    return record;
}

// Range bounds are given as doubles for every kind and stored at the kind's own width.
ParamValue boundOfKind(ParamKind kind, double bound) {
    switch (kind) {
        case ParamKind::IntSlider:
        case ParamKind::Popup:
        case ParamKind::Layer:
        case ParamKind::Path:
            return ParamValue::ofInt(static_cast<std::int32_t>(bound));
        case ParamKind::Checkbox:
            return ParamValue::ofBool(bound != 0.0);
        default:
            return ParamValue::ofFloat(bound);
    }
}

}  // namespace

ParamRecord ParamRecord::intSlider(std::string label, std::int32_t defaultValue, std::int32_t min,
                                   std::int32_t max, std::uint32_t flags) {
    return declare(ParamKind::IntSlider, std::move(label), ParamValue::ofInt(defaultValue), flags)
        .withRange(min, max);
}

ParamRecord ParamRecord::floatSlider(std::string label, double defaultValue, double min, double max,
                                     std::uint32_t flags) {
    return declare(ParamKind::FloatSlider, std::move(label), ParamValue::ofFloat(defaultValue), flags)
        .withRange(min, max);
}

ParamRecord ParamRecord::checkbox(std::string label, bool defaultValue, std::uint32_t flags) {
    return declare(ParamKind::Checkbox, std::move(label), ParamValue::ofBool(defaultValue), flags)
        .withRange(0, 1);
}

ParamRecord ParamRecord::text(std::string label, std::string defaultText, std::uint32_t flags) {
    return declare(ParamKind::String, std::move(label), ParamValue::ofText(std::move(defaultText)), flags);
}

ParamRecord ParamRecord::popup(std::string label, std::vector<std::string> items, std::int32_t defaultIndex,
                               std::uint32_t flags) {
    ParamRecord record = declare(ParamKind::Popup, std::move(label), ParamValue::ofInt(defaultIndex), flags);
    record.itemCodes.assign(items.size(), 0);
    record.withRange(0, static_cast<double>(items.size()) - 1);
    record.items = std::move(items);
    return record;
}

ParamRecord ParamRecord::stringPopup(std::string label, std::vector<std::string> items,
                                     std::string defaultItem, std::uint32_t flags) {
    ParamRecord record =
        declare(ParamKind::StringPopup, std::move(label), ParamValue::ofText(std::move(defaultItem)), flags);
    record.itemCodes.assign(items.size(), 0);
    record.items = std::move(items);
    return record;
}

ParamRecord ParamRecord::color(std::string label, ParamColor defaultColor, std::uint32_t flags) {
    return declare(ParamKind::Color, std::move(label), ParamValue::ofColor(defaultColor), flags);
}

ParamRecord ParamRecord::point(std::string label, ParamPoint defaultPoint, std::uint32_t flags) {
    return declare(ParamKind::Point, std::move(label), ParamValue::ofPoint(defaultPoint), flags);
}

ParamRecord ParamRecord::groupStart(std::string label, std::uint32_t flags) {
    return declare(ParamKind::GroupStart, std::move(label), {}, flags);
}

ParamRecord ParamRecord::groupEnd() {
    return declare(ParamKind::GroupEnd, {}, {}, 0);
}

ParamRecord ParamRecord::layer(std::string label, std::uint32_t flags) {
    return declare(ParamKind::Layer, std::move(label), ParamValue::ofInt(0), flags)
        .withRange(0, std::numeric_limits<std::int32_t>::max());
}

ParamRecord& ParamRecord::withRange(double min, double max) {
    validMin = boundOfKind(kind, min);
    validMax = boundOfKind(kind, max);
    return withSliderRange(min, max);
}

ParamRecord& ParamRecord::withSliderRange(double min, double max) {
    sliderMin = boundOfKind(kind, min);
    sliderMax = boundOfKind(kind, max);
    return *this;
}

ParamRecord& ParamRecord::withItemCodes(std::vector<std::uint32_t> codes) {
    if (codes.size() != items.size()) throw std::invalid_argument("popup item codes must match its items");
    itemCodes = std::move(codes);
    return *this;
}

}  // namespace Tw::Host::Param
