// twfx's command line, on any words: the bytes split at NUL into arguments and parsed, and for a render
// its effect, settings, layer labels and frame names resolved as the tool resolves them before it opens a
// file. Each may be refused with the tool's own error; nothing may step outside memory or overflow.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "tools/common/ParameterLabels.h"
#include "tools/common/ParameterValues.h"
#include "tools/common/ToolError.h"
#include "tools/twfx/CommandLine.h"
#include "tools/twfx/EffectLookup.h"
#include "tools/twfx/FrameSequence.h"

namespace Twfx = Tw::Tools::Twfx;

namespace {

void resolve(const Twfx::RenderRequest& request) {
    const Twfx::EffectEntry& effect = Twfx::findEffect(request.effect);
    Tw::Host::Param::Parameters params;
    Twfx::defineParameters(effect, params);
    std::ostringstream warnings;
    for (const Twfx::Assignment& setting : request.settings) {
        Tw::Tools::setParameterFromText(params,
                                        Tw::Tools::findParameter(params, setting.label, effect.displayName),
                                        setting.value, warnings);
    }
    for (const Twfx::Assignment& layer : request.layers)
        Tw::Tools::findParameter(params, layer.label, effect.displayName);
    if (request.frames) {
        for (const int frame : {request.frames->first, request.frames->last}) {
            Twfx::pathOfFrame(request.input, frame);
            Twfx::pathOfFrame(request.output, frame);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string> arguments(1);
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == 0) {
            arguments.emplace_back();
        } else {
            arguments.back() += static_cast<char>(data[i]);
        }
    }
    try {
        const Twfx::Request request = Twfx::parseCommandLine(arguments);
        if (const auto* render = std::get_if<Twfx::RenderRequest>(&request)) resolve(*render);
    } catch (const Tw::Tools::ToolError&) {
    }
    return 0;
}
