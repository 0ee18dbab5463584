#include "tools/twfx/RenderCommand.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/common/FrameConversion.h"
#include "tools/common/ImageFile.h"
#include "tools/common/ParameterLabels.h"
#include "tools/common/ParameterValues.h"
#include "tools/common/ToolError.h"
#include "tools/common/UserText.h"
#include "tools/twfx/EffectLookup.h"
#include "tools/twfx/FrameRenderer.h"
#include "tools/twfx/FrameSequence.h"
#include "tools/twfx/Presets.h"
#include "tools/twfx/ProgressBar.h"

namespace Tw::Tools::Twfx {
namespace {

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

}  // namespace

void runRender(const RenderRequest& request, const Console& console) {
    const FrameRange range = frameRangeOf(request);
    const EffectEntry& effect = findEffect(request.effect);
    if (request.input.empty() && effect.inputs != Plugins::EffectInputs::Generator) {
        usageError(inQuotes(effect.displayName) +
                   " needs an input image: -i FILE; only a generator renders a frame of --size");
    }
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
