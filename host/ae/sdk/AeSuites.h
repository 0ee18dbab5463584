// Our own declaration of the suites the After Effects adapter asks the host for: the PICA basic suite that
// hands them out, and for each suite its published name and version numbers and, for those the adapter
// calls, the table of functions in published order. Suites the adapter only acquires and releases get an
// incomplete type. A suite's version number is what picks its layout: "PF Param Utils Suite" version 2
// is the table the SDK calls PF_ParamUtilsSuite1.
#pragma once

#include <cstddef>

#include "host/ae/sdk/AeCallbacks.h"

// Windows conventions: SPBoolean is a BOOL there, an unsigned char on the Mac.
typedef int SPErr;
typedef int SPBoolean;

inline constexpr SPErr kSPNoError = 0;
inline constexpr SPErr kSPUnimplementedError = twMultiCharConstant('!', 'I', 'M', 'P');
inline constexpr SPErr kSPBadParameterError = twMultiCharConstant('P', 'a', 'r', 'm');
inline constexpr SPErr kSPSuiteNotFoundError = twMultiCharConstant('S', '!', 'F', 'd');

inline constexpr const char kSPBasicSuite[] = "SP Basic Suite";
inline constexpr int kSPBasicSuiteVersion = 4;

// AcquireSuite fills *suite with the host's table for that name and version and counts the acquisition.
typedef struct SPBasicSuite {
    SPErr (*AcquireSuite)(const char* name, int version, const void** suite);
    SPErr (*ReleaseSuite)(const char* name, int version);
    SPBoolean (*IsEqual)(const char* token1, const char* token2);
    SPErr (*AllocateBlock)(size_t size, void** block);
    SPErr (*FreeBlock)(void* block);
    SPErr (*ReallocateBlock)(void* block, size_t newSize, void** newblock);
    SPErr (*Undefined)(void);
} SPBasicSuite;

inline constexpr const char kPFColorParamSuite[] = "PF ColorParamSuite";
inline constexpr int kPFColorParamSuiteVersion1 = 1;

// The colour in the effect's working space, unclamped.
typedef struct PF_ColorParamSuite1 {
    PF_Err (*PF_GetFloatingPointColorFromColorDef)(PF_ProgPtr effect_ref, const PF_ParamDef* color_defP,
                                                   PF_PixelFloat* fp_colorP);
} PF_ColorParamSuite1;

inline constexpr const char kPFAngleParamSuite[] = "PF AngleParamSuite";
inline constexpr int kPFAngleParamSuiteVersion1 = 1;

typedef struct PF_AngleParamSuite1 {
    PF_Err (*PF_GetFloatingPointValueFromAngleDef)(PF_ProgPtr effect_ref, const PF_ParamDef* angle_defP,
                                                   A_FpLong* fp_valueP);
} PF_AngleParamSuite1;

inline constexpr const char kPFParamUtilsSuite[] = "PF Param Utils Suite";
inline constexpr int kPFParamUtilsSuiteVersion1 = 2;
inline constexpr int kPFParamUtilsSuiteVersion3 = 3;

typedef struct {
    A_long reservedAL[4];
} PF_State;

inline constexpr A_long PF_TimeDir_GREATER_THAN = 0x0000;
inline constexpr A_long PF_TimeDir_LESS_THAN = 0x0001;
inline constexpr A_long PF_TimeDir_GREATER_THAN_OR_EQUAL = 0x1000;
inline constexpr A_long PF_TimeDir_LESS_THAN_OR_EQUAL = 0x1001;
typedef A_long PF_TimeDir;
typedef A_long PF_KeyIndex;

