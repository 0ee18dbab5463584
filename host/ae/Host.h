// Tw::Host::AE::Host: the After Effects adapter, made afresh for each command the host sends an effect.
//
// An entry point builds the effect (a plug-in class derived from this one) on its stack, binds it to the
// host's structures, dispatches the one command and destroys it: nothing of ours outlives the call but
// what the host stores (parameter values, text handles, the pre-render array). The operations below are
// the adapter's table; an effect overrides only its names, its parameter list and its rendering, and the
// plug-in template (FilterPlugin) supplies the rest. Failures travel as exceptions inside and turn into
// host error codes in `dispatch`, so that nothing ever crosses the entry point.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "host/ae/CheckoutRecord.h"
#include "host/ae/CommandHandler.h"
#include "host/ae/HostSuites.h"
#include "host/ae/sdk/AeSdk.h"
#include "host/param/Parameters.h"
#include "image/core/CpuFeatures.h"
#include "image/core/ImageBuffer.h"
#include "image/graph/GraphHost.h"
#include "image/graph/LayerRequest.h"
#include "image/graph/Progress.h"

namespace Tw::Host::AE {

namespace Param = ::Tw::Host::Param;
using Image::ImageBuffer;
using Image::PixelRect;

class LayerSet;

class Host : public Image::ImageHost {
public:
    // A host error code thrown inside the adapter; the dispatcher returns it with no message, since the
    // host reports its own codes.
    struct Error {
        PF_Err code;
    };

    Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    // Binds the call's structures and acquires the suites; `parameterIds` is the effect's table of disk
    // identifiers, or null to number the parameters in order.
    void bind(PF_Cmd command, PF_InData* in, PF_OutData* out, PF_ParamDef** callParams, PF_LayerDef* outputWorld,
              void* extraData, const int32_t* ids);
    // Runs the bound command and returns what the entry point answers the host.
    PF_Err dispatch();

    // The adapter's operations, in table order.
    virtual void about() {}
    virtual bool acceptParameter(const Param::ParamRecord& /*record*/) { return true; }
    virtual bool filterParameter(const Param::ParamRecord& record, PF_ParamDef& definition);
    virtual bool customParameterSize(const Param::ParamRecord& record, int32_t& width, int32_t& height);
    virtual PF_Err paramsSetup();
    virtual PF_Err smartPreRender();
    virtual PF_Err render();
    virtual PF_Err userChangedParam();
    virtual PF_Err updateParamsUI();
    virtual bool wantsCustomUI(PF_CustomUIInfo& info);
    virtual PF_Err arbitraryCallback();
    virtual ~Host();
    virtual std::unique_ptr<Param::Parameters> newParameters();
    virtual std::unique_ptr<Param::Parameters> cloneParameters(const Param::Parameters& other);
    virtual void defineParameters(Param::Parameters& list) = 0;
    virtual void beforeRender(Param::Parameters& /*params*/, const PixelRect& /*rect*/) {}
    virtual void beforeRenderHost(Param::Parameters& /*params*/, const PixelRect& /*rect*/) {}
    virtual void preRenderEnd() {}
    virtual void renderFrame(Param::Parameters& params, ImageBuffer& in, ImageBuffer& out, ImageBuffer& aux,
                             Image::LayerImages layers) = 0;
    virtual void renderWithHooks(Param::Parameters& params, ImageBuffer& in, ImageBuffer& out, ImageBuffer& aux,
                                 Image::LayerImages layers);
    virtual void renderWithLayers(Param::Parameters& params, ImageBuffer& in, ImageBuffer& out, ImageBuffer& aux,
                                  LayerSet& layers);
    virtual void renderEnd() {}
    virtual PixelRect outputRect(Param::Parameters& /*params*/, const PixelRect& rect) { return rect; }
    virtual PixelRect inputRect(Param::Parameters& /*params*/, const PixelRect& request, const PixelRect& /*limit*/,
                                std::vector<Image::LayerRequest>& /*requests*/) {
        return request;
    }
    virtual PixelRect inputRectExtra(const PixelRect& rect) { return rect; }
    // Turns the layers the chain reads into checkout requests; the chain already asks by ordinal.
    virtual void layerRequests(Param::Parameters& /*params*/, std::vector<Image::LayerRequest>& /*requests*/) {}
    virtual const char* makerId() const { return "com.tesselworks.effects"; }
    virtual const char* makerName() const { return "Tesselworks"; }
    virtual const char* effectName() const = 0;
    virtual const char* categorySuffix() const { return ""; }
    virtual const char* versionString() const { return nullptr; }
    virtual void versionNumbers(int32_t& /*major*/, int32_t& /*minor*/, int32_t& /*bugfix*/) const {}
    // Kept in the table for effects that answer them; the adapter itself reads none of the three.
    virtual bool reservedFlagA() const { return false; }
    virtual const char* hostSuffix() const { return "_AE"; }
    virtual bool supportsDeepColor() const { return true; }
    virtual bool skipExtraFormats() const { return false; }
    virtual bool supportsYUV() const { return false; }
    virtual bool reservedFlagB() const { return true; }
    virtual bool reservedFlagC() const { return false; }
    // Further layers keep their own pixel format instead of being converted to the output's.
    virtual bool layersKeepFormat() const { return false; }
    // False asks the host for the whole input instead of the region the chain needs.
    virtual bool usesInputRectForMain() const { return true; }
    virtual void tileSize(Param::Parameters& /*params*/, int32_t& /*width*/, int32_t& /*height*/) const {}
    virtual bool wantsUserChangedParam() const { return false; }
    virtual bool wantsUpdateParamsUI() const { return false; }
    virtual void parameterChanged(Param::Parameters& /*params*/, int /*index*/) {}

