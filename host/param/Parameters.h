#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <list>
#include <set>
#include <string>
#include <vector>

#include "host/param/ParamRecord.h"

namespace Tw::Host::Param {

// An effect's parameter list, read and written by list index. This base keeps the values in the
// records themselves, so an effect runs without any host; a host adapter overrides the typed
// operations to go to the host instead. The set operations take index first for floats and value
// first for every other shape; callers across the code base rely on that order.
class Parameters {
public:
    // Effects declare and index records directly by position.
    std::vector<ParamRecord> records;

    Parameters() = default;
    // Copying goes through assign, so that a derived list's own fields are never sliced off.
    Parameters(const Parameters&) = delete;
    Parameters& operator=(const Parameters&) = delete;
    virtual ~Parameters() = default;

    // Every value back to its default, each record's notifyReset following its own reset.
    virtual void reset();
    // Writes the list as text: two header lines, then "label: value" per record. Never reports a
    // failure; a null pluginName or version ends the writing there.
    virtual void dump(const std::filesystem::path& path, const char* pluginName, const char* version) const;
    // Resets the list, then takes the value of every record whose label matches a line of the file.
    // Values are stored as read: no clamp, no notification. Never reports a failure.
    virtual void restore(const std::filesystem::path& path);

    virtual void notifyValue(int index);
    virtual void notifyReset(int index);
    virtual void notifyAllValues();
    virtual void notifyAllResets();
    virtual void assign(const Parameters& other);

    virtual double getFloat(int index) const;
    virtual std::int32_t getInt(int index) const;
    virtual bool getBool(int index) const;
    virtual ParamColor getColor(int index) const;
    // In pixels of the rendered image unless the record is flagged ParamFlag::UnscaledPoint.
    virtual ParamPoint getPoint(int index) const;
    virtual std::string getString(int index) const;
    virtual std::int32_t getPath(int index) const;

    // The stored values don't vary over time, so these answer as the plain gets.
    virtual double getFloatAtTime(int index, double seconds) const;
    virtual std::int32_t getIntAtTime(int index, double seconds) const;
    virtual bool getBoolAtTime(int index, double seconds) const;
    virtual ParamColor getColorAtTime(int index, double seconds) const;
    virtual ParamPoint getPointAtTime(int index, double seconds) const;
    virtual std::string getStringAtTime(int index, double seconds) const;
    virtual std::int32_t getPathAtTime(int index, double seconds) const;

    // Floats and integers are clamped to the record's valid range.
    virtual void setFloat(int index, double value);
    virtual void setInt(std::int32_t value, int index);
    virtual void setBool(bool value, int index);
    virtual void setColor(ParamColor color, int index);
    virtual void setPoint(ParamPoint point, int index);
    virtual void setString(const std::string& text, int index);
    virtual void setPath(std::int32_t pathId, int index);

    virtual void setFloatUnclamped(int index, double value);
    virtual void setIntUnclamped(std::int32_t value, int index);
    virtual void setBoolUnclamped(bool value, int index);
    virtual void setColorUnclamped(ParamColor color, int index);
    virtual void setPointUnclamped(ParamPoint point, int index);
    virtual void setStringUnclamped(const std::string& text, int index);
    virtual void setPathUnclamped(std::int32_t pathId, int index);

    // Extension points for a host adapter; the base has no controls, host or angle convention.
    virtual void setEnabled(bool enabled, int index);
    virtual bool flag() const;
    virtual void hostHook();
    virtual void resolutionScale(double& x, double& y) const;
    virtual double toHostAngle(double angle) const;
    virtual double fromHostAngle(double angle) const;

private:
    // Bounds-checked, so that a wrong index is an exception rather than a stray write.
    ParamRecord& recordAt(int index) { return records.at(static_cast<std::size_t>(index)); }
    const ParamRecord& recordAt(int index) const { return records.at(static_cast<std::size_t>(index)); }

    // Structure a list carries for the host side; no effect fills it, but assign copies it along so
    // that a copied list is whole.
    struct ReservedNode {
        std::set<std::int32_t> entries;
    };

    std::list<ReservedNode> reservedNodesA_;
    std::list<ReservedNode> reservedNodesB_;
    std::uint64_t reservedWordA_ = 0;
    std::uint64_t reservedWordB_ = 0;
};

}  // namespace Tw::Host::Param
