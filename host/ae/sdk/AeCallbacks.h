// Our own declaration of the After Effects effect interface's parameter blocks and callbacks: PF_InData
// and PF_OutData, the interaction and utility callbacks the host hands the effect, and the type of the
// effect's entry point. Every member sits where the SDK publishes it. Utility callbacks this project never
// calls are declared with a simpler pointer type of the same size under their published name, which keeps
// the offsets of the ones that matter.
#pragma once

#include "host/ae/sdk/AeParams.h"

struct SPBasicSuite;

typedef A_long PF_CustomEventFlags;

inline constexpr A_long PF_UIAlignment_NONE = 0;
inline constexpr A_long PF_UIAlignment_TOP = 1 << 0;
inline constexpr A_long PF_UIAlignment_LEFT = 1 << 1;
inline constexpr A_long PF_UIAlignment_BOTTOM = 1 << 2;
inline constexpr A_long PF_UIAlignment_RIGHT = 1 << 3;
typedef A_long PF_UIAlignment;

// What an effect with custom UI registers: which events it wants and how large its areas are.
struct _PF_CustomUIInfo {
    A_long reserved;
    PF_CustomEventFlags events;
    A_long comp_ui_width;
    A_long comp_ui_height;
    PF_UIAlignment comp_ui_alignment;
    A_long layer_ui_width;
    A_long layer_ui_height;
    PF_UIAlignment layer_ui_alignment;
    A_long preview_ui_width;
    A_long preview_ui_height;
    PF_UIAlignment preview_ui_alignment;
};
typedef struct _PF_CustomUIInfo PF_CustomUIInfo;

// The host freezes this block; PF_InData embeds it by value, so its size fixes every offset after it.
typedef struct {
    PF_Err (*checkout_param)(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long what_time, A_long time_step,
                             A_u_long time_scale, PF_ParamDef* param);
    PF_Err (*checkin_param)(PF_ProgPtr effect_ref, PF_ParamDef* param);
    PF_Err (*add_param)(PF_ProgPtr effect_ref, PF_ParamIndex index, PF_ParamDefPtr def);
    PF_Err (*abort)(PF_ProgPtr effect_ref);
    PF_Err (*progress)(PF_ProgPtr effect_ref, A_long current, A_long total);
    PF_Err (*register_ui)(PF_ProgPtr effect_ref, PF_CustomUIInfo* cust_info);
    PF_Err (*checkout_layer_audio)(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long start_time,
                                   A_long duration, A_u_long time_scale, PF_UFixed rate,
                                   A_long bytes_per_sample, A_long num_channels, A_long fmt_signed,
                                   PF_LayerAudio* audio);
    PF_Err (*checkin_layer_audio)(PF_ProgPtr effect_ref, PF_LayerAudio audio);
    PF_Err (*get_audio_data)(PF_ProgPtr effect_ref, PF_LayerAudio audio, PF_SndSamplePtr* data0,
                             A_long* num_samples0, PF_UFixed* rate0, A_long* bytes_per_sample0,
                             A_long* num_channels0, A_long* fmt_signed0);
    void* reserved_str[3];
    void* reserved[10];
} PF_InteractCallbacks;

// The C library as the host offers it, so that an effect need not link its own.
typedef struct {
    A_FpLong (*atan)(A_FpLong);
    A_FpLong (*atan2)(A_FpLong y, A_FpLong x);
    A_FpLong (*ceil)(A_FpLong);
    A_FpLong (*cos)(A_FpLong);
    A_FpLong (*exp)(A_FpLong);
    A_FpLong (*fabs)(A_FpLong);
    A_FpLong (*floor)(A_FpLong);
    A_FpLong (*fmod)(A_FpLong x, A_FpLong y);
    A_FpLong (*hypot)(A_FpLong x, A_FpLong y);
    A_FpLong (*log)(A_FpLong);
    A_FpLong (*log10)(A_FpLong);
    A_FpLong (*pow)(A_FpLong x, A_FpLong y);
    A_FpLong (*sin)(A_FpLong);
    A_FpLong (*sqrt)(A_FpLong);
    A_FpLong (*tan)(A_FpLong);
    int (*sprintf)(A_char*, const A_char*, ...);
    A_char* (*strcpy)(A_char*, const A_char*);
    A_FpLong (*asin)(A_FpLong);
    A_FpLong (*acos)(A_FpLong);
    A_long ansi_procs[1];
} PF_ANSICallbacks;