// The table returned for version 2 (kPFParamUtilsSuiteVersion1). PF_UpdateParamUI changes only the
// cosmetic fields of a parameter: its UI flags, size, name, twirl state and slider ranges.
typedef struct PF_ParamUtilsSuite1 {
    PF_Err (*PF_UpdateParamUI)(PF_ProgPtr effect_ref, PF_ParamIndex param_index, const PF_ParamDef* defP);
    PF_Err (*PF_GetCurrentStateObsolete)(PF_ProgPtr effect_ref, PF_State* stateP);
    PF_Err (*PF_HasParamChangedObsolete)(PF_ProgPtr effect_ref, const PF_State* stateP,
                                         PF_ParamIndex param_index, PF_Boolean* changedPB);
    PF_Err (*PF_HaveInputsChangedOverTimeSpanObsolete)(PF_ProgPtr effect_ref, const PF_State* stateP,
                                                       const A_Time* startPT0, const A_Time* durationPT0,
                                                       PF_Boolean* changedPB);
    PF_Err (*PF_IsIdenticalCheckout)(PF_ProgPtr effect_ref, PF_ParamIndex param_index, A_long what_time1,
                                     A_long time_step1, A_u_long time_scale1, A_long what_time2,
                                     A_long time_step2, A_u_long time_scale2, PF_Boolean* identicalPB);
    PF_Err (*PF_FindKeyframeTime)(PF_ProgPtr effect_ref, PF_ParamIndex param_index, A_long what_time,
                                  A_u_long time_scale, PF_TimeDir time_dir, PF_Boolean* foundPB,
                                  PF_KeyIndex* key_indexP0, A_long* key_timeP0, A_u_long* key_timescaleP0);
    PF_Err (*PF_GetKeyframeCount)(PF_ProgPtr effect_ref, PF_ParamIndex param_index, PF_KeyIndex* key_countP);
    PF_Err (*PF_CheckoutKeyframe)(PF_ProgPtr effect_ref, PF_ParamIndex param_index, PF_KeyIndex key_index,
                                  A_long* key_timeP0, A_u_long* key_timescaleP0, PF_ParamDef* paramP0);
    PF_Err (*PF_CheckinKeyframe)(PF_ProgPtr effect_ref, PF_ParamDef* paramP);
    PF_Err (*PF_KeyIndexToTime)(PF_ProgPtr effect_ref, PF_ParamIndex param_index, PF_KeyIndex key_indexP,
                                A_long* key_timeP, A_u_long* key_timescaleP);
} PF_ParamUtilsSuite1;

inline constexpr const char kPFWorldSuite[] = "PF World Suite";
inline constexpr int kPFWorldSuiteVersion1 = 1;
inline constexpr int kPFWorldSuiteVersion2 = 2;

typedef struct PF_WorldSuite2 {
    PF_Err (*PF_NewWorld)(PF_ProgPtr effect_ref, A_long widthL, A_long heightL, PF_Boolean clear_pixB,
                          PF_PixelFormat pixel_format, PF_EffectWorld* worldP);
    PF_Err (*PF_DisposeWorld)(PF_ProgPtr effect_ref, PF_EffectWorld* worldP);
    PF_Err (*PF_GetPixelFormat)(const PF_EffectWorld* worldP, PF_PixelFormat* pixel_formatP);
} PF_WorldSuite2;

// Premiere's pixel formats, four-character codes in memory order like PF_PixelFormat. The 8-bit ones
// are the same numbers as the PF_PixelFormat of the same layout.
enum PrPixelFormat : A_u_long {
    PrPixelFormat_BGRA_4444_8u = twPixelFormatFourCC('b', 'g', 'r', 'a'),
    PrPixelFormat_VUYA_4444_8u = twPixelFormatFourCC('v', 'u', 'y', 'a'),
    PrPixelFormat_ARGB_4444_8u = twPixelFormatFourCC('a', 'r', 'g', 'b'),
    PrPixelFormat_BGRA_4444_16u = twPixelFormatFourCC('B', 'g', 'r', 'a'),
    PrPixelFormat_VUYA_4444_16u = twPixelFormatFourCC('V', 'u', 'y', 'a'),
    PrPixelFormat_ARGB_4444_16u = twPixelFormatFourCC('A', 'r', 'g', 'b'),
    PrPixelFormat_BGRA_4444_32f = twPixelFormatFourCC('B', 'G', 'r', 'a'),
    PrPixelFormat_VUYA_4444_32f = twPixelFormatFourCC('V', 'U', 'y', 'a'),
    PrPixelFormat_ARGB_4444_32f = twPixelFormatFourCC('A', 'R', 'g', 'b'),
    PrPixelFormat_Invalid = twPixelFormatFourCC('b', 'a', 'd', 'f'),
    PrPixelFormat_Any = 0,
};

