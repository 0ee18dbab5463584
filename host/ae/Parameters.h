// Tw::Host::AE::Parameters: an effect's parameter list read and written through the host's parameters.
//
// The records still describe the list, but every typed operation goes to the host's parameter at the
// current time (or at the time asked), so an effect's `getFloat(3)` sees what the user set. List indices
// map to host indices as host/ae/HostIndex.h says; the text of a string popup lives in its companion, one
// host index before the popup.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/ae/sdk/AeSdk.h"
#include "host/param/Parameters.h"

namespace Tw::Host::AE {

class Host;

// A copy of the host's current definition of parameter `hostIndex`.
PF_ParamDef definitionCopy(const Host& host, PF_ParamIndex hostIndex);

class Parameters final : public Param::Parameters {
public:
    explicit Parameters(Host& host) : host_(host) {}

    // The adapter that made the list; a copy of the list reads through the same one.
    Host& host() const { return host_; }

    double getFloat(int index) const override;
    std::int32_t getInt(int index) const override;
    bool getBool(int index) const override;
    Param::ParamColor getColor(int index) const override;
    // In pixels of the rendered layer, rows counted in memory order. The host hands points over already
    // scaled to the command's downsampling, so neither direction scales them again.
    Param::ParamPoint getPoint(int index) const override;
    std::string getString(int index) const override;
    std::int32_t getPath(int index) const override;

    double getFloatAtTime(int index, double seconds) const override;
    std::int32_t getIntAtTime(int index, double seconds) const override;
    bool getBoolAtTime(int index, double seconds) const override;
    Param::ParamColor getColorAtTime(int index, double seconds) const override;
    Param::ParamPoint getPointAtTime(int index, double seconds) const override;
    std::string getStringAtTime(int index, double seconds) const override;
    std::int32_t getPathAtTime(int index, double seconds) const override;

    void setFloat(int index, double value) override;
    void setInt(std::int32_t value, int index) override;
    void setBool(bool value, int index) override;
    void setColor(Param::ParamColor color, int index) override;
    void setPoint(Param::ParamPoint point, int index) override;
    void setString(const std::string& text, int index) override;
    void setPath(std::int32_t pathId, int index) override;

    // The host clamps what it is given, so these write exactly as the clamped forms.
    void setFloatUnclamped(int index, double value) override { setFloat(index, value); }
    void setIntUnclamped(std::int32_t value, int index) override { setInt(value, index); }
    void setBoolUnclamped(bool value, int index) override { setBool(value, index); }
    void setColorUnclamped(Param::ParamColor color, int index) override { setColor(color, index); }
    void setPointUnclamped(Param::ParamPoint point, int index) override { setPoint(point, index); }
    void setStringUnclamped(const std::string& text, int index) override { setString(text, index); }
    void setPathUnclamped(std::int32_t pathId, int index) override { setPath(pathId, index); }

    void setEnabled(bool enabled, int index) override;
    // 0 degrees points up in the host and right in the filters; the conversion is its own inverse.
    double toHostAngle(double angle) const override { return 90.0 - angle; }
    double fromHostAngle(double angle) const override { return 90.0 - angle; }

private:
    // The host index of list index `index`; an index outside the list throws, so that no read or write
    // goes past the host's parameters.
    PF_ParamIndex hostIndex(int index) const;
    // Null past the end of the list.
    const Param::ParamRecord* recordOrNull(int index) const;
    bool isKind(int index, Param::ParamKind kind) const;
    bool isAngle(int index) const;
    std::int32_t popupBase(int index) const;
    // Where the record's text lives: a string popup keeps it in its companion.
    PF_ParamIndex textIndex(int index) const;

    // The reads behind the gets: at the current time without `seconds`, else at that time.
    double readFloat(int index, std::optional<double> seconds) const;
    // The first 32-bit word of the definition, where integers, booleans and popup choices sit.
    std::int32_t readWord(int index, std::optional<double> seconds) const;
    Param::ParamColor readColor(int index, std::optional<double> seconds) const;
    Param::ParamPoint readPoint(int index, std::optional<double> seconds) const;
    std::string readString(int index, std::optional<double> seconds) const;
    std::int32_t readPath(int index, std::optional<double> seconds) const;

    Host& host_;
};

}  // namespace Tw::Host::AE
