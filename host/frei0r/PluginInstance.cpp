#include "host/frei0r/PluginInstance.h"

#include <cstring>
#include <limits>
#include <memory>
#include <new>

#include "image/core/ImageBuffer.h"
#include "image/core/PixelFormat.h"

namespace Tw::Host::Frei0r {
namespace {

using Image::ImageBuffer;

// frei0r's BGRA8888: blue, green, red, alpha bytes, which is the 8-bit "bgra" frame.
constexpr Image::PixelFormat kFrameFormat = Image::fourCC("bgra");

// The host's frames are width * height pixels with rows of width * 4 bytes.
struct FrameSize {
    int32_t width;
    int32_t height;
};

// A view of a host frame, which the render reads or writes in place. Sizes past what a frame record
// holds fail as an allocation would.
ImageBuffer viewOf(Image::ImageHost& host, const FrameSize& size, const uint32_t* pixels) {
    if (size.width > std::numeric_limits<int32_t>::max() / 4) throw std::bad_alloc();
    // The render never writes into its input frames; the view is writable only because the image type is.
    auto* data = reinterpret_cast<std::byte*>(const_cast<uint32_t*>(pixels));
    return ImageBuffer(&host, Image::FrameRecord{data, size.width * 4, size.width, size.height, 0, 0},
                       kFrameFormat);
}

// An input frame for the render. A missing frame is transparent black, and a frame that is also the
// output is copied first, since effects that read around a pixel must not see their own results.
// (A source's host gives no input at all.)
ImageBuffer inputOf(Image::ImageHost& host, const FrameSize& size, const uint32_t* pixels,
                    const uint32_t* out) {
    if (pixels && pixels != out) return viewOf(host, size, pixels);
    ImageBuffer copy(&host);
    copy.allocate({0, 0, size.width, size.height}, kFrameFormat);
    if (pixels) {
        copy.copyFrom(viewOf(host, size, pixels));
    } else {
        copy.clear(copy.rect);
    }
    return copy;
}

}  // namespace

class PluginInstance::EffectLoan {
public:
    explicit EffectLoan(PluginInstance& instance) : instance_(instance) {
        {
            const std::lock_guard lock(instance_.idleEffectsMutex_);
            if (!instance_.idleEffects_.empty()) {
                effect_ = std::move(instance_.idleEffects_.back());
                instance_.idleEffects_.pop_back();
            }
        }
        if (!effect_) effect_ = instance_.plugin_.entry().create();
    }
    EffectLoan(const EffectLoan&) = delete;
    EffectLoan& operator=(const EffectLoan&) = delete;
    // The list keeps its room, so only an effect made for the loan can need more; without it, that effect
    // goes.
    ~EffectLoan() {
        const std::lock_guard lock(instance_.idleEffectsMutex_);
        try {
            instance_.idleEffects_.push_back(std::move(effect_));
        } catch (...) {
        }
    }

    StandaloneHost& effect() { return *effect_; }

private:
    PluginInstance& instance_;
    std::unique_ptr<StandaloneHost> effect_;
};

PluginInstance::PluginInstance(const PluginDescription& plugin, unsigned width, unsigned height)
    : plugin_(plugin), width_(width), height_(height) {
    params_.records = plugin.defaultRecords();
    for (const HostParameter& parameter : plugin.parameters())
        hostValues_.push_back(hostValueOf(params_.records[parameter.recordIndex]));
    idleEffects_.push_back(plugin.entry().create());
}

void PluginInstance::setParameter(int index, const HostValue& value) {
    if (index < 0 || index >= static_cast<int>(hostValues_.size())) return;
    const int record = plugin_.parameters()[index].recordIndex;
    hostValues_[index] = setFromHost(params_, record, value) ? value : hostValueOf(params_.records[record]);
}

const HostValue* PluginInstance::parameter(int index) const {
    if (index < 0 || index >= static_cast<int>(hostValues_.size())) return nullptr;
    return &hostValues_[index];
}

void PluginInstance::update(const uint32_t* in, std::span<const uint32_t* const> layers,
                            uint32_t* out) noexcept {
    if (!out || width_ == 0 || height_ == 0) return;
    try {
        EffectLoan loan(*this);
        if (render(loan.effect(), in, layers, out) == Standalone::ErrorCode::kNone) return;
    } catch (...) {
        // Whatever went wrong stays here: the host gets its frame back unchanged.
    }
    leaveAsInput(in, out);
}

int32_t PluginInstance::render(StandaloneHost& effect, const uint32_t* in,
                               std::span<const uint32_t* const> layers, uint32_t* out) {
    if (width_ > std::numeric_limits<int32_t>::max() || height_ > std::numeric_limits<int32_t>::max()) {
        throw std::bad_alloc();
    }
    const FrameSize size{static_cast<int32_t>(width_), static_cast<int32_t>(height_)};
    ImageBuffer output = viewOf(effect, size, out);
    ImageBuffer input = inputOf(effect, size, in, out);

    // A further layer the host leaves out is a layer parameter with no layer chosen.
    const auto layerCount = static_cast<std::size_t>(plugin_.layerInputs());
    std::vector<ImageBuffer> layerImages;
    layerImages.reserve(layerCount);
    std::vector<ImageBuffer*> layerPointers(layerCount, nullptr);
    for (std::size_t i = 0; i < layerCount && i < layers.size(); ++i) {
        if (!layers[i]) continue;
        layerImages.push_back(inputOf(effect, size, layers[i], out));
        layerPointers[i] = &layerImages.back();
    }
    return effect.render(params_, input, output, layerPointers);
}

std::size_t PluginInstance::pixelAllocations() const {
    const std::lock_guard lock(idleEffectsMutex_);
    std::size_t allocations = 0;
    for (const auto& effect : idleEffects_)
        allocations += effect->allocationCount();
    return allocations;
}

void PluginInstance::leaveAsInput(const uint32_t* in, uint32_t* out) const noexcept {
    const std::size_t bytes = std::size_t{4} * width_ * height_;
    if (!in) {
        std::memset(out, 0, bytes);
    } else if (in != out) {
        std::memcpy(out, in, bytes);
    }
}

}  // namespace Tw::Host::Frei0r