typedef struct {
    PF_Err (*RGBtoHLS)(PF_ProgPtr effect_ref, PF_Pixel* rgb, PF_HLS_Pixel hls);
    PF_Err (*HLStoRGB)(PF_ProgPtr effect_ref, PF_HLS_Pixel hls, PF_Pixel* rgb);
    PF_Err (*RGBtoYIQ)(PF_ProgPtr effect_ref, PF_Pixel* rgb, PF_YIQ_Pixel yiq);
    PF_Err (*YIQtoRGB)(PF_ProgPtr effect_ref, PF_YIQ_Pixel yiq, PF_Pixel* rgb);
    PF_Err (*Luminance)(PF_ProgPtr effect_ref, PF_Pixel* rgb, A_long* lum100);
    PF_Err (*Hue)(PF_ProgPtr effect_ref, PF_Pixel* rgb, A_long* hue);
    PF_Err (*Lightness)(PF_ProgPtr effect_ref, PF_Pixel* rgb, A_long* lightness);
    PF_Err (*Saturation)(PF_ProgPtr effect_ref, PF_Pixel* rgb, A_long* saturation);
} PF_ColorCallbacks;

// What the host tells the effect at every command. Which fields are valid depends on the command.
typedef struct {
    PF_InteractCallbacks inter;
    struct _PF_UtilCallbacks* utils;
    PF_ProgPtr effect_ref;
    PF_Quality quality;
    PF_SpecVersion version;
    A_long serial_num;
    A_long appl_id;
    A_long num_params;
    A_long reserved;
    A_long what_cpu;
    A_long what_fpu;
    A_long current_time;
    A_long time_step;
    A_long total_time;
    A_long local_time_step;
    A_u_long time_scale;
    PF_Field field;
    PF_Fixed shutter_angle;
    A_long width;
    A_long height;
    PF_Rect extent_hint;
    A_long output_origin_x;
    A_long output_origin_y;
    PF_RationalScale downsample_x;
    PF_RationalScale downsample_y;
    PF_RationalScale pixel_aspect_ratio;
    PF_InFlags in_flags;
    PF_Handle global_data;
    PF_Handle sequence_data;
    PF_Handle frame_data;
    A_long start_sampL;
    A_long dur_sampL;
    A_long total_sampL;
    PF_SoundWorld src_snd;
    struct SPBasicSuite* pica_basicP;
    A_long pre_effect_source_origin_x;
    A_long pre_effect_source_origin_y;
    PF_Fixed shutter_phase;
} PF_InData;

// What the effect tells the host back; the host reads the fields that matter for the command it sent.
typedef struct {
    A_u_long my_version;
    A_char name[PF_MAX_EFFECT_NAME_LEN + 1];
    PF_Handle global_data;
    A_long num_params;
    PF_Handle sequence_data;
    A_long flat_sdata_size;
    PF_Handle frame_data;
    A_long width;
    A_long height;
    PF_Point origin;
    PF_OutFlags out_flags;
    A_char return_msg[PF_MAX_EFFECT_MSG_LEN + 1];
    A_long start_sampL;
    A_long dur_sampL;
    PF_SoundWorld dest_snd;
    PF_OutFlags2 out_flags2;
} PF_OutData;

// The effect's one entry point: params is the host's array of parameters, params[0] being the input layer.
typedef PF_Err (*PF_FilterProc)(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamList params,
                                PF_LayerDef* output, void* extra);

typedef A_long PF_TransferMode;
typedef PF_TransferMode PF_XferMode;
typedef A_u_long PF_KernelFlags;
typedef A_long PF_CallbackID;
typedef struct PF_YouMustCastThisToActualFunctionType* PF_CallbackFunc;

