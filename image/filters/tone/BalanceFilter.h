// BalanceFilter: maps red, green and blue from one range onto another, with an optional gamma and clamp.
// Also the base of the brightness and colour-correction filters, which give their own scale and offset.
#pragma once

#include <cmath>
#include <cstring>
#include <typeinfo>

#include "image/filters/tone/BalanceKernel.h"
#include "image/graph/Filter.h"

namespace Tw::Image {

template <class Host>
class BalanceFilter : public Filter<Host> {
public:
    using Node = FilterBase<Host>;

    // Range ends are fractions, 1.0 for 100 %; a gamma of 1 means none.
    BalanceFilter(Node& input, float fromLow, float fromHigh, float toLow, float toHigh, float gamma,
                  bool clamp)
        : Filter<Host>({&input}),
          fromLow(fromLow),
          fromHigh(fromHigh),
          toLow(toLow),
          toHigh(toHigh),
          gamma(gamma),
          clamp(clamp) {}

    const char* name() const override {
        if (gamma == 1.0f) return clamp ? "balance clamp" : "balance";
        return clamp ? "balance gamma clamp" : "balance gamma";
    }
    bool equals(const Node& other) const override {
        if (!this->sameKind(other)) return false;
        const auto& o = static_cast<const BalanceFilter&>(other);
        return fromLow == o.fromLow && fromHigh == o.fromHigh && toLow == o.toLow && toHigh == o.toHigh &&
               gamma == o.gamma && clamp == o.clamp;
    }
    int passThroughInput() const override {
        return !clamp && fromLow == toLow && fromHigh == toHigh && gamma == 1.0f ? 0 : -1;
    }
    bool canRunInPlace(int) const override { return true; }
    int tileFlags() const override { return 3; }

    // A plain balance before this one folds into it: this node then maps its own from ends through both.
    // Only between plain balances: the filters built on this one make their map from other fields, which
    // a fold would not reach, and one of them answers to the name "balance" too.
    MergeResult mergeWith(Node& input) override {
        // An input that others read too must stay as it is.
        if (typeid(*this) != typeid(BalanceFilter) || typeid(input) != typeid(BalanceFilter) ||
            std::strcmp(input.name(), "balance") != 0 || input.consumers.size() != 1)
            return MergeResult::No;
        const auto& before = static_cast<const BalanceFilter&>(input);
        float so, oo, st, ot;
        rangeScale(before.fromLow, before.fromHigh, before.toLow, before.toHigh, so, oo);
        rangeScale(fromLow, fromHigh, toLow, toHigh, st, ot);
        toLow = (fromLow * so + oo) * st + ot;
        toHigh = (fromHigh * so + oo) * st + ot;
        return MergeResult::Folded;
    }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        HostProgress<Host> progress(*this->host, threadIndex);
        balanceBand(*this->outputImage, *this->inputImages[0], band, this->host->cpuFeatures(), progress,
                    {scaleAndOffset(), gamma, clamp});
    }

    // The kernel's scale and offset per component.
    virtual ScaleAndOffset scaleAndOffset() const {
        ScaleAndOffset result;
        float scale, offset;
        rangeScale(fromLow, fromHigh, toLow, toHigh, scale, offset);
        for (int c = 0; c < 3; ++c)
            result.scale[c] = scale, result.offset[c] = offset;
        return result;
    }

    float fromLow, fromHigh, toLow, toHigh;
    float gamma;
    bool clamp;
};

}  // namespace Tw::Image
