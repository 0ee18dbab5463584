// Our own declaration of the After Effects effect interface's command selectors, error codes, output
// flags and version constants, with the values the SDK publishes. They are typed constants rather than
// the SDK's enumerators so that each carries the SDK's typedef (A_long); code that uses them compiles
// the same against Adobe's headers.
#pragma once

#include "host/ae/sdk/AeBasicTypes.h"

inline constexpr A_long PF_Stage_DEVELOP = 0;
inline constexpr A_long PF_Stage_ALPHA = 1;
inline constexpr A_long PF_Stage_BETA = 2;
inline constexpr A_long PF_Stage_RELEASE = 3;
typedef A_long PF_Stage;

// The interface version an effect is written against; these numbers go into its PiPL.
inline constexpr int PF_AE234_PLUG_IN_VERSION = 13;
inline constexpr int PF_AE234_PLUG_IN_SUBVERS = 28;
inline constexpr int PF_AE_PLUG_IN_VERSION = PF_AE234_PLUG_IN_VERSION;
inline constexpr int PF_AE_PLUG_IN_SUBVERS = PF_AE234_PLUG_IN_SUBVERS;

inline constexpr int PF_MAX_EFFECT_NAME_LEN = 31;
inline constexpr int PF_MAX_EFFECT_CATEGORY_NAME_LEN = 31;
inline constexpr int PF_MAX_EFFECT_PARAM_NAME_LEN = 31;
inline constexpr int PF_MAX_PARAM_DESCRIPTION_LEN = 31;
inline constexpr int PF_MAX_PARAM_VALUE_LEN = 31;
inline constexpr int PF_MAX_EFFECT_MSG_LEN = 255;
inline constexpr int PF_MAX_WORLD_WIDTH = 30000;
inline constexpr int PF_MAX_WORLD_HEIGHT = 30000;
inline constexpr int PF_FIRST_ERR = 512;

// The order of the selectors is the interface: each is the number the host passes.
inline constexpr A_long PF_Cmd_ABOUT = 0;
inline constexpr A_long PF_Cmd_GLOBAL_SETUP = 1;
inline constexpr A_long PF_Cmd_UNUSED_0 = 2;
inline constexpr A_long PF_Cmd_GLOBAL_SETDOWN = 3;
inline constexpr A_long PF_Cmd_PARAMS_SETUP = 4;
inline constexpr A_long PF_Cmd_SEQUENCE_SETUP = 5;
inline constexpr A_long PF_Cmd_SEQUENCE_RESETUP = 6;
inline constexpr A_long PF_Cmd_SEQUENCE_FLATTEN = 7;
inline constexpr A_long PF_Cmd_SEQUENCE_SETDOWN = 8;
inline constexpr A_long PF_Cmd_DO_DIALOG = 9;
inline constexpr A_long PF_Cmd_FRAME_SETUP = 10;
inline constexpr A_long PF_Cmd_RENDER = 11;
inline constexpr A_long PF_Cmd_FRAME_SETDOWN = 12;
inline constexpr A_long PF_Cmd_USER_CHANGED_PARAM = 13;
inline constexpr A_long PF_Cmd_UPDATE_PARAMS_UI = 14;
inline constexpr A_long PF_Cmd_EVENT = 15;
inline constexpr A_long PF_Cmd_GET_EXTERNAL_DEPENDENCIES = 16;
inline constexpr A_long PF_Cmd_COMPLETELY_GENERAL = 17;
inline constexpr A_long PF_Cmd_QUERY_DYNAMIC_FLAGS = 18;
inline constexpr A_long PF_Cmd_AUDIO_RENDER = 19;
inline constexpr A_long PF_Cmd_AUDIO_SETUP = 20;
inline constexpr A_long PF_Cmd_AUDIO_SETDOWN = 21;
inline constexpr A_long PF_Cmd_ARBITRARY_CALLBACK = 22;
inline constexpr A_long PF_Cmd_SMART_PRE_RENDER = 23;
inline constexpr A_long PF_Cmd_SMART_RENDER = 24;
inline constexpr A_long PF_Cmd_RESERVED1 = 25;
inline constexpr A_long PF_Cmd_RESERVED2 = 26;
inline constexpr A_long PF_Cmd_RESERVED3 = 27;
inline constexpr A_long PF_Cmd_GET_FLATTENED_SEQUENCE_DATA = 28;
inline constexpr A_long PF_Cmd_TRANSLATE_PARAMS_TO_PREFS = 29;
inline constexpr A_long PF_Cmd_RESERVED4 = 30;
inline constexpr A_long PF_Cmd_SMART_RENDER_GPU = 31;
inline constexpr A_long PF_Cmd_GPU_DEVICE_SETUP = 32;
inline constexpr A_long PF_Cmd_GPU_DEVICE_SETDOWN = 33;
inline constexpr A_long PF_Cmd_NUM_CMDS = 34;
typedef A_long PF_Cmd;

