#include "host/ae/Parameters.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <string>

#include "host/ae/FixedPoint.h"
#include "host/ae/Host.h"
#include "host/ae/HostHandle.h"
#include "host/ae/HostIndex.h"
#include "image/core/Exception.h"

namespace Tw::Host::AE {

using Param::ParamColor;
using Param::ParamKind;
using Param::ParamPoint;
using Param::ParamRecord;
namespace ParamFlag = Param::ParamFlag;

namespace {

// The host time of a read at `seconds`: the frame duration times the seconds, cut to a whole number.
// That is how the effects have always asked, and what their saved projects were made with.
A_long hostTime(const PF_InData& in, double seconds) {
    const double units = std::trunc(static_cast<double>(in.time_step) * seconds);
    constexpr double kLowest = std::numeric_limits<A_long>::min();
    constexpr double kHighest = std::numeric_limits<A_long>::max();
    return static_cast<A_long>(std::isnan(units) ? 0.0 : std::clamp(units, kLowest, kHighest));
}

// One parameter's definition for the length of one operation. When the command passed the host's
// parameter array it is the host's own, so that a write reaches the host; without the array (smart
// pre-render and render), and always for another time, it is checked out and checked in again when the
// operation ends, by an exception too.
class HostDefinition {
public:
    HostDefinition(const Host& host, PF_ParamIndex hostIndex, std::optional<double> seconds = std::nullopt)
        : in_(*host.inData) {
        if (host.params && !seconds) {
            // The array holds num_params definitions, the input layer's first.
            if (hostIndex < 1 || hostIndex >= in_.num_params) {
                throw Exception("Parameter " + std::to_string(hostIndex),
                                "the host passed only " + std::to_string(in_.num_params) + " parameters");
            }
            definition_ = host.params[hostIndex];
            return;
        }
        // A refused checkout leaves the definition zeroed, and it reads as zero.
        const A_long time = seconds ? hostTime(in_, *seconds) : in_.current_time;
        in_.inter.checkout_param(in_.effect_ref, hostIndex, time, in_.time_step, in_.time_scale, &local_);
    }
    ~HostDefinition() {
        if (definition_ == &local_) in_.inter.checkin_param(in_.effect_ref, &local_);
    }
    HostDefinition(const HostDefinition&) = delete;
    HostDefinition& operator=(const HostDefinition&) = delete;

