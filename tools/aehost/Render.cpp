#include "tools/aehost/Render.h"

#include "tools/aehost/LoadedEffect.h"
#include "tools/common/FrameConversion.h"
#include "tools/common/ImageFile.h"

namespace Tw::Tools::AeHost {
namespace {

double fractionOf(const PF_RationalScale& scale) {
    return static_cast<double>(scale.num) / scale.den;
}

// The image as the host hands over a layer at the render's downsampling: scaled to it, as twfx scales it.
FileImage readAtResolution(const std::string& path, const HostSettings& settings) {
    FileImage image = readImageFile(path);
    const double x = fractionOf(settings.downsampleX);
    const double y = fractionOf(settings.downsampleY);
    return x == 1.0 && y == 1.0 ? image : resizedImage(image, x, y);
}

}  // namespace

void runRender(const RenderRequest& request, const Console& console) {
    checkImageOutputPath(request.output);
    LoadedEffect loaded(request.bundle, request.effect, console.err);
    FileImage image = readAtResolution(request.input, request.host);
    HostSettings settings = request.host;
    if (!request.depthGiven) settings.depth = depthForFile(image.spec);
    const ComponentOrder order =
        settings.application == Application::PremierePro ? ComponentOrder::Bgra : ComponentOrder::Argb;
    const Image::PixelFormat format = frameFormat(settings.depth, order);

    SimulatedHost& host = loaded.setUp(settings);
    const Image::ImageBuffer input = frameFromFile(image, format);
    host.setInput(Frame::copyOf(input));
    for (const Assignment& setting : request.settings)
        host.set(setting.label, setting.value, &console.err);
    for (const Assignment& layer : request.layers)
        host.setLayer(layer.label,
                      Frame::copyOf(frameFromFile(readAtResolution(layer.value, settings), format)));

    if (request.reopen) loaded.expectSuccess(host.saveAndReopen(), "reopening the project");
    const bool smart = request.mode == RenderMode::Smart;
    RenderOutcome outcome = smart ? host.renderSmart() : host.render();
    loaded.expectSuccess(outcome.error, smart ? "the smart render" : "PF_Cmd_RENDER");
    storeFrame(outcome.output.view(), input, AlphaMode::Straight, image);
    writeImageFile(request.output, image);
    loaded.reportFaults();
}

}  // namespace Tw::Tools::AeHost
