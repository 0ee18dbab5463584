#include "host/param/Parameters.h"

namespace Tw::Host::Param {

void Parameters::reset() {
    for (int index = 0; index < static_cast<int>(records.size()); ++index) {
        ParamRecord& record = recordAt(index);
        record.value = record.defaultValue;
        notifyReset(index);
    }
}

void Parameters::notifyValue(int) {}

void Parameters::notifyReset(int) {}

void Parameters::notifyAllValues() {
    for (int index = 0; index < static_cast<int>(records.size()); ++index)
        notifyValue(index);
}

void Parameters::notifyAllResets() {
    for (int index = 0; index < static_cast<int>(records.size()); ++index)
        notifyReset(index);
}

void Parameters::assign(const Parameters& other) {
    records = other.records;
    reservedNodesA_ = other.reservedNodesA_;
    reservedNodesB_ = other.reservedNodesB_;
    reservedWordA_ = other.reservedWordA_;
    reservedWordB_ = other.reservedWordB_;
}

void Parameters::setEnabled(bool, int) {}

bool Parameters::flag() const {
    return false;
}

void Parameters::hostHook() {}

void Parameters::resolutionScale(double& x, double& y) const {
    x = 1.0;
    y = 1.0;
}

double Parameters::toHostAngle(double angle) const {
    return angle;
}

double Parameters::fromHostAngle(double angle) const {
    return angle;
}

}  // namespace Tw::Host::Param
