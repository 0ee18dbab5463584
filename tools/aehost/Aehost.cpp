#include "tools/aehost/Aehost.h"

#include <variant>

#include "tools/aehost/CommandLine.h"
#include "tools/aehost/HelpText.h"
#include "tools/aehost/Listings.h"
#include "tools/aehost/Render.h"
#include "tools/common/ToolError.h"

namespace Tw::Tools::AeHost {
namespace {

struct RequestRunner {
    const Console& console;

    void operator()(const HelpRequest&) const { writeHelp(console.out); }
    void operator()(const ListRequest& request) const { listEffects(request, console.out); }
    void operator()(const ParamsRequest& request) const { listParameters(request, console); }
    void operator()(const RenderRequest& request) const { runRender(request, console); }
};

}  // namespace

int runAehost(std::span<const std::string> arguments, const Console& console) {
    return runCommand("aehost", console.err,
                      [&] { std::visit(RequestRunner{console}, parseCommandLine(arguments)); });
}

}  // namespace Tw::Tools::AeHost
