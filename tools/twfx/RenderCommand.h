// `twfx render`: one image, or each frame of a numbered sequence, through one effect.
#pragma once

#include "tools/twfx/CommandLine.h"
#include "tools/twfx/Twfx.h"

namespace Tw::Tools::Twfx {

// Everything that can fail before the first image is read (the effect, its labels and values, the
// preset, the output's format and directory) is checked first. Throws ToolError.
void runRender(const RenderRequest& request, const Console& console);

}  // namespace Tw::Tools::Twfx