inline constexpr A_long PF_PlatData_MAIN_WND = 0;
inline constexpr A_long PF_PlatData_EXE_FILE_PATH_DEPRECATED = 1;
inline constexpr A_long PF_PlatData_RES_FILE_PATH_DEPRECATED = 2;
inline constexpr A_long PF_PlatData_RES_REFNUM = 3;
inline constexpr A_long PF_PlatData_RES_DLLINSTANCE = 4;
inline constexpr A_long PF_PlatData_SP_PLUG_REF = 5;
inline constexpr A_long PF_PlatData_BUNDLE_REF = 6;
inline constexpr A_long PF_PlatData_EXE_FILE_PATH_W = 7;
inline constexpr A_long PF_PlatData_RES_FILE_PATH_W = 8;
typedef A_long PF_PlatDataID;

typedef PF_Err (*PF_IteratePixel8Func)(void* refconP, A_long xL, A_long yL, PF_Pixel* inP, PF_Pixel* outP);
typedef PF_Err (*PF_IteratePixel16Func)(void* refconP, A_long xL, A_long yL, PF_Pixel16* inP,
                                        PF_Pixel16* outP);
typedef PF_Err (*PF_IteratePixelFloatFunc)(void* refconP, A_long xL, A_long yL, PF_PixelFloat* inP,
                                           PF_PixelFloat* outP);

// The stand-in for the sampling and transform callbacks this project never calls: a function pointer
// like theirs, so the members after them keep their places.
typedef PF_Err (*TwUncalledHostCallback)(void);

