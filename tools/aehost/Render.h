// `aehost render`: one image through one effect of a bundle, the way After Effects renders a frame.
#pragma once

#include "tools/aehost/Aehost.h"
#include "tools/aehost/CommandLine.h"

namespace Tw::Tools::AeHost {

// The output is written only when the effect rendered without error; a render with protocol faults is
// written all the same, so that it can be looked at, and ends with ExitCode::ProtocolFault. Throws
// ToolError.
void runRender(const RenderRequest& request, const Console& console);

}  // namespace Tw::Tools::AeHost
