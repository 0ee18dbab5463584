// The host suites the adapter holds for one command: acquired in this order when it binds, released in
// the same order with the same versions when it goes. A suite the host refuses stays null, and every use
// tests it.
#pragma once

#include "host/ae/sdk/AeSdk.h"

namespace Tw::Host::AE {

struct HostSuites {
    HostSuites() = default;
    HostSuites(const HostSuites&) = delete;
    HostSuites& operator=(const HostSuites&) = delete;
    ~HostSuites() { release(); }

    void acquire(const SPBasicSuite* basic);
    void release() noexcept;

    const PF_ColorParamSuite1* colorParam = nullptr;
    const PF_AngleParamSuite1* angleParam = nullptr;
    const PF_ParamUtilsSuite1* paramUtils = nullptr;
    const PF_WorldSuite2* world = nullptr;
    const PF_PixelFormatSuite1* pixelFormat = nullptr;
    const AEGP_RenderSuite5* render = nullptr;
    const AEGP_LayerRenderOptionsSuite1* layerRenderOptions = nullptr;
    const PF_UtilitySuite2* utility = nullptr;
    const PrSDKOpaqueEffectDataSuite* opaqueEffectData = nullptr;

private:
    const SPBasicSuite* basic_ = nullptr;
};

}  // namespace Tw::Host::AE
