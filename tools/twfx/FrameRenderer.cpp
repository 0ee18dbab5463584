#include "tools/twfx/FrameRenderer.h"

#include <cstdint>
#include <new>

#include "tools/common/FrameConversion.h"
#include "tools/common/ToolError.h"
#include "tools/twfx/FrameSequence.h"

namespace Tw::Tools::Twfx {

using Image::ImageBuffer;

FrameRenderer::FrameRenderer(const RenderRequest& request, const EffectEntry& effect,
                             Param::Parameters& params, std::vector<LayerSlot> layerSlots,
                             const Console& console)
    : request_(request),
      params_(params),
      layerSlots_(std::move(layerSlots)),
      console_(console),
      effect_(effect.create()) {
    effect_->threadCount = request_.threads;
    effect_->downsampleX = request_.downsample.x;
    effect_->downsampleY = request_.downsample.y;
    effect_->setCancelFlag(console_.cancelFlag);
}

void FrameRenderer::render(int frame, const std::function<void(double)>& progress) {
    FileImage image = startingImage(frame);
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
            layerFrames[i] =
                frameFromFile(readScaled(pathOfFrame(layerSlots_[i].file, frame)), format, request_.alpha);
            layers[i] = &layerFrames[i];
        } else if (layerSlots_[i].ownLayerByDefault) {
            layers[i] = &input;
        }
    }

    // A node reports done == total as it finishes, which in a graph of one pass reaches the host
    // unfolded and would show the frame complete before its work has begun; the frame is complete
    // when render returns.
    effect_->setProgressCallback([&](uint64_t done, uint64_t total) {
        if (done < total) progress(static_cast<double>(done) / static_cast<double>(total));
        return true;
    });
    if (renderCancelled(input, output, layers)) throw ToolError(ExitCode::Cancelled, "cancelled");
    storeFrame(output, input, request_.alpha, image);
    writeImageFile(pathOfFrame(request_.output, frame), image, console_.cancelFlag);
}

FileImage FrameRenderer::readScaled(const std::string& path) const {
    return scaled(readImageFile(path));
}

FileImage FrameRenderer::scaled(FileImage image) const {
    const Downsample& scale = request_.downsample;
    return scale.x == 1.0 && scale.y == 1.0 ? image : resizedImage(image, scale.x, scale.y);
}

FileImage FrameRenderer::startingImage(int frame) const {
    if (!request_.input.empty()) return readScaled(pathOfFrame(request_.input, frame));
    const int depth = request_.depth.value_or(8);
    const OIIO::TypeDesc format = depth == 8    ? OIIO::TypeDesc::UINT8
                                  : depth == 16 ? OIIO::TypeDesc::UINT16
                                                : OIIO::TypeDesc::FLOAT;
    OIIO::ImageSpec spec(request_.size->width, request_.size->height, 4, format);
    std::vector<std::byte> pixels(spec.image_bytes());
    return scaled(FileImage{std::move(spec), std::move(pixels)});
}

bool FrameRenderer::renderCancelled(ImageBuffer& input, ImageBuffer& output,
                                    const std::vector<ImageBuffer*>& layers) {
    std::int32_t code;
    try {
        code = effect_->render(params_, input, output, layers);
    } catch (const std::bad_alloc&) {
        throw ToolError(ExitCode::RenderFailed, "render failed: out of memory");
    } catch (const std::exception& error) {
        throw ToolError(ExitCode::RenderFailed, std::string("render failed: ") + error.what());
    }
    return code != Host::Standalone::ErrorCode::kNone;
}

}  // namespace Tw::Tools::Twfx
