// Small filters that exist only to exercise the graph: a per-pixel offset that can fold and pass
// through, a two-input sum, a horizontal box that reads context, a generator, and a filter that records
// its bands.
#pragma once

#include <algorithm>
#include <cmath>
#include <mutex>
#include <vector>

#include "image/graph/Filter.h"
#include "image/graph/ImageView.h"
#include "image/graph/KernelDispatch.h"
#include "image/graph/Scheduler.h"
#include "tests/support/BareHost.h"

namespace Tw::Test {

using Host = Tw::Host::Standalone::Host;
using Node = Image::FilterBase<Host>;
using Layer = Image::FilterLayer<Host>;
using Image::ImageBuffer;
using Image::PixelRect;

// Each compute call appends its node here, so tests can see what ran, how often and in which order.
using ComputeLog = std::vector<const Node*>;

template <class T>
T toComponent(float value) {
    if constexpr (std::is_floating_point_v<T>) {
        return value;
    } else {
        const float white = Image::ComponentTraits<T>::white;
        return static_cast<T>(std::clamp(value, 0.0f, 1.0f) * white + 0.5f);
    }
}

template <class T>
float fromComponent(T value) {
    return static_cast<float>(value) / Image::ComponentTraits<T>::white;
}

// A filter whose kernel sees each output pixel with the value of every input at the same place (inputs
// are transparent black outside their rectangles) and writes what `pixel` returns, component by component.
template <class Derived>
class PerPixelFilter : public Image::Filter<Host> {
public:
    void compute(Host& host, ImageBuffer& output, ImageBuffer* const* inputs) override {
        if (log) log->push_back(this);
        Filter::compute(host, output, inputs);
    }

    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t /*threadCount*/) override {
        Image::dispatchLayout(*outputImage, [&](auto layout) {
            using T = typename decltype(layout)::Component;
            const auto out = Image::ImageView<T>::of(*outputImage);
            std::vector<Image::ImageView<T>> ins;
            for (std::size_t i = 0; i < this->inputs.size(); ++i)
                ins.push_back(Image::ImageView<T>::of(*inputImages[i]));
            Image::HostProgress<Host> progress(*host, threadIndex);
            Image::forEachRow(band, progress, [&](int32_t y) {
                for (int32_t x = band.left; x < band.right; ++x) {
                    for (int c = 0; c < 4; ++c) {
                        float values[2] = {0, 0};
                        for (std::size_t i = 0; i < ins.size(); ++i) {
                            if (ins[i].hasPixels() && ins[i].rect.contains({x, y, x + 1, y + 1}))
                                values[i] = fromComponent(ins[i].at(x, y)[c]);
                        }
                        const bool alpha = c == decltype(layout)::alpha;
                        out.at(x, y)[c] = toComponent<T>(static_cast<Derived*>(this)->pixel(values, alpha));
                    }
                }
            });
        });
    }

    ComputeLog* log = nullptr;

protected:
    using Filter::Filter;
};

// Adds `offset` (a fraction of white) to red, green and blue.
class OffsetFilter final : public PerPixelFilter<OffsetFilter> {
public:
    OffsetFilter(Node& input, float offset, ComputeLog* computeLog = nullptr)
        : PerPixelFilter({&input}), offset(offset) {
        log = computeLog;
    }
    const char* name() const override { return "offset"; }
    bool equals(const Node& other) const override {
        return sameKind(other) && static_cast<const OffsetFilter&>(other).offset == offset;
    }
    int passThroughInput() const override { return offset == 0.0f ? 0 : -1; }
    bool canRunInPlace(int) const override { return true; }
    Image::MergeResult mergeWith(Node& input) override {
        auto* before = dynamic_cast<OffsetFilter*>(&input);
        if (!before || before->consumers.size() != 1) return Image::MergeResult::No;
        offset += before->offset;
        return Image::MergeResult::Folded;
    }
    float pixel(const float* values, bool alpha) const { return alpha ? values[0] : values[0] + offset; }

    float offset;
};

// The sum of two inputs, alpha included.
class SumFilter final : public PerPixelFilter<SumFilter> {
public:
    SumFilter(Node& a, Node& b, ComputeLog* computeLog = nullptr) : PerPixelFilter({&a, &b}) {
        log = computeLog;
    }
    const char* name() const override { return "sum"; }
    PixelRect bounds() const override { return inputs[0]->bounds().extend(inputs[1]->bounds()); }
    bool canRunInPlace(int) const override { return true; }
    float pixel(const float* values, bool) const { return values[0] + values[1]; }
};

