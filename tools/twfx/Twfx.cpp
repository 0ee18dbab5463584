#include "tools/twfx/Twfx.h"

#include <exception>
#include <new>
#include <variant>

#include "tools/common/ToolError.h"
#include "tools/twfx/CommandLine.h"
#include "tools/twfx/EffectInfo.h"
#include "tools/twfx/HelpText.h"
#include "tools/twfx/RenderCommand.h"

namespace Tw::Tools::Twfx {
namespace {

struct RequestRunner {
    const Console& console;

    void operator()(const HelpRequest&) const { writeHelp(console.out); }
    void operator()(const VersionRequest&) const { console.out << "twfx " << TW_VERSION << "\n"; }
    void operator()(const ListRequest&) const { listEffects(console.out); }
    void operator()(const ParamsRequest& request) const { describeEffect(request, console.out); }
    void operator()(const RenderRequest& request) const { runRender(request, console); }
};

}  // namespace

int runTwfx(std::span<const std::string> arguments, const Console& console) {
    return runCommand("twfx", console.err,
                      [&] { std::visit(RequestRunner{console}, parseCommandLine(arguments)); });
}

}  // namespace Tw::Tools::Twfx
