// The PICA basic suite and the suites it hands out: colour and angle parameters, parameter UI updates,
// worlds, and pixel formats; and, empty, the suites the adapter only acquires and releases. Every
// acquisition is counted by name and version, and the count must come back to zero by the end of each
// command.
#include <cstdlib>
#include <cstring>
#include <string>

#include "tools/aehost/HostCallbacks.h"
#include "tools/aehost/HostState.h"
#include "tools/aehost/UnexpectedCall.h"

namespace Tw::Tools::AeHost {
namespace {

// The host of a suite call: through effect_ref where the call has one, the thread's otherwise.
HostState* hostOf(PF_ProgPtr effectRef, const char* call) {
    if (CommandState* command = commandOf(effectRef)) return &command->host;
    if (HostState* host = HostState::current())
        host->audit.fault(std::string(call) + " with a bad effect_ref");
    return nullptr;
}

PF_Err colorFromDef(PF_ProgPtr effectRef, const PF_ParamDef* definition, PF_PixelFloat* color) {
    HostState* host = hostOf(effectRef, "PF_GetFloatingPointColorFromColorDef");
    if (!host || !definition || !color) return PF_Err_BAD_CALLBACK_PARAM;
    const PF_Pixel& value = definition->u.cd.value;
    if (const PF_PixelFloat* set = host->parameters.colorSet(definition->uu.id, value)) {
        *color = *set;
        return PF_Err_NONE;
    }
    const auto unit = [](A_u_char component) { return static_cast<PF_FpShort>(component / 255.0); };
    *color = PF_PixelFloat{unit(value.alpha), unit(value.red), unit(value.green), unit(value.blue)};
    return PF_Err_NONE;
}

PF_Err angleFromDef(PF_ProgPtr effectRef, const PF_ParamDef* definition, A_FpLong* degrees) {
    HostState* host = hostOf(effectRef, "PF_GetFloatingPointValueFromAngleDef");
    if (!host || !definition || !degrees) return PF_Err_BAD_CALLBACK_PARAM;
    *degrees = definition->u.ad.value / 65536.0;
    return PF_Err_NONE;
}

PF_Err updateParamUI(PF_ProgPtr effectRef, PF_ParamIndex index, const PF_ParamDef* definition) {
    HostState* host = hostOf(effectRef, "PF_UpdateParamUI");
    if (!host || !definition) return PF_Err_BAD_CALLBACK_PARAM;
    const std::lock_guard lock(host->mutex);
    host->paramUIUpdates.push_back({index, *definition});
    return PF_Err_NONE;
}

PF_Err newWorldOf(PF_ProgPtr effectRef, A_long width, A_long height, bool clear, PF_PixelFormat format,
                  PF_EffectWorld* world) {
    HostState* host = hostOf(effectRef, "a new world");
    if (!host || !world || width < 0 || height < 0) return PF_Err_BAD_CALLBACK_PARAM;
    int depth = 0;
    ComponentOrder order{};
    if (!describeFormat(format, depth, order)) return PF_Err_BAD_CALLBACK_PARAM;
    if (host->refuseAllocation()) return PF_Err_OUT_OF_MEMORY;
    LentWorld made = host->makeWorld(width, height, format, 0, 0, clear, "a world the effect made");
    *world = made->world();
    const std::lock_guard lock(host->mutex);
    host->effectWorlds.emplace(world->data, std::move(made));
    return PF_Err_NONE;
}

PF_Err disposeWorldOf(PF_ProgPtr effectRef, PF_EffectWorld* world) {
    HostState* host = hostOf(effectRef, "a world's disposal");
    if (!host || !world) return PF_Err_BAD_CALLBACK_PARAM;
    LentWorld disposed;
    {
        const std::lock_guard lock(host->mutex);
        const auto found = host->effectWorlds.find(world->data);
        if (found != host->effectWorlds.end()) {
            disposed = std::move(found->second);
            host->effectWorlds.erase(found);
        }
    }
    if (!disposed) {
        host->audit.fault("disposal of a world the effect didn't make");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    *world = PF_EffectWorld{};
    return PF_Err_NONE;
}

PF_Err formatOfWorld(const PF_EffectWorld* world, A_u_long* format) {
    HostState* host = HostState::current();
    const auto known = host ? host->formatOf(world) : std::nullopt;
    if (!known || !format) {
        if (host) host->audit.fault("the pixel format of a world the host doesn't know");
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    *format = static_cast<A_u_long>(*known);
    return PF_Err_NONE;
}

PF_Err addPixelFormat(PF_ProgPtr effectRef, A_u_long format, int suiteVersion) {
    CommandState* command = commandOf(effectRef);
    HostState* host = hostOf(effectRef, "AddSupportedPixelFormat");
    if (!host) return PF_Err_BAD_CALLBACK_PARAM;
    if (command->command != PF_Cmd_GLOBAL_SETUP)
        host->audit.fault("a pixel format added outside PF_Cmd_GLOBAL_SETUP");
    const std::lock_guard lock(host->mutex);
    host->pixelFormats.push_back({format, suiteVersion});
    return PF_Err_NONE;
}

PF_Err clearPixelFormats(PF_ProgPtr effectRef) {
    HostState* host = hostOf(effectRef, "ClearSupportedPixelFormats");
    if (!host) return PF_Err_BAD_CALLBACK_PARAM;
    const std::lock_guard lock(host->mutex);
    host->pixelFormats.clear();
    return PF_Err_NONE;
}

PF_ColorParamSuite1 makeColorParamSuite() {
    return {&colorFromDef};
}

PF_AngleParamSuite1 makeAngleParamSuite() {
    return {&angleFromDef};
}

PF_ParamUtilsSuite1 makeParamUtilsSuite() {
    PF_ParamUtilsSuite1 suite;
    suite.PF_UpdateParamUI = &updateParamUI;
    suite.PF_GetCurrentStateObsolete = unexpected<decltype(suite.PF_GetCurrentStateObsolete)>();
    suite.PF_HasParamChangedObsolete = unexpected<decltype(suite.PF_HasParamChangedObsolete)>();
    suite.PF_HaveInputsChangedOverTimeSpanObsolete =
        unexpected<decltype(suite.PF_HaveInputsChangedOverTimeSpanObsolete)>();
    suite.PF_IsIdenticalCheckout = unexpected<decltype(suite.PF_IsIdenticalCheckout)>();
    suite.PF_FindKeyframeTime = unexpected<decltype(suite.PF_FindKeyframeTime)>();
    suite.PF_GetKeyframeCount = unexpected<decltype(suite.PF_GetKeyframeCount)>();
    suite.PF_CheckoutKeyframe = unexpected<decltype(suite.PF_CheckoutKeyframe)>();
    suite.PF_CheckinKeyframe = unexpected<decltype(suite.PF_CheckinKeyframe)>();
    suite.PF_KeyIndexToTime = unexpected<decltype(suite.PF_KeyIndexToTime)>();
    return suite;
}

PF_WorldSuite2 makeWorldSuite() {
    PF_WorldSuite2 suite;
    suite.PF_NewWorld = [](PF_ProgPtr effectRef, A_long width, A_long height, PF_Boolean clear,
                           PF_PixelFormat format, PF_EffectWorld* world) {
        return newWorldOf(effectRef, width, height, clear != 0, format, world);
    };
    suite.PF_DisposeWorld = &disposeWorldOf;
    suite.PF_GetPixelFormat = [](const PF_EffectWorld* world, PF_PixelFormat* format) {
        A_u_long code = 0;
        const PF_Err error = formatOfWorld(world, &code);
        if (!error) *format = static_cast<PF_PixelFormat>(code);
        return error;
    };
    return suite;
}

PF_PixelFormatSuite1 makePixelFormatSuite1() {
    PF_PixelFormatSuite1 suite;
    suite.AddSupportedPixelFormat = [](PF_ProgPtr effectRef, PrPixelFormat format) {
        return addPixelFormat(effectRef, format, 1);
    };
    suite.ClearSupportedPixelFormats = &clearPixelFormats;
    suite.NewWorldOfPixelFormat = [](PF_ProgPtr effectRef, A_u_long width, A_u_long height,
                                     PF_NewWorldFlags flags, PrPixelFormat format, PF_EffectWorld* world) {
        return newWorldOf(effectRef, static_cast<A_long>(width), static_cast<A_long>(height),
                          (flags & PF_NewWorldFlag_CLEAR_PIXELS) != 0, static_cast<PF_PixelFormat>(format),
                          world);
    };
    suite.DisposeWorld = &disposeWorldOf;
    suite.GetPixelFormat = [](PF_EffectWorld* world, PrPixelFormat* format) {
        A_u_long code = 0;
        const PF_Err error = formatOfWorld(world, &code);
        if (!error) *format = static_cast<PrPixelFormat>(code);
        return error;
    };
    suite.GetBlackForPixelFormat = unexpected<decltype(suite.GetBlackForPixelFormat)>();
    suite.GetWhiteForPixelFormat = unexpected<decltype(suite.GetWhiteForPixelFormat)>();
    suite.ConvertColorToPixelFormattedData = unexpected<decltype(suite.ConvertColorToPixelFormattedData)>();
    return suite;
}

PF_PixelFormatSuite2 makePixelFormatSuite2() {
    PF_PixelFormatSuite2 suite;
    suite.PF_AddSupportedPixelFormat = [](PF_ProgPtr effectRef, PF_PixelFormat format) {
        return addPixelFormat(effectRef, static_cast<A_u_long>(format), 2);
    };
    suite.PF_ClearSupportedPixelFormats = &clearPixelFormats;
    return suite;
}

// A suite the adapter acquires without calling: any call through it is a fault.
struct UncalledSuite {
    using Function = PF_Err (*)();
    Function functions[64];
    UncalledSuite() {
        for (Function& function : functions)
            function = unexpected<Function>();
    }
};

const PF_ColorParamSuite1 kColorParamSuite = makeColorParamSuite();
const PF_AngleParamSuite1 kAngleParamSuite = makeAngleParamSuite();
const PF_ParamUtilsSuite1 kParamUtilsSuite = makeParamUtilsSuite();
const PF_WorldSuite2 kWorldSuite = makeWorldSuite();
const PF_PixelFormatSuite1 kPixelFormatSuite1 = makePixelFormatSuite1();
const PF_PixelFormatSuite2 kPixelFormatSuite2 = makePixelFormatSuite2();
const UncalledSuite kUncalledSuite;

bool named(const char* name, const char* expected) {
    return std::strcmp(name, expected) == 0;
}

// The table for `name` and `version` as this host's settings offer it, or null.
const void* findSuite(const HostSettings& settings, const char* name, int version) {
    const bool premiere = settings.application == Application::PremierePro;
    if (named(name, kPFColorParamSuite) && version == kPFColorParamSuiteVersion1) return &kColorParamSuite;
    if (named(name, kPFAngleParamSuite) && version == kPFAngleParamSuiteVersion1) return &kAngleParamSuite;
    if (named(name, kPFParamUtilsSuite) && version == kPFParamUtilsSuiteVersion1) return &kParamUtilsSuite;
    if (named(name, kPFWorldSuite) && version == kPFWorldSuiteVersion2) return &kWorldSuite;
    if (named(name, kPFPixelFormatSuite) && version == kPFPixelFormatSuiteVersion1)
        return &kPixelFormatSuite1;
    if (named(name, kPFPixelFormatSuite) && version == kPFPixelFormatSuiteVersion2 &&
        settings.pixelFormatSuite2)
        return &kPixelFormatSuite2;
    if (!settings.optionalSuites) return nullptr;
    const bool aeOnly =
        (named(name, kAEGPRenderSuite) && version == kAEGPRenderSuiteVersion5) ||
        (named(name, kAEGPLayerRenderOptionsSuite) && version == kAEGPLayerRenderOptionsSuiteVersion1);
    const bool premiereOnly =
        (named(name, kPFUtilitySuite) && version == kPFUtilitySuiteVersion2) ||
        (named(name, kPrSDKOpaqueEffectDataSuite) && version == kPrSDKOpaqueEffectDataSuiteVersion2);
    return (aeOnly && !premiere) || (premiereOnly && premiere) ? &kUncalledSuite : nullptr;
}

SPErr acquireSuite(const char* name, int version, const void** suite) {
    HostState* host = HostState::current();
    if (!host || !name || !suite) return kSPBadParameterError;
    const void* table = findSuite(host->settings, name, version);
    if (!table) return kSPSuiteNotFoundError;
    const std::lock_guard lock(host->mutex);
    ++host->acquiredSuites[{name, version}];
    *suite = table;
    return kSPNoError;
}

SPErr releaseSuite(const char* name, int version) {
    HostState* host = HostState::current();
    if (!host || !name) return kSPBadParameterError;
    const std::lock_guard lock(host->mutex);
    const auto found = host->acquiredSuites.find({name, version});
    if (found == host->acquiredSuites.end()) {
        host->audit.fault(std::string("ReleaseSuite of ") + name + " version " + std::to_string(version) +
                          ", which isn't acquired");
        return kSPBadParameterError;
    }
    if (--found->second == 0) host->acquiredSuites.erase(found);
    return kSPNoError;
}

SPBasicSuite makeBasicSuite() {
    SPBasicSuite suite;
    suite.AcquireSuite = &acquireSuite;
    suite.ReleaseSuite = &releaseSuite;
    suite.IsEqual = [](const char* a, const char* b) -> SPBoolean {
        return a && b && std::strcmp(a, b) == 0;
    };
    suite.AllocateBlock = [](size_t size, void** block) -> SPErr {
        *block = std::malloc(size ? size : 1);
        return *block ? kSPNoError : kSPBadParameterError;
    };
    suite.FreeBlock = [](void* block) -> SPErr {
        std::free(block);
        return kSPNoError;
    };
    suite.ReallocateBlock = [](void* block, size_t size, void** moved) -> SPErr {
        *moved = std::realloc(block, size ? size : 1);
        return *moved ? kSPNoError : kSPBadParameterError;
    };
    suite.Undefined = unexpected<decltype(suite.Undefined)>();
    return suite;
}

const SPBasicSuite kBasicSuite = makeBasicSuite();

}  // namespace

const SPBasicSuite& basicSuite() {
    return kBasicSuite;
}

}  // namespace Tw::Tools::AeHost