    // What the filter graph asks of its host.
    void thread(Image::ThreadFunction function, void* closure, uint32_t threads);
    void checkAbort(uint32_t threadIndex);
    void reportProgress(uint32_t threadIndex, uint64_t done, uint64_t total);
    Image::ProgressLevels& progressLevels() { return progressLevels_; }
    Image::CpuFeatures cpuFeatures() const { return Image::cpuFeatures(); }
    std::byte* allocatePixels(std::size_t bytes) override;
    void releasePixels(std::byte* pixels, std::size_t bytes) noexcept override;
    const ImageBuffer* outputFrame() const override { return outputFrame_; }

    // Host version of `applId` ('PrMr' for Premiere Pro) as major << 8 | minor, or 0 when the host is
    // another application or can't tell.
    int32_t hostVersion(int32_t applId) const;
    bool isPremiere() const;
    // The pixel format of a world the host handed over, as letters in memory order.
    Image::PixelFormat formatOf(const PF_EffectWorld& world) const;
    // Wraps a host world, shifted by `origin`; a world without pixels gives an empty image.
    ImageBuffer wrapWorld(const PF_EffectWorld* world, int32_t originX = 0, int32_t originY = 0);
    // Host parameter index of the `ordinal`-th layer parameter (0: the effect's own layer).
    int32_t layerIndex(const Param::Parameters& params, int ordinal) const;

    // The call's structures.
    PF_InData* inData = nullptr;
    PF_OutData* outData = nullptr;
    PF_ParamDef** params = nullptr;
    PF_LayerDef* output = nullptr;
    void* extra = nullptr;
    HostSuites suites;
    std::vector<CommandHandler*> handlers;
    const int32_t* parameterIds = nullptr;
    // Workers to use; 0 asks the host at every call.
    uint32_t threadCount = 0;
    PF_Cmd command = 0;
    std::vector<CheckoutRecord> checkouts;
    // The render's resolution as a fraction of full resolution; effects scale radii by it.
    double downsampleX = 1.0;
    double downsampleY = 1.0;

    int32_t abortCode() const { return abortCode_.load(std::memory_order_relaxed); }

private:
    PF_Err runCommand();
    PF_Err globalSetup();
    void registerPixelFormats();
    bool walkHandlers(bool before);
    void setErrorMessage(const char* message);
    [[noreturn]] void stop(int32_t code);

    // Written by the master thread only, read by every worker; once set it never goes back.
    std::atomic<int32_t> abortCode_{PF_Err_NONE};
    Image::ProgressLevels progressLevels_;
    // The host's handle calls aren't safe when workers allocate at once.
    std::mutex handleMutex_;
    const ImageBuffer* outputFrame_ = nullptr;
    // Owned by the handler walk of one phase.
    ScratchHolder scratch_;

};

static_assert(Image::GraphHost<Host>);

}  // namespace Tw::Host::AE
