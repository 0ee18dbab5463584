// Our own declaration of the After Effects smart-render interface: the records passed as the extra
// argument of PF_Cmd_SMART_PRE_RENDER and PF_Cmd_SMART_RENDER, and the callbacks in them through which
// an effect asks for its input and output. Layouts are those of the newest SDK, with its GPU fields.
#pragma once

#include "host/ae/sdk/AeCallbacks.h"

inline constexpr A_long PF_GPU_Framework_NONE = 0;
inline constexpr A_long PF_GPU_Framework_OPENCL = 1;
inline constexpr A_long PF_GPU_Framework_METAL = 2;
inline constexpr A_long PF_GPU_Framework_CUDA = 3;
typedef A_long PF_GPU_Framework;

// The unused and reserved fields must stay zero.
typedef struct {
    PF_LRect rect;
    PF_Field field;
    PF_ChannelMask channel_mask;
    PF_Boolean preserve_rgb_of_zero_alpha;
    char unused[3];
    A_long reserved[4];
} PF_RenderRequest;

// bitdepth is in bits per channel: 8, 16 or 32.
typedef struct {
    PF_RenderRequest output_request;
    short bitdepth;
    const void* gpu_data;
    PF_GPU_Framework what_gpu;
    A_u_long device_index;
} PF_PreRenderInput;

typedef void (*PF_DeletePreRenderDataFunc)(void* pre_render_data);

inline constexpr short PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS = 0x1;
inline constexpr short PF_RenderOutputFlag_GPU_RENDER_POSSIBLE = 0x2;
inline constexpr short PF_RenderOutputFlag_RESERVED1 = 0x4;
typedef short PF_RenderOutputFlags;

// pre_render_data comes back at SMART_RENDER, and goes to delete_pre_render_data_func when the host is done.
typedef struct {
    PF_LRect result_rect;
    PF_LRect max_result_rect;
    PF_Boolean solid;
    PF_Boolean reserved;
    PF_RenderOutputFlags flags;
    void* pre_render_data;
    PF_DeletePreRenderDataFunc delete_pre_render_data_func;
} PF_PreRenderOutput;

typedef struct {
    PF_LRect result_rect;
    PF_LRect max_result_rect;
    PF_RationalScale par;
    PF_Boolean solid;
    PF_Boolean reservedB[3];
    A_long ref_width;
    A_long ref_height;
    A_long reserved[6];
} PF_CheckoutResult;

typedef struct {
    PF_Err (*checkout_layer)(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long checkout_idL,
                             const PF_RenderRequest* req, A_long what_time, A_long time_step,
                             A_u_long time_scale, PF_CheckoutResult* checkout_result);
    PF_Err (*GuidMixInPtr)(PF_ProgPtr effect_ref, A_u_long buf_sizeLu, const void* buf);
} PF_PreRenderCallbacks;

typedef struct {
    PF_PreRenderInput* input;
    PF_PreRenderOutput* output;
    PF_PreRenderCallbacks* cb;
} PF_PreRenderExtra;

typedef struct {
    PF_RenderRequest output_request;
    short bitdepth;
    void* pre_render_data;
    const void* gpu_data;
    PF_GPU_Framework what_gpu;
    A_u_long device_index;
} PF_SmartRenderInput;

// The worlds handed out stay valid for the current command or until checked in.
typedef struct {
    PF_Err (*checkout_layer_pixels)(PF_ProgPtr effect_ref, A_long checkout_idL, PF_EffectWorld** pixels);
    PF_Err (*checkin_layer_pixels)(PF_ProgPtr effect_ref, A_long checkout_idL);
    PF_Err (*checkout_output)(PF_ProgPtr effect_ref, PF_EffectWorld** output);
} PF_SmartRenderCallbacks;

typedef struct {
    PF_SmartRenderInput* input;
    PF_SmartRenderCallbacks* cb;
} PF_SmartRenderExtra;