    PF_ParamDef& operator*() const { return *definition_; }
    PF_ParamDef* operator->() const { return definition_; }

private:
    PF_InData& in_;
    PF_ParamDef local_{};
    PF_ParamDef* definition_ = &local_;
};

// A value write: the host takes the new value only with the changed flag set.
template <class Write>
void writeValue(const Host& host, PF_ParamIndex hostIndex, Write&& write) {
    const HostDefinition definition(host, hostIndex);
    write(definition->u);
    definition->uu.change_flags |= PF_ChangeFlag_CHANGED_VALUE;
}

// Components above 1 are cut to 1, and any not above 0 to 0.
A_u_char channel8(double value) {
    return value > 0 ? static_cast<A_u_char>(std::min(value, 1.0) * 255) : 0;
}

}  // namespace

PF_ParamDef definitionCopy(const Host& host, PF_ParamIndex hostIndex) {
    const HostDefinition definition(host, hostIndex);
    return *definition;
}

PF_ParamIndex Parameters::hostIndex(int index) const {
    if (index < 0 || index >= static_cast<int>(records.size())) {
        throw Exception("Parameter index " + std::to_string(index),
                        "the effect has " + std::to_string(records.size()) + " parameters");
    }
    return hostIndexOf(records, index);
}

const ParamRecord* Parameters::recordOrNull(int index) const {
    return index >= 0 && index < static_cast<int>(records.size()) ? &records[index] : nullptr;
}

bool Parameters::isKind(int index, ParamKind kind) const {
    const ParamRecord* record = recordOrNull(index);
    return record && record->kind == kind;
}

bool Parameters::isAngle(int index) const {
    const ParamRecord* record = recordOrNull(index);
    return record && record->hasFlag(ParamFlag::Angle);
}

// The host counts popup choices from 1, the list from 0.
std::int32_t Parameters::popupBase(int index) const {
    return isKind(index, ParamKind::Popup) ? 1 : 0;
}

PF_ParamIndex Parameters::textIndex(int index) const {
    const PF_ParamIndex popup = hostIndex(index);
    return isKind(index, ParamKind::StringPopup) ? popup - 1 : popup;
}

double Parameters::readFloat(int index, std::optional<double> seconds) const {
    const HostDefinition definition(host_, hostIndex(index), seconds);
    if (!isAngle(index)) return definition->u.fs_d.value;
    A_FpLong degrees = 0;
    const PF_AngleParamSuite1* suite = host_.suites.angleParam;
    if (suite && suite->PF_GetFloatingPointValueFromAngleDef(host_.inData->effect_ref, &*definition,
                                                             &degrees) == PF_Err_NONE)
        return degrees;
    return fromFixed(definition->u.ad.value);
}

std::int32_t Parameters::readWord(int index, std::optional<double> seconds) const {
    return HostDefinition(host_, hostIndex(index), seconds)->u.pd.value;
}

ParamColor Parameters::readColor(int index, std::optional<double> seconds) const {
    const HostDefinition definition(host_, hostIndex(index), seconds);
    PF_PixelFloat color{};
    const PF_ColorParamSuite1* suite = host_.suites.colorParam;
    if (suite && suite->PF_GetFloatingPointColorFromColorDef(host_.inData->effect_ref, &*definition,
                                                             &color) == PF_Err_NONE)
        return {color.red, color.green, color.blue};
    const PF_Pixel& pixel = definition->u.cd.value;
    return {pixel.red / 255.0, pixel.green / 255.0, pixel.blue / 255.0};
}

ParamPoint Parameters::readPoint(int index, std::optional<double> seconds) const {
    const HostDefinition definition(host_, hostIndex(index), seconds);
    ParamPoint point{fromFixed(definition->u.td.x_value), fromFixed(definition->u.td.y_value)};
    // The host counts rows from the top; the filters count them in memory order, which for a world
    // stored bottom up starts at the bottom.
    if (host_.output && host_.output->rowbytes < 0) point.y = host_.output->height - 1 - point.y;
    return point;
}

std::string Parameters::readString(int index, std::optional<double> seconds) const {
    const HostDefinition definition(host_, textIndex(index), seconds);
    return handleText(*host_.inData->utils, definition->u.arb_d.value);
}

std::int32_t Parameters::readPath(int index, std::optional<double> seconds) const {
    return static_cast<std::int32_t>(HostDefinition(host_, hostIndex(index), seconds)->u.path_d.path_id);
}

double Parameters::getFloat(int index) const {
    return readFloat(index, std::nullopt);
}

std::int32_t Parameters::getInt(int index) const {
    return readWord(index, std::nullopt) - popupBase(index);
}

bool Parameters::getBool(int index) const {
    return readWord(index, std::nullopt) != 0;
}

ParamColor Parameters::getColor(int index) const {
    return readColor(index, std::nullopt);
}

ParamPoint Parameters::getPoint(int index) const {
    return readPoint(index, std::nullopt);
}

std::string Parameters::getString(int index) const {
    return readString(index, std::nullopt);
}

std::int32_t Parameters::getPath(int index) const {
    return readPath(index, std::nullopt);
}

double Parameters::getFloatAtTime(int index, double seconds) const {
    return readFloat(index, seconds);
}

std::int32_t Parameters::getIntAtTime(int index, double seconds) const {
    return readWord(index, seconds) - popupBase(index);
}

bool Parameters::getBoolAtTime(int index, double seconds) const {
    return readWord(index, seconds) != 0;
}

ParamColor Parameters::getColorAtTime(int index, double seconds) const {
    return readColor(index, seconds);
}

ParamPoint Parameters::getPointAtTime(int index, double seconds) const {
    return readPoint(index, seconds);
}

std::string Parameters::getStringAtTime(int index, double seconds) const {
    return readString(index, seconds);
}

std::int32_t Parameters::getPathAtTime(int index, double seconds) const {
    return readPath(index, seconds);
}

void Parameters::setFloat(int index, double value) {
    writeValue(host_, hostIndex(index), [&](PF_ParamDefUnion& u) {
        if (isAngle(index)) {
            u.ad.value = toFixed(value);
        } else {
            u.fs_d.value = value;
        }
    });
}

void Parameters::setInt(std::int32_t value, int index) {
    writeValue(host_, hostIndex(index), [&](PF_ParamDefUnion& u) { u.pd.value = value + popupBase(index); });
}

void Parameters::setBool(bool value, int index) {
    writeValue(host_, hostIndex(index), [&](PF_ParamDefUnion& u) { u.pd.value = value ? 1 : 0; });
}

void Parameters::setColor(ParamColor color, int index) {
    writeValue(host_, hostIndex(index), [&](PF_ParamDefUnion& u) {
        u.cd.value.red = channel8(color.red);
        u.cd.value.green = channel8(color.green);
        u.cd.value.blue = channel8(color.blue);
    });
}

void Parameters::setPoint(ParamPoint point, int index) {
    writeValue(host_, hostIndex(index), [&](PF_ParamDefUnion& u) {
        // Written in the host's full-resolution units and rows as they come; reads give rows in memory
        // order at the rendered resolution. The two are not inverses, and saved projects rely on both.
        u.td.x_value = toFixed(point.x / host_.downsampleX);
        u.td.y_value = toFixed(point.y / host_.downsampleY);
    });
}

void Parameters::setString(const std::string& text, int index) {
    writeValue(host_, textIndex(index), [&](PF_ParamDefUnion& u) {
        const PF_Handle handle = storeText(*host_.inData->utils, u.arb_d.value, text);
        if (!handle) throw std::bad_alloc();
        u.arb_d.value = handle;
    });
}

// The host is not told of the change.
void Parameters::setPath(std::int32_t pathId, int index) {
    HostDefinition(host_, hostIndex(index))->u.path_d.path_id = static_cast<PF_PathID>(pathId);
}

void Parameters::setEnabled(bool enabled, int index) {
    const PF_ParamIndex control = hostIndex(index);
    PF_ParamDef copy = definitionCopy(host_, control);
    const PF_ParamUIFlags before = copy.ui_flags;
    if (enabled) {
        copy.ui_flags &= ~PF_PUI_DISABLED;
    } else {
        copy.ui_flags |= PF_PUI_DISABLED;
    }
    if (copy.ui_flags == before) return;
    // The update takes the twirl state from the flags as well.
    copy.flags |= PF_ParamFlag_COLLAPSE_TWIRLY;
    if (const auto* suite = host_.suites.paramUtils)
        suite->PF_UpdateParamUI(host_.inData->effect_ref, control, &copy);
}

}  // namespace Tw::Host::AE
