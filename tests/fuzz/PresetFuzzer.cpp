// Presets, on any bytes: twfx's reader, which checks every line, into every effect's parameters and into a
// list of every kind of record; and the parameter list's own reader, which stores what it reads as it is.
// Either may refuse the text, twfx's with its own error; neither may step outside memory or overflow.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "tools/common/ToolError.h"
#include "tools/twfx/EffectLookup.h"
#include "tools/twfx/Presets.h"

namespace {

namespace Twfx = Tw::Tools::Twfx;
namespace Param = Tw::Host::Param;
using Param::ParamRecord;

void declareEveryKind(Param::Parameters& list) {
    list.records = {ParamRecord::intSlider("Radius", 10, 0, 100),
                    ParamRecord::floatSlider("Amount", 25, 0, 100, Param::ParamFlag::Percent),
                    ParamRecord::checkbox("Invert", false),
                    ParamRecord::text("Note", "plain"),
                    ParamRecord::popup("Mode", {"Normal", "Mask"}, 0),
                    ParamRecord::stringPopup("Preset", {"Soft", "Strong"}, "Soft"),
                    ParamRecord::color("Tint", {1.0, 0.5, 0.25}),
                    ParamRecord::point("Center", {0.5, 0.5}),
                    ParamRecord::groupStart("Mask"),
                    ParamRecord::groupEnd(),
                    ParamRecord::layer("Key Source")};
}

void applyChecked(Param::Parameters& params, const std::string& text, const std::string& effectName) {
    std::istringstream in(text);
    std::ostringstream warnings;
    try {
        Twfx::applyPreset(params, in, "fuzz.preset", effectName, warnings);
    } catch (const Tw::Tools::ToolError&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    for (const Twfx::EffectEntry& effect : Tw::Plugins::effectRegistry<Twfx::StandaloneHost>()) {
        Param::Parameters params;
        Twfx::defineParameters(effect, params);
        applyChecked(params, text, effect.displayName);
    }
    Param::Parameters everyKind;
    declareEveryKind(everyKind);
    applyChecked(everyKind, text, "Fx");

    // The list's own reader takes a file.
    static const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("tw-fuzz-preset-" + std::to_string(::getpid()));
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
    everyKind.restore(path);
    return 0;
}
