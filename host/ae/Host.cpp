#include "host/ae/Host.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string>

#include "host/ae/Parameters.h"
#include "image/core/Exception.h"

namespace Tw::Host::AE {

Host::Host() = default;

// The suites go first, then the mutex with the object.
Host::~Host() {
    suites.release();
}

void Host::bind(PF_Cmd boundCommand, PF_InData* in, PF_OutData* out, PF_ParamDef** callParams,
                PF_LayerDef* outputWorld, void* extraData, const int32_t* ids) {
    command = boundCommand;
    inData = in;
    outData = out;
    params = callParams;
    output = outputWorld;
    extra = extraData;
    parameterIds = ids;
    if (!inData) return;
    suites.acquire(inData->pica_basicP);
    const auto factor = [](const PF_RationalScale& scale) {
        return scale.num > 0 && scale.den != 0 ? static_cast<double>(scale.num) / scale.den : 1.0;
    };
    downsampleX = factor(inData->downsample_x);
    downsampleY = factor(inData->downsample_y);
}

namespace {

// The one exception frame of the dispatcher: what each kind of failure answers the host.
template <class Body, class ShowMessage>
PF_Err catchFailures(Body&& body, ShowMessage&& show) {
    try {
        return body();
    } catch (const Host::Error& error) {
        return error.code;
    } catch (const std::bad_alloc&) {
        show("Out of memory!");
        return PF_Err_OUT_OF_MEMORY;
    } catch (const std::string& message) {
        show(message.c_str());
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    } catch (const std::exception& failure) {
        show(failure.what());
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    } catch (...) {
        show("Unknown internal error");
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
}

}  // namespace

PF_Err Host::dispatch() {
    const auto show = [this](const char* message) { setErrorMessage(message); };
    bool handled = false;
    PF_Err result = catchFailures([&] { return handled = walkHandlers(true), PF_Err_NONE; }, show);
    scratch_.reset();
    if (handled) return PF_Err_NONE;
    if (result == PF_Err_NONE) result = catchFailures([&] { return runCommand(); }, show);
    catchFailures([&] { return walkHandlers(false), PF_Err_NONE; }, show);
    scratch_.reset();
    return result;
}

bool Host::walkHandlers(bool before) {
    for (CommandHandler* handler : handlers) {
        if (before ? handler->preCommand(*this, command, scratch_) : handler->postCommand(*this, command, scratch_))
            return true;
    }
    return false;
}

PF_Err Host::runCommand() {
    switch (command) {
        case PF_Cmd_ABOUT:
            about();
            return PF_Err_NONE;
        case PF_Cmd_GLOBAL_SETUP:
            return globalSetup();
        case PF_Cmd_PARAMS_SETUP:
            return paramsSetup();
        case PF_Cmd_RENDER:
        case PF_Cmd_SMART_RENDER:
            return render();
        case PF_Cmd_USER_CHANGED_PARAM:
            return userChangedParam();
        case PF_Cmd_UPDATE_PARAMS_UI:
            return updateParamsUI();
        case PF_Cmd_ARBITRARY_CALLBACK:
            return arbitraryCallback();
        case PF_Cmd_SMART_PRE_RENDER:
            return smartPreRender();
        default:
            return PF_Err_NONE;
    }
}

// The host shows the message itself; it is cut to its buffer, never run past it.
void Host::setErrorMessage(const char* message) {
    if (!outData) return;
    const std::size_t length = std::min(std::strlen(message), sizeof(outData->return_msg) - 1);
    std::memcpy(outData->return_msg, message, length);
    outData->return_msg[length] = '\0';
    outData->out_flags |= PF_OutFlag_DISPLAY_ERROR_MESSAGE;
}

bool Host::filterParameter(const Param::ParamRecord& record, PF_ParamDef& definition) {
    for (CommandHandler* handler : handlers) {
        if (!handler->acceptParameter(*this, record, definition)) return false;
    }
    return acceptParameter(record);
}

bool Host::customParameterSize(const Param::ParamRecord& record, int32_t& width, int32_t& height) {
    return std::any_of(handlers.begin(), handlers.end(), [&](CommandHandler* handler) {
        return handler->customParameterSize(*this, record, width, height);
    });
}

bool Host::wantsCustomUI(PF_CustomUIInfo& info) {
    bool wanted = false;
    for (CommandHandler* handler : handlers) wanted = handler->wantsCustomUI(*this, info) || wanted;
    return wanted;
}

std::unique_ptr<Param::Parameters> Host::newParameters() {
    return std::make_unique<Parameters>(*this);
}

std::unique_ptr<Param::Parameters> Host::cloneParameters(const Param::Parameters& other) {
    const auto* bound = dynamic_cast<const Parameters*>(&other);
    auto copy = std::make_unique<Parameters>(bound ? bound->host() : *this);
    copy->assign(other);
    return copy;
}

void Host::renderWithHooks(Param::Parameters& renderParams, ImageBuffer& in, ImageBuffer& out,
                           ImageBuffer& aux, Image::LayerImages layers) {
    beforeRender(renderParams, out.rect);
    beforeRenderHost(renderParams, out.rect);
    renderFrame(renderParams, in, out, aux, layers);
}

PF_Err Host::globalSetup() {
    outData->my_version = 0x80600;
    outData->out_flags = PF_OutFlag_USE_OUTPUT_EXTENT | PF_OutFlag_I_SHRINK_BUFFER;
    if (wantsUpdateParamsUI()) outData->out_flags |= PF_OutFlag_SEND_UPDATE_PARAMS_UI;
    if (supportsDeepColor()) outData->out_flags |= PF_OutFlag_DEEP_COLOR_AWARE;
    outData->out_flags2 = PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG | PF_OutFlag2_SUPPORTS_SMART_RENDER |
                          PF_OutFlag2_AE13_5_THREADSAFE | PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA;
    if (supportsDeepColor()) outData->out_flags2 |= PF_OutFlag2_FLOAT_COLOR_AWARE;

    // Premiere Pro 9.0.2 fails to render an effect with a layer parameter once the effect has declared
    // pixel formats; such an effect declares none there and gets the host's default.
    if (hostVersion(kTwPremiereProApplId) == 0x0902) {
        const auto list = newParameters();
        defineParameters(*list);
        if (std::any_of(list->records.begin(), list->records.end(),
                        [](const auto& record) { return record.kind == Param::ParamKind::Layer; }))
            return PF_Err_NONE;
    }
    registerPixelFormats();
    return PF_Err_NONE;
}

void Host::registerPixelFormats() {
    const auto add = [this](Image::PixelFormat format) {
        const SPBasicSuite* basic = inData->pica_basicP;
        if (!basic) return;
        const void* suite = nullptr;
        int32_t version = kPFPixelFormatSuiteVersion2;
        if (basic->AcquireSuite(kPFPixelFormatSuite, version, &suite) != kSPNoError || !suite) {
            version = kPFPixelFormatSuiteVersion1;
            if (basic->AcquireSuite(kPFPixelFormatSuite, version, &suite) != kSPNoError || !suite) return;
        }
        // Both versions begin with the same call.
        static_cast<const PF_PixelFormatSuite1*>(suite)->AddSupportedPixelFormat(
            inData->effect_ref, static_cast<PrPixelFormat>(format));
        basic->ReleaseSuite(kPFPixelFormatSuite, version);
    };
    using Image::fourCC;
    add(fourCC("bgra"));
    if (supportsDeepColor() && !skipExtraFormats()) {
        for (const auto format : {fourCC("Bgra"), fourCC("Argb"), fourCC("BGra"), fourCC("ARgb")}) add(format);
    }
    if (supportsYUV()) {
        add(fourCC("vuya"));
        if (supportsDeepColor()) {
            add(fourCC("Vuya"));
            add(fourCC("VUya"));
        }
    }
}

bool Host::isPremiere() const {
    return inData && inData->appl_id == kTwPremiereProApplId;
}

}  // namespace Tw::Host::AE
