#include "host/ae/HostSuites.h"

#include <type_traits>

namespace Tw::Host::AE {
namespace {

// Calls visit(name, version, slot) for every suite, in the order of acquisition.
template <class Suites, class Visit>
void forEachSuite(Suites& suites, Visit&& visit) {
    visit(kPFColorParamSuite, kPFColorParamSuiteVersion1, suites.colorParam);
    visit(kPFAngleParamSuite, kPFAngleParamSuiteVersion1, suites.angleParam);
    // The SDK numbers this layout version 2 and names it after the first.
    visit(kPFParamUtilsSuite, kPFParamUtilsSuiteVersion1, suites.paramUtils);
    visit(kPFWorldSuite, kPFWorldSuiteVersion2, suites.world);
    visit(kPFPixelFormatSuite, kPFPixelFormatSuiteVersion1, suites.pixelFormat);
    visit(kAEGPRenderSuite, kAEGPRenderSuiteVersion5, suites.render);
    visit(kAEGPLayerRenderOptionsSuite, kAEGPLayerRenderOptionsSuiteVersion1, suites.layerRenderOptions);
    visit(kPFUtilitySuite, kPFUtilitySuiteVersion2, suites.utility);
    visit(kPrSDKOpaqueEffectDataSuite, kPrSDKOpaqueEffectDataSuiteVersion2, suites.opaqueEffectData);
}

}  // namespace

void HostSuites::acquire(const SPBasicSuite* basic) {
    release();
    basic_ = basic;
    if (!basic_) return;
    forEachSuite(*this, [&](const char* name, int32_t version, auto& slot) {
        const void* suite = nullptr;
        if (basic_->AcquireSuite(name, version, &suite) == kSPNoError && suite)
            slot = static_cast<std::remove_reference_t<decltype(slot)>>(suite);
    });
}

void HostSuites::release() noexcept {
    if (!basic_) return;
    forEachSuite(*this, [&](const char* name, int32_t version, auto& slot) {
        if (slot) basic_->ReleaseSuite(name, version);
        slot = nullptr;
    });
    basic_ = nullptr;
}

}  // namespace Tw::Host::AE