// Fills whatever is asked with one grey; no inputs, so its bounds are infinite.
class GreyGenerator final : public PerPixelFilter<GreyGenerator> {
public:
    explicit GreyGenerator(float grey) : grey(grey) {}
    const char* name() const override { return "grey"; }
    float pixel(const float*, bool alpha) const { return alpha ? 1.0f : grey; }
    float grey;
};

// The mean of 2 * radius + 1 pixels along the row: reads context, so it grows what it asks of its input
// and never runs in place.
class BoxFilter final : public Image::Filter<Host> {
public:
    BoxFilter(Node& input, int radius, ComputeLog* computeLog = nullptr)
        : Filter({&input}), radius(radius), log(computeLog) {}
    const char* name() const override { return "box"; }
    bool equals(const Node& other) const override {
        return sameKind(other) && static_cast<const BoxFilter&>(other).radius == radius;
    }
    PixelRect inputRect(const PixelRect& rect, int) const override {
        return rect.grown(radius, 0).intersect(inputs[0]->bounds());
    }
    void compute(Host& host, ImageBuffer& output, ImageBuffer* const* in) override {
        if (log) log->push_back(this);
        Filter::compute(host, output, in);
    }
    void computeTile(const PixelRect& band, uint32_t, uint32_t) override {
        const auto out = Image::ImageView<float>::of(*outputImage);
        const auto in = Image::ImageView<float>::of(*inputImages[0]);
        for (int32_t y = band.top; y < band.bottom; ++y) {
            for (int32_t x = band.left; x < band.right; ++x) {
                for (int c = 0; c < 4; ++c) {
                    float sum = 0;
                    for (int32_t u = x - radius; u <= x + radius; ++u) {
                        if (in.rect.contains({u, y, u + 1, y + 1})) sum += in.at(u, y)[c];
                    }
                    out.at(x, y)[c] = sum / static_cast<float>(2 * radius + 1);
                }
            }
        }
    }
    int radius;
    ComputeLog* log;
};

// Records the band and worker of every computeTile call.
class RecordingFilter final : public Image::Filter<Host> {
public:
    struct Call {
        PixelRect band;
        uint32_t threadIndex;
        uint32_t threadCount;
    };
    explicit RecordingFilter(Node& input) : Filter({&input}) {}
    const char* name() const override { return "recording"; }
    void computeTile(const PixelRect& band, uint32_t threadIndex, uint32_t threadCount) override {
        std::lock_guard lock(mutex);
        calls.push_back({band, threadIndex, threadCount});
    }
    std::mutex mutex;
    std::vector<Call> calls;
};

// An image over `rect` whose pixel (x, y) has red x/100, green y/100, blue 0.5, alpha 1.
inline ImageBuffer patternImage(Image::ImageHost* host, const PixelRect& rect,
                                Image::PixelFormat format = Image::fourCC("ae32")) {
    ImageBuffer image(host);
    image.allocate(rect, format);
    Image::dispatchLayout(image, [&](auto layout) {
        using L = decltype(layout);
        using T = typename L::Component;
        const auto view = Image::ImageView<T>::of(image);
        for (int32_t y = rect.top; y < rect.bottom; ++y) {
            for (int32_t x = rect.left; x < rect.right; ++x) {
                T* p = view.at(x, y);
                p[L::red] = toComponent<T>(x / 100.0f);
                p[L::green] = toComponent<T>(y / 100.0f);
                p[L::blue] = toComponent<T>(0.5f);
                p[L::alpha] = toComponent<T>(1.0f);
            }
        }
    });
    return image;
}

inline float componentAt(const ImageBuffer& image, int32_t x, int32_t y, int logical) {
    const auto positions = Image::componentPositions(image.pixelFormat()).value();
    float value = 0;
    Image::dispatchLayout(image, [&](auto layout) {
        using T = typename decltype(layout)::Component;
        value = fromComponent(Image::ImageView<T>::of(image).at(x, y)[positions[logical]]);
    });
    return value;
}

}  // namespace Tw::Test