typedef struct _PF_UtilCallbacks {
    TwUncalledHostCallback begin_sampling;
    TwUncalledHostCallback subpixel_sample;
    TwUncalledHostCallback area_sample;
    void* get_batch_func_is_deprecated;
    TwUncalledHostCallback end_sampling;
    PF_Err (*composite_rect)(PF_ProgPtr effect_ref, PF_Rect* src_rect, A_long src_opacity,
                             PF_EffectWorld* source_wld, A_long dest_x, A_long dest_y, PF_Field field_rdr,
                             PF_XferMode xfer_mode, PF_EffectWorld* dest_wld);
    PF_Err (*blend)(PF_ProgPtr effect_ref, const PF_EffectWorld* src1, const PF_EffectWorld* src2,
                    PF_Fixed ratio, PF_EffectWorld* dst);
    PF_Err (*convolve)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_Rect* area, PF_KernelFlags flags,
                       A_long kernel_size, void* a_kernel, void* r_kernel, void* g_kernel, void* b_kernel,
                       PF_EffectWorld* dst);
    PF_Err (*copy)(PF_ProgPtr effect_ref, PF_EffectWorld* src, PF_EffectWorld* dst, PF_Rect* src_r,
                   PF_Rect* dst_r);
    PF_Err (*fill)(PF_ProgPtr effect_ref, const PF_Pixel* color, const PF_Rect* dst_rect,
                   PF_EffectWorld* world);
    PF_Err (*gaussian_kernel)(PF_ProgPtr effect_ref, A_FpLong kRadius, PF_KernelFlags flags,
                              A_FpLong multiplier, A_long* diameter, void* kernel);
    PF_Err (*iterate)(PF_InData* in_data, A_long progress_base, A_long progress_final, PF_EffectWorld* src,
                      const PF_Rect* area, void* refcon, PF_IteratePixel8Func pix_fn, PF_EffectWorld* dst);
    PF_Err (*premultiply)(PF_ProgPtr effect_ref, A_long forward, PF_EffectWorld* dst);
    PF_Err (*premultiply_color)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_Pixel* color,
                                A_long forward, PF_EffectWorld* dst);
    PF_Err (*new_world)(PF_ProgPtr effect_ref, A_long width, A_long height, PF_NewWorldFlags flags,
                        PF_EffectWorld* world);
    PF_Err (*dispose_world)(PF_ProgPtr effect_ref, PF_EffectWorld* world);
    PF_Err (*iterate_origin)(PF_InData* in_data, A_long progress_base, A_long progress_final,
                             PF_EffectWorld* src, const PF_Rect* area, const PF_Point* origin, void* refcon,
                             PF_IteratePixel8Func pix_fn, PF_EffectWorld* dst);
    PF_Err (*iterate_lut)(PF_InData* in_data, A_long progress_base, A_long progress_final,
                          PF_EffectWorld* src, const PF_Rect* area, A_u_char* a_lut0, A_u_char* r_lut0,
                          A_u_char* g_lut0, A_u_char* b_lut0, PF_EffectWorld* dst);
    TwUncalledHostCallback transfer_rect;
    TwUncalledHostCallback transform_world;
    PF_Handle (*host_new_handle)(A_u_longlong size);
    void* (*host_lock_handle)(PF_Handle pf_handle);
    void (*host_unlock_handle)(PF_Handle pf_handle);
    void (*host_dispose_handle)(PF_Handle pf_handle);
    PF_Err (*get_callback_addr)(PF_ProgPtr effect_ref, PF_Quality quality, PF_ModeFlags mode_flags,
                                PF_CallbackID which_callback, PF_CallbackFunc* fn_ptr);
    PF_Err (*app)(PF_ProgPtr, A_long, ...);
    PF_ANSICallbacks ansi;
    PF_ColorCallbacks colorCB;
    PF_Err (*get_platform_data)(PF_ProgPtr effect_ref, PF_PlatDataID which, void* data);
    A_u_longlong (*host_get_handle_size)(PF_Handle pf_handle);
    PF_Err (*iterate_origin_non_clip_src)(PF_InData* in_data, A_long progress_base, A_long progress_final,
                                          PF_EffectWorld* src, const PF_Rect* area, const PF_Point* origin,
                                          void* refcon, PF_IteratePixel8Func pix_fn, PF_EffectWorld* dst);
    PF_Err (*iterate_generic)(A_long iterationsL, void* refconPV,
                              PF_Err (*fn_func)(void* refconPV, A_long thread_indexL, A_long i,
                                                A_long iterationsL));
    PF_Err (*host_resize_handle)(A_u_longlong new_sizeL, PF_Handle* handlePH);
    TwUncalledHostCallback subpixel_sample16;
    TwUncalledHostCallback area_sample16;
    PF_Err (*fill16)(PF_ProgPtr effect_ref, const PF_Pixel16* color, const PF_Rect* dst_rect,
                     PF_EffectWorld* world);
    PF_Err (*premultiply_color16)(PF_ProgPtr effect_ref, PF_EffectWorld* src, const PF_Pixel16* color,
                                  A_long forward, PF_EffectWorld* dst);
    PF_Err (*iterate16)(PF_InData* in_data, A_long progress_base, A_long progress_final, PF_EffectWorld* src,
                        const PF_Rect* area, void* refcon, PF_IteratePixel16Func pix_fn, PF_EffectWorld* dst);
    PF_Err (*iterate_origin16)(PF_InData* in_data, A_long progress_base, A_long progress_final,
                               PF_EffectWorld* src, const PF_Rect* area, const PF_Point* origin, void* refcon,
                               PF_IteratePixel16Func pix_fn, PF_EffectWorld* dst);
    PF_Err (*iterate_origin_non_clip_src16)(PF_InData* in_data, A_long progress_base, A_long progress_final,
                                            PF_EffectWorld* src, const PF_Rect* area, const PF_Point* origin,
                                            void* refcon, PF_IteratePixel16Func pix_fn, PF_EffectWorld* dst);
    PF_Err (*get_pixel_data8)(PF_EffectWorld* worldP, PF_PixelPtr pixelsP0, PF_Pixel8** pixPP);
    PF_Err (*get_pixel_data16)(PF_EffectWorld* worldP, PF_PixelPtr pixelsP0, PF_Pixel16** pixPP);
    A_long reserved[1];
} PF_UtilCallbacks;
