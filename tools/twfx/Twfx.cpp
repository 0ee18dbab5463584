#include "tools/twfx/Twfx.h"

#include <exception>
#include <new>
#include <variant>

#include "tools/twfx/CommandLine.h"
#include "tools/twfx/EffectInfo.h"
#include "tools/twfx/HelpText.h"
#include "tools/twfx/RenderCommand.h"
#include "tools/twfx/ToolError.h"

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
    try {
        std::visit(RequestRunner{console}, parseCommandLine(arguments));
        return static_cast<int>(ExitCode::Success);
    } catch (const ToolError& error) {
        console.err << "twfx: " << error.what() << "\n";
        return static_cast<int>(error.code());
    } catch (const std::bad_alloc&) {
        // A frame or buffer that memory can't hold, outside the render which says so itself.
        console.err << "twfx: out of memory\n";
        return static_cast<int>(ExitCode::RenderFailed);
    } catch (const std::exception& error) {
        // Nothing outside a render is expected to throw anything else; say what it was all the same.
        console.err << "twfx: " << error.what() << "\n";
        return static_cast<int>(ExitCode::RenderFailed);
    }
}

}  // namespace Tw::Tools::Twfx
