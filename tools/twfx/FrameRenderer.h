// One effect rendered on frame after frame with the same settings: each frame's files are read, rendered
// and written. One effect object renders every frame of a run, so that the pixel blocks one frame
// releases serve the next.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/param/Parameters.h"
#include "image/core/ImageBuffer.h"
#include "tools/common/ImageFile.h"
#include "tools/twfx/CommandLine.h"
#include "tools/twfx/EffectLookup.h"
#include "tools/twfx/Twfx.h"

namespace Tw::Tools::Twfx {

namespace Param = ::Tw::Host::Param;

// What a layer parameter is given: an image file, or none. Without one, a parameter declared to
// default to the effect's own layer takes it, as in a host.
struct LayerSlot {
    std::string file;
    bool ownLayerByDefault = false;
};

class FrameRenderer {
public:
    // `layerSlots` has one slot per layer parameter, by its ordinal less one. The request, the parameters
    // and the console must outlive the renderer.
    FrameRenderer(const RenderRequest& request, const EffectEntry& effect, Param::Parameters& params,
                  std::vector<LayerSlot> layerSlots, const Console& console);

    // Renders frame `frame`; `progress` receives the share of the render done, from 0 to 1. Throws
    // ToolError.
    void render(int frame, const std::function<void(double)>& progress);

    // The effect that renders every frame.
    const StandaloneHost& effect() const { return *effect_; }

private:
    FileImage readScaled(const std::string& path) const;
    // The image at the render's resolution.
    FileImage scaled(FileImage image) const;
    // The image frame `frame` starts from: the input's, or for a generator without one a transparent
    // image of the size asked, 8-bit unless another depth is asked.
    FileImage startingImage(int frame) const;
    // True when the render stopped on the cancel flag; other failures are thrown as RenderFailed.
    bool renderCancelled(Image::ImageBuffer& input, Image::ImageBuffer& output,
                         const std::vector<Image::ImageBuffer*>& layers);

    const RenderRequest& request_;
    Param::Parameters& params_;
    std::vector<LayerSlot> layerSlots_;
    const Console& console_;
    const std::unique_ptr<StandaloneHost> effect_;
};

}  // namespace Tw::Tools::Twfx
