#include "tools/twfx/RenderCommand.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include "tools/twfx/EffectLookup.h"
#include "tools/twfx/FrameConversion.h"
#include "tools/twfx/FrameSequence.h"
#include "tools/twfx/ImageFile.h"
#include "tools/twfx/ParameterLabels.h"
#include "tools/twfx/ParameterValues.h"
#include "tools/twfx/Presets.h"
#include "tools/twfx/ProgressBar.h"
#include "tools/twfx/ToolError.h"
#include "tools/twfx/UserText.h"

namespace Tw::Tools::Twfx {
namespace {

using Image::ImageBuffer;

[[noreturn]] void usageError(const std::string& message) {
    throw ToolError(ExitCode::Usage, message);
}

// The frames to render. A single image is frame 0 of a range of one, its names holding no pattern.
FrameRange frameRangeOf(const RenderRequest& request) {
    const bool sequence = hasFramePattern(request.input);
    if (sequence && !request.frames) {
        usageError(request.input + " names a sequence; give its frames with --frames FIRST-LAST");
    }
    if (!sequence && request.frames) {
        usageError("--frames needs an input named with a frame number pattern, like shot.%04d.exr");
    }
    if (sequence && !hasFramePattern(request.output)) {
        usageError("the output of a sequence needs a frame number pattern too, like out.%04d.png");
    }
    return request.frames.value_or(FrameRange{});
}

// What a layer parameter is given: an image file, or none. Without one, a parameter declared to
// default to the effect's own layer takes it, as in a host.
struct LayerSlot {
    std::string file;
    bool ownLayerByDefault = false;
};

// One slot per layer parameter, by its ordinal less one.
std::vector<LayerSlot> layerSlotsOf(const Param::Parameters& params, const std::vector<Assignment>& layers,
                                    std::string_view effectName) {
    std::vector<int> layerIndices;
    std::vector<LayerSlot> slots;
    for (int i = 0; i < static_cast<int>(params.records.size()); ++i) {
        const Param::ParamRecord& record = params.records[i];
        if (record.kind != Param::ParamKind::Layer) continue;
        layerIndices.push_back(i);
        slots.push_back({"", record.hasFlag(Param::ParamFlag::DefaultToOwnLayer)});
    }
    for (const Assignment& layer : layers) {
        const int index = findParameter(params, layer.label, effectName);
        const auto ordinal = std::find(layerIndices.begin(), layerIndices.end(), index);
        if (ordinal == layerIndices.end()) {
            throw ToolError(ExitCode::UnknownName,
                            inQuotes(layer.label) + " is not a layer parameter of " + inQuotes(effectName));
        }
        slots[ordinal - layerIndices.begin()].file = layer.value;
    }
    return slots;
}

// One render of the effect, with the settings every frame shares.
class FrameRenderer {
public:
    FrameRenderer(const RenderRequest& request, const EffectEntry& effect, Param::Parameters& params,
                  std::vector<LayerSlot> layerSlots, const Console& console)
        : request_(request),
          effect_(effect),
          params_(params),
          layerSlots_(std::move(layerSlots)),
          console_(console) {}

    // Renders frame `frame`; `progress` receives the share of the render done, from 0 to 1.
    void render(int frame, const std::function<void(double)>& progress) {
        FileImage image = readScaled(pathOfFrame(request_.input, frame));
        const Image::PixelFormat format =
            frameFormat(request_.depth.value_or(depthForFile(image.spec)), request_.order);
        ImageBuffer input = frameFromFile(image, format, request_.alpha);
        ImageBuffer output;
        output.allocate(input.rect, format);

        // Sized once, so that the pointers into it stay valid.
        std::vector<ImageBuffer> layerFrames(layerSlots_.size());
        std::vector<ImageBuffer*> layers(layerSlots_.size(), nullptr);
        for (std::size_t i = 0; i < layerSlots_.size(); ++i) {
            if (!layerSlots_[i].file.empty()) {
                layerFrames[i] = frameFromFile(readScaled(pathOfFrame(layerSlots_[i].file, frame)), format,
                                               request_.alpha);
                layers[i] = &layerFrames[i];
            } else if (layerSlots_[i].ownLayerByDefault) {
                layers[i] = &input;
            }
        }

        auto host = effect_.create();
        host->threadCount = request_.threads;
        host->downsampleX = request_.downsample.x;
        host->downsampleY = request_.downsample.y;
        host->setCancelFlag(console_.cancelFlag);
        // A node reports done == total as it finishes, which in a graph of one pass reaches the host
        // unfolded and would show the frame complete before its work has begun; the frame is complete
        // when render returns.
        host->setProgressCallback([&](uint64_t done, uint64_t total) {
            if (done < total) progress(static_cast<double>(done) / static_cast<double>(total));
            return true;
        });
        if (renderCancelled(*host, input, output, layers)) throw ToolError(ExitCode::Cancelled, "cancelled");
        storeFrame(output, input, request_.alpha, image);
        writeImageFile(pathOfFrame(request_.output, frame), image, console_.cancelFlag);
    }

private:
    FileImage readScaled(const std::string& path) const {
        FileImage image = readImageFile(path);
        const Downsample& scale = request_.downsample;
        return scale.x == 1.0 && scale.y == 1.0 ? image : resizedImage(image, scale.x, scale.y);
    }

    // True when the render stopped on the cancel flag; other failures are thrown as RenderFailed.
    bool renderCancelled(StandaloneHost& host, ImageBuffer& input, ImageBuffer& output,
                         const std::vector<ImageBuffer*>& layers) {
        std::int32_t code;
        try {
            code = host.render(params_, input, output, layers);
        } catch (const std::bad_alloc&) {
            throw ToolError(ExitCode::RenderFailed, "render failed: out of memory");
        } catch (const std::exception& error) {
            throw ToolError(ExitCode::RenderFailed, std::string("render failed: ") + error.what());
        }
        return code != Host::Standalone::ErrorCode::kNone;
    }

    const RenderRequest& request_;
    const EffectEntry& effect_;
    Param::Parameters& params_;
    std::vector<LayerSlot> layerSlots_;
    const Console& console_;
};

}  // namespace

void runRender(const RenderRequest& request, const Console& console) {
    const FrameRange range = frameRangeOf(request);
    const EffectEntry& effect = findEffect(request.effect);
    Param::Parameters params;
    defineParameters(effect, params);
    if (request.preset) loadPreset(params, *request.preset, effect.displayName, console.err);
    for (const Assignment& setting : request.settings) {
        setParameterFromText(params, findParameter(params, setting.label, effect.displayName), setting.value,
                             console.err);
    }
    FrameRenderer renderer(request, effect, params, layerSlotsOf(params, request.layers, effect.displayName),
                           console);
    checkImageOutputPath(pathOfFrame(request.output, range.first));

    const std::int64_t frameCount = std::int64_t{range.last} - range.first + 1;
    ProgressBar bar(console.err, console.progressBar);
    for (std::int64_t done = 0; done < frameCount; ++done) {
        const int frame = static_cast<int>(range.first + done);
        const std::string label = request.frames
                                      ? "frame " + std::to_string(frame) + " (" + std::to_string(done + 1) +
                                            " of " + std::to_string(frameCount) + ")"
                                      : std::string();
        const auto share = [&](double doneOfFrame) {
            bar.show((static_cast<double>(done) + doneOfFrame) / static_cast<double>(frameCount), label);
        };
        renderer.render(frame, share);
        share(1.0);
    }
}

}  // namespace Tw::Tools::Twfx
