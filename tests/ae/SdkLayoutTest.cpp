// The After Effects SDK declarations against the numbers a host built with Adobe's headers uses: offsets
// and sizes on x86-64, worked out by hand from the published field lists, and the values of the
// constants whose numbers are easy to get wrong. The same checks hold when the adapter is built against
// Adobe's own headers, so a disagreement points at our declarations.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>

#include "host/ae/sdk/AeSdk.h"

namespace TW_FILE_LOCAL {

#if defined(__x86_64__)

// PF_InteractCallbacks: nine callbacks, then three and ten reserved pointers.
static_assert(offsetof(PF_InteractCallbacks, checkout_param) == 0);
static_assert(offsetof(PF_InteractCallbacks, add_param) == 16);
static_assert(offsetof(PF_InteractCallbacks, register_ui) == 40);
static_assert(offsetof(PF_InteractCallbacks, get_audio_data) == 64);
static_assert(offsetof(PF_InteractCallbacks, reserved_str) == 72);
static_assert(offsetof(PF_InteractCallbacks, reserved) == 96);
static_assert(sizeof(PF_InteractCallbacks) == 176);

static_assert(offsetof(PF_InData, utils) == 176);
static_assert(offsetof(PF_InData, effect_ref) == 184);
static_assert(offsetof(PF_InData, quality) == 192);
static_assert(offsetof(PF_InData, version) == 196);
static_assert(offsetof(PF_InData, num_params) == 208);
static_assert(offsetof(PF_InData, current_time) == 224);
static_assert(offsetof(PF_InData, time_scale) == 240);
static_assert(offsetof(PF_InData, width) == 252);
static_assert(offsetof(PF_InData, extent_hint) == 260);
static_assert(offsetof(PF_InData, downsample_x) == 284);
static_assert(offsetof(PF_InData, pixel_aspect_ratio) == 300);
static_assert(offsetof(PF_InData, in_flags) == 308);
static_assert(offsetof(PF_InData, global_data) == 312);
static_assert(offsetof(PF_InData, sequence_data) == 320);
static_assert(offsetof(PF_InData, frame_data) == 328);
static_assert(offsetof(PF_InData, total_sampL) == 344);
static_assert(offsetof(PF_InData, src_snd) == 352);
static_assert(offsetof(PF_InData, pica_basicP) == 384);
static_assert(offsetof(PF_InData, pre_effect_source_origin_x) == 392);
static_assert(offsetof(PF_InData, shutter_phase) == 400);
static_assert(sizeof(PF_InData) == 408);

static_assert(sizeof(PF_SoundWorld) == 32);
static_assert(offsetof(PF_OutData, name) == 4);
static_assert(offsetof(PF_OutData, global_data) == 40);
static_assert(offsetof(PF_OutData, num_params) == 48);
static_assert(offsetof(PF_OutData, sequence_data) == 56);
static_assert(offsetof(PF_OutData, frame_data) == 72);
static_assert(offsetof(PF_OutData, origin) == 88);
static_assert(offsetof(PF_OutData, out_flags) == 96);
static_assert(offsetof(PF_OutData, return_msg) == 100);
static_assert(sizeof(PF_OutData::return_msg) == 256);
static_assert(offsetof(PF_OutData, start_sampL) == 356);
static_assert(offsetof(PF_OutData, dest_snd) == 368);
static_assert(offsetof(PF_OutData, out_flags2) == 400);
static_assert(sizeof(PF_OutData) == 408);

static_assert(offsetof(PF_LayerDef, world_flags) == 16);
static_assert(offsetof(PF_LayerDef, data) == 24);
static_assert(offsetof(PF_LayerDef, rowbytes) == 32);
static_assert(offsetof(PF_LayerDef, extent_hint) == 44);
static_assert(offsetof(PF_LayerDef, platform_ref) == 64);
static_assert(offsetof(PF_LayerDef, pix_aspect_ratio) == 88);
static_assert(offsetof(PF_LayerDef, origin_x) == 104);
static_assert(offsetof(PF_LayerDef, dephault) == 116);
static_assert(sizeof(PF_LayerDef) == 120);

// The union is as large as its largest member, the layer; the float slider is the largest of the rest.
static_assert(sizeof(PF_FloatSliderDef) == 88);
static_assert(offsetof(PF_FloatSliderDef, precision) == 68);
static_assert(offsetof(PF_FloatSliderDef, fs_flags) == 72);
static_assert(offsetof(PF_FloatSliderDef, exponent) == 84);
static_assert(sizeof(PF_Point3DDef) == 64);
static_assert(offsetof(PF_PopupDef, u) == 8);
static_assert(offsetof(PF_CheckBoxDef, u) == 8);
static_assert(sizeof(PF_ArbitraryDef) == 32);
static_assert(sizeof(PF_ParamDefUnion) == 120);
static_assert(offsetof(PF_ParamDef, ui_flags) == 4);
static_assert(offsetof(PF_ParamDef, ui_width) == 8);
static_assert(offsetof(PF_ParamDef, param_type) == 12);
static_assert(offsetof(PF_ParamDef, name) == 16);
static_assert(offsetof(PF_ParamDef, flags) == 48);
static_assert(offsetof(PF_ParamDef, u) == 56);
static_assert(sizeof(PF_ParamDef) == 176);

static_assert(offsetof(PF_UtilCallbacks, copy) == 64);
static_assert(offsetof(PF_UtilCallbacks, fill) == 72);
static_assert(offsetof(PF_UtilCallbacks, iterate) == 88);
static_assert(offsetof(PF_UtilCallbacks, new_world) == 112);
static_assert(offsetof(PF_UtilCallbacks, dispose_world) == 120);
static_assert(offsetof(PF_UtilCallbacks, host_new_handle) == 160);
static_assert(offsetof(PF_UtilCallbacks, host_lock_handle) == 168);
static_assert(offsetof(PF_UtilCallbacks, host_unlock_handle) == 176);
static_assert(offsetof(PF_UtilCallbacks, host_dispose_handle) == 184);
static_assert(offsetof(PF_UtilCallbacks, ansi) == 208);
static_assert(offsetof(PF_UtilCallbacks, ansi) + offsetof(PF_ANSICallbacks, strcpy) == 336);
static_assert(sizeof(PF_ANSICallbacks) == 160);
static_assert(offsetof(PF_UtilCallbacks, colorCB) == 368);
static_assert(offsetof(PF_UtilCallbacks, get_platform_data) == 432);
static_assert(offsetof(PF_UtilCallbacks, host_get_handle_size) == 440);
static_assert(offsetof(PF_UtilCallbacks, iterate_generic) == 456);
static_assert(offsetof(PF_UtilCallbacks, host_resize_handle) == 464);
static_assert(offsetof(PF_UtilCallbacks, get_pixel_data16) == 536);
static_assert(sizeof(PF_UtilCallbacks) == 552);

static_assert(sizeof(PF_RenderRequest) == 44);
static_assert(offsetof(PF_PreRenderInput, bitdepth) == 44);
static_assert(offsetof(PF_PreRenderInput, gpu_data) == 48);
static_assert(sizeof(PF_PreRenderInput) == 64);
static_assert(offsetof(PF_PreRenderOutput, max_result_rect) == 16);
static_assert(offsetof(PF_PreRenderOutput, solid) == 32);
static_assert(offsetof(PF_PreRenderOutput, flags) == 34);
static_assert(offsetof(PF_PreRenderOutput, pre_render_data) == 40);
static_assert(offsetof(PF_PreRenderOutput, delete_pre_render_data_func) == 48);
static_assert(sizeof(PF_PreRenderOutput) == 56);
static_assert(offsetof(PF_CheckoutResult, par) == 32);
static_assert(offsetof(PF_CheckoutResult, solid) == 40);
static_assert(offsetof(PF_CheckoutResult, ref_width) == 44);
static_assert(offsetof(PF_CheckoutResult, reserved) == 52);
static_assert(sizeof(PF_CheckoutResult) == 76);
static_assert(offsetof(PF_PreRenderCallbacks, GuidMixInPtr) == 8);
static_assert(offsetof(PF_SmartRenderInput, pre_render_data) == 48);
static_assert(offsetof(PF_SmartRenderInput, device_index) == 68);
static_assert(offsetof(PF_SmartRenderCallbacks, checkin_layer_pixels) == 8);
static_assert(offsetof(PF_SmartRenderCallbacks, checkout_output) == 16);
static_assert(sizeof(PF_SmartRenderCallbacks) == 24);
static_assert(offsetof(PF_SmartRenderExtra, cb) == 8);
static_assert(offsetof(PF_PreRenderExtra, cb) == 16);

static_assert(offsetof(PF_ArbParamsExtra, id) == 4);
static_assert(offsetof(PF_ArbParamsExtra, u) == 8);
static_assert(offsetof(PF_ArbParamsExtra, u.flatten_func_params.buf_sizeLu) == 24);
static_assert(offsetof(PF_ArbParamsExtra, u.flatten_func_params.flat_dataPV) == 32);
static_assert(offsetof(PF_ArbParamsExtra, u.unflatten_func_params.flat_dataPV) == 24);
static_assert(offsetof(PF_ArbParamsExtra, u.interp_func_params.tF) == 32);
static_assert(offsetof(PF_ArbParamsExtra, u.interp_func_params.interpPH) == 40);
static_assert(offsetof(PF_ArbParamsExtra, u.print_func_params.print_bufferPC) == 40);
static_assert(offsetof(PF_ArbParamsExtra, u.scan_func_params.arbPH) == 32);
static_assert(sizeof(PF_ArbParamsExtra) == 48);

static_assert(sizeof(PF_CustomUIInfo) == 44);
static_assert(sizeof(SPBasicSuite) == 7 * sizeof(void*));
static_assert(sizeof(PF_ParamUtilsSuite1) == 10 * sizeof(void*));
static_assert(sizeof(PF_WorldSuite2) == 3 * sizeof(void*));
static_assert(sizeof(PF_PixelFormatSuite1) == 8 * sizeof(void*));

#elif defined(__i386__)

// 32-bit x86 as the Windows hosts lay it out: four-byte pointers, doubles aligned to eight.
static_assert(offsetof(PF_InData, src_snd) == 240);
static_assert(sizeof(PF_InData) == 280);
static_assert(offsetof(PF_OutData, dest_snd) == 344);
static_assert(sizeof(PF_OutData) == 376);
static_assert(sizeof(PF_LayerDef) == 84);
static_assert(offsetof(PF_ParamDef, u) == 56);
static_assert(sizeof(PF_ParamDef) == 152);
static_assert(offsetof(PF_UtilCallbacks, ansi) == 104);
static_assert(sizeof(PF_UtilCallbacks) == 276);
static_assert(offsetof(PF_ArbParamsExtra, u.interp_func_params.tF) == 24);
static_assert(sizeof(PF_PreRenderOutput) == 44);

#endif

// Sizes that are the same on every target.
static_assert(sizeof(A_long) == 4 && sizeof(A_short) == 2 && sizeof(PF_Boolean) == 1);
static_assert(sizeof(PF_Pixel) == 4 && sizeof(PF_Pixel16) == 8 && sizeof(PF_PixelFloat) == 16);
static_assert(sizeof(PF_Rect) == 16 && sizeof(PF_SpecVersion) == 4);

TEST(AeSdkLayout, VersionWordMatchesTheSdkPacking) {
    EXPECT_EQ(twPackVersion(4, 0, 10, PF_Stage_RELEASE, 1), 0x205601u);
    EXPECT_EQ(twPackVersion(1, 2, 3, PF_Stage_BETA, 4),
              (1u << 19) | (2u << 15) | (3u << 11) | (2u << 9) | 4u);
    // Versions above 7 spill into the high field.
    EXPECT_EQ(twPackVersion(13, 0, 0, PF_Stage_DEVELOP, 0), (1u << 26) | (5u << 19));
#ifdef PF_VERSION
    EXPECT_EQ(twPackVersion(4, 0, 10, PF_Stage_RELEASE, 1), PF_VERSION(4, 0, 10, PF_Stage_RELEASE, 1));
#endif
}

TEST(AeSdkLayout, ConstantValues) {
    EXPECT_EQ(PF_OutFlag_USE_OUTPUT_EXTENT | PF_OutFlag_I_SHRINK_BUFFER, 0x1040);
    EXPECT_EQ(PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG | PF_OutFlag2_SUPPORTS_SMART_RENDER |
                  PF_OutFlag2_AE13_5_THREADSAFE | PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA,
              0xC00408);
    EXPECT_EQ(PF_OutFlag_DEEP_COLOR_AWARE, 1 << 25);
    EXPECT_EQ(PF_OutFlag2_FLOAT_COLOR_AWARE, 1 << 12);
    EXPECT_EQ(PF_Cmd_SMART_PRE_RENDER, 23);
    EXPECT_EQ(PF_Cmd_SMART_RENDER, 24);
    EXPECT_EQ(PF_Cmd_ARBITRARY_CALLBACK, 22);
    EXPECT_EQ(PF_Err_INTERNAL_STRUCT_DAMAGED, 512);
    EXPECT_EQ(PF_Err_UNRECOGNIZED_PARAM_TYPE, 514);
    EXPECT_EQ(PF_Err_BAD_CALLBACK_PARAM, 516);
    EXPECT_EQ(PF_Interrupt_CANCEL, 517);
    EXPECT_EQ(PF_Param_FLOAT_SLIDER, 10);
    EXPECT_EQ(PF_Param_POINT_3D, 18);
    EXPECT_EQ(PF_Arbitrary_SCAN_FUNC, 10);
    EXPECT_EQ(PF_Iterations_ONCE_PER_PROCESSOR, -1);
    EXPECT_EQ(PF_LayerDefault_MYSELF, -1);
    // Pixel formats spell their code in memory order, the first letter in the lowest byte.
    EXPECT_EQ(static_cast<std::uint32_t>(PF_PixelFormat_ARGB32), 0x62677261u);
    EXPECT_EQ(static_cast<std::uint32_t>(PF_PixelFormat_ARGB128), 0x32336561u);
    EXPECT_EQ(static_cast<std::uint32_t>(PrPixelFormat_BGRA_4444_32f), 0x61724742u);
    EXPECT_EQ(static_cast<std::uint32_t>(PrPixelFormat_BGRA_4444_8u),
              static_cast<std::uint32_t>(PF_PixelFormat_BGRA32));
    // The multi-character literal 'S!Fd' puts its first letter in the highest byte.
    EXPECT_EQ(twMultiCharConstant('S', '!', 'F', 'd'), 0x53214664);
}

}  // namespace TW_FILE_LOCAL