// Premiere's "PF Pixel Format Suite", version 1: an effect declares at GLOBAL_SETUP which formats it
// renders, and asks a world for its format while rendering.
inline constexpr const char kPFPixelFormatSuite[] = "PF Pixel Format Suite";
inline constexpr int kPFPixelFormatSuiteVersion1 = 1;
inline constexpr int kPFPixelFormatSuiteVersion2 = 2;

typedef struct PF_PixelFormatSuite1 {
    PF_Err (*AddSupportedPixelFormat)(PF_ProgPtr effect_ref, PrPixelFormat pixelFormat);
    PF_Err (*ClearSupportedPixelFormats)(PF_ProgPtr effect_ref);
    PF_Err (*NewWorldOfPixelFormat)(PF_ProgPtr effect_ref, A_u_long width, A_u_long height,
                                    PF_NewWorldFlags flags, PrPixelFormat pixelFormat, PF_EffectWorld* world);
    PF_Err (*DisposeWorld)(PF_ProgPtr effect_ref, PF_EffectWorld* world);
    PF_Err (*GetPixelFormat)(PF_EffectWorld* inWorld, PrPixelFormat* pixelFormat);
    PF_Err (*GetBlackForPixelFormat)(PrPixelFormat pixelFormat, void* pixelData);
    PF_Err (*GetWhiteForPixelFormat)(PrPixelFormat pixelFormat, void* pixelData);
    PF_Err (*ConvertColorToPixelFormattedData)(PrPixelFormat pixelFormat, float alpha, float red, float green,
                                               float blue, void* pixelData);
} PF_PixelFormatSuite1;

// After Effects' own version 2 of the same suite keeps only the two declaration calls.
typedef struct PF_PixelFormatSuite2 {
    PF_Err (*PF_AddSupportedPixelFormat)(PF_ProgPtr effect_ref, PF_PixelFormat pixel_format);
    PF_Err (*PF_ClearSupportedPixelFormats)(PF_ProgPtr effect_ref);
} PF_PixelFormatSuite2;

// Suites the adapter acquires and releases to learn whether the host offers them, without calling them.
inline constexpr const char kAEGPRenderSuite[] = "AEGP Render Suite";
inline constexpr int kAEGPRenderSuiteVersion5 = 5;
struct AEGP_RenderSuite5;

inline constexpr const char kAEGPLayerRenderOptionsSuite[] = "AEGP Layer Render Options Suite";
inline constexpr int kAEGPLayerRenderOptionsSuiteVersion1 = 1;
struct AEGP_LayerRenderOptionsSuite1;

// Premiere's utility suite, declared with its pixel format suite.
inline constexpr const char kPFUtilitySuite[] = "PF Utility Suite";
inline constexpr int kPFUtilitySuiteVersion2 = 2;
struct PF_UtilitySuite2;

inline constexpr const char kPrSDKOpaqueEffectDataSuite[] = "Opaque Effect Data Suite";
inline constexpr int kPrSDKOpaqueEffectDataSuiteVersion2 = 2;
inline constexpr int kPrSDKOpaqueEffectDataSuiteVersion = kPrSDKOpaqueEffectDataSuiteVersion2;
struct PrSDKOpaqueEffectDataSuite;
