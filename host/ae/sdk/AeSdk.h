// The one header the After Effects adapter includes for the SDK's names. By default they come from our own
// declarations beside this file; with TW_ADOBE_AE_SDK defined (the CMake option TW_ADOBE_AE_SDK_DIR) they
// come from Adobe's SDK headers instead, so the adapter can be checked against both. AeSdkExtras.h, which
// holds what is ours, is included either way.
#pragma once

#ifdef TW_ADOBE_AE_SDK

#include "AEConfig.h"
#include "AE_Effect.h"
#include "AE_EffectCB.h"
#include "AE_EffectCBSuites.h"
#include "AE_EffectPixelFormat.h"
#include "AE_EffectSuites.h"
#include "AE_GeneralPlug.h"
#include "Param_Utils.h"
#include "PrSDKAESupport.h"
#include "SPBasic.h"

// The opaque effect data suite comes with the Premiere SDK, not the After Effects one. Without it only
// its name and version are needed, since the adapter acquires and releases it without calling it.
#if __has_include("PrSDKOpaqueEffectDataSuite.h")
#include "PrSDKOpaqueEffectDataSuite.h"
#else
#define kPrSDKOpaqueEffectDataSuite "Opaque Effect Data Suite"
#define kPrSDKOpaqueEffectDataSuiteVersion2 2
#define kPrSDKOpaqueEffectDataSuiteVersion kPrSDKOpaqueEffectDataSuiteVersion2
struct PrSDKOpaqueEffectDataSuite;
#endif

#else

#include "host/ae/sdk/AeBasicTypes.h"
#include "host/ae/sdk/AeCallbacks.h"
#include "host/ae/sdk/AeCommands.h"
#include "host/ae/sdk/AeParams.h"
#include "host/ae/sdk/AeSmartRender.h"
#include "host/ae/sdk/AeSuites.h"

#endif

#include "host/ae/sdk/AeSdkExtras.h"