inline constexpr A_long PF_Err_NONE = 0;
inline constexpr A_long PF_Err_OUT_OF_MEMORY = 4;
inline constexpr A_long PF_Err_INTERNAL_STRUCT_DAMAGED = PF_FIRST_ERR;
inline constexpr A_long PF_Err_INVALID_INDEX = PF_FIRST_ERR + 1;
inline constexpr A_long PF_Err_UNRECOGNIZED_PARAM_TYPE = PF_FIRST_ERR + 2;
inline constexpr A_long PF_Err_INVALID_CALLBACK = PF_FIRST_ERR + 3;
inline constexpr A_long PF_Err_BAD_CALLBACK_PARAM = PF_FIRST_ERR + 4;
inline constexpr A_long PF_Interrupt_CANCEL = PF_FIRST_ERR + 5;
inline constexpr A_long PF_Err_CANNOT_PARSE_KEYFRAME_TEXT = PF_FIRST_ERR + 6;
typedef A_long PF_Err;

inline constexpr A_long PF_OutFlag_NONE = 0;
inline constexpr A_long PF_OutFlag_KEEP_RESOURCE_OPEN = 1 << 0;
inline constexpr A_long PF_OutFlag_WIDE_TIME_INPUT = 1 << 1;
inline constexpr A_long PF_OutFlag_NON_PARAM_VARY = 1 << 2;
inline constexpr A_long PF_OutFlag_RESERVED6 = 1 << 3;
inline constexpr A_long PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING = 1 << 4;
inline constexpr A_long PF_OutFlag_I_DO_DIALOG = 1 << 5;
inline constexpr A_long PF_OutFlag_USE_OUTPUT_EXTENT = 1 << 6;
inline constexpr A_long PF_OutFlag_SEND_DO_DIALOG = 1 << 7;
inline constexpr A_long PF_OutFlag_DISPLAY_ERROR_MESSAGE = 1 << 8;
inline constexpr A_long PF_OutFlag_I_EXPAND_BUFFER = 1 << 9;
inline constexpr A_long PF_OutFlag_PIX_INDEPENDENT = 1 << 10;
inline constexpr A_long PF_OutFlag_I_WRITE_INPUT_BUFFER = 1 << 11;
inline constexpr A_long PF_OutFlag_I_SHRINK_BUFFER = 1 << 12;
inline constexpr A_long PF_OutFlag_WORKS_IN_PLACE = 1 << 13;
inline constexpr A_long PF_OutFlag_RESERVED8 = 1 << 14;
inline constexpr A_long PF_OutFlag_CUSTOM_UI = 1 << 15;
inline constexpr A_long PF_OutFlag_RESERVED7 = 1 << 16;
inline constexpr A_long PF_OutFlag_REFRESH_UI = 1 << 17;
inline constexpr A_long PF_OutFlag_NOP_RENDER = 1 << 18;
inline constexpr A_long PF_OutFlag_I_USE_SHUTTER_ANGLE = 1 << 19;
inline constexpr A_long PF_OutFlag_I_USE_AUDIO = 1 << 20;
inline constexpr A_long PF_OutFlag_I_AM_OBSOLETE = 1 << 21;
inline constexpr A_long PF_OutFlag_FORCE_RERENDER = 1 << 22;
inline constexpr A_long PF_OutFlag_PiPL_OVERRIDES_OUTDATA_OUTFLAGS = 1 << 23;
inline constexpr A_long PF_OutFlag_I_HAVE_EXTERNAL_DEPENDENCIES = 1 << 24;
inline constexpr A_long PF_OutFlag_DEEP_COLOR_AWARE = 1 << 25;
inline constexpr A_long PF_OutFlag_SEND_UPDATE_PARAMS_UI = 1 << 26;
inline constexpr A_long PF_OutFlag_AUDIO_FLOAT_ONLY = 1 << 27;
inline constexpr A_long PF_OutFlag_AUDIO_IIR = 1 << 28;
inline constexpr A_long PF_OutFlag_I_SYNTHESIZE_AUDIO = 1 << 29;
inline constexpr A_long PF_OutFlag_AUDIO_EFFECT_TOO = 1 << 30;
inline constexpr A_long PF_OutFlag_AUDIO_EFFECT_ONLY = static_cast<A_long>(1u << 31);
typedef A_long PF_OutFlags;

inline constexpr A_long PF_OutFlag2_NONE = 0;
inline constexpr A_long PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS = 1 << 0;
inline constexpr A_long PF_OutFlag2_I_USE_3D_CAMERA = 1 << 1;
inline constexpr A_long PF_OutFlag2_I_USE_3D_LIGHTS = 1 << 2;
inline constexpr A_long PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG = 1 << 3;
inline constexpr A_long PF_OutFlag2_I_AM_THREADSAFE = 1 << 4;
inline constexpr A_long PF_OutFlag2_CAN_COMBINE_WITH_DESTINATION = 1 << 5;
inline constexpr A_long PF_OutFlag2_DOESNT_NEED_EMPTY_PIXELS = 1 << 6;
inline constexpr A_long PF_OutFlag2_REVEALS_ZERO_ALPHA = 1 << 7;
inline constexpr A_long PF_OutFlag2_PRESERVES_FULLY_OPAQUE_PIXELS = 1 << 8;
inline constexpr A_long PF_OutFlag2_SUPPORTS_SMART_RENDER = 1 << 10;
inline constexpr A_long PF_OutFlag2_RESERVED9 = 1 << 11;
inline constexpr A_long PF_OutFlag2_FLOAT_COLOR_AWARE = 1 << 12;
inline constexpr A_long PF_OutFlag2_I_USE_COLORSPACE_ENUMERATION = 1 << 13;
inline constexpr A_long PF_OutFlag2_I_AM_DEPRECATED = 1 << 14;
inline constexpr A_long PF_OutFlag2_PPRO_DO_NOT_CLONE_SEQUENCE_DATA_FOR_RENDER = 1 << 15;
inline constexpr A_long PF_OutFlag2_RESERVED10 = 1 << 16;
inline constexpr A_long PF_OutFlag2_AUTOMATIC_WIDE_TIME_INPUT = 1 << 17;
inline constexpr A_long PF_OutFlag2_I_USE_TIMECODE = 1 << 18;
inline constexpr A_long PF_OutFlag2_DEPENDS_ON_UNREFERENCED_MASKS = 1 << 19;
inline constexpr A_long PF_OutFlag2_OUTPUT_IS_WATERMARKED = 1 << 20;
inline constexpr A_long PF_OutFlag2_I_MIX_GUID_DEPENDENCIES = 1 << 21;
inline constexpr A_long PF_OutFlag2_AE13_5_THREADSAFE = 1 << 22;
inline constexpr A_long PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA = 1 << 23;
inline constexpr A_long PF_OutFlag2_CUSTOM_UI_ASYNC_MANAGER = 1 << 24;
inline constexpr A_long PF_OutFlag2_SUPPORTS_GPU_RENDER_F32 = 1 << 25;
inline constexpr A_long PF_OutFlag2_RESERVED12 = 1 << 26;
inline constexpr A_long PF_OutFlag2_SUPPORTS_THREADED_RENDERING = 1 << 27;
inline constexpr A_long PF_OutFlag2_MUTABLE_RENDER_SEQUENCE_DATA_SLOWER = 1 << 28;
typedef A_long PF_OutFlags2;

inline constexpr A_long PF_InFlag_NONE = 0;
inline constexpr A_long PF_InFlag_PROJECT_IS_RENDER_ONLY = 1 << 0;
typedef A_long PF_InFlags;

// iterate_generic's iteration count asking for one call per processor.
inline constexpr A_long PF_Iterations_ONCE_PER_PROCESSOR = -1;
