// Our own declaration of the After Effects effect interface's parameters: the parameter types and flags,
// the per-type definitions that make up PF_ParamDef, and the records the host passes with
// PF_Cmd_ARBITRARY_CALLBACK and PF_Cmd_USER_CHANGED_PARAM. Field order, types and values are those the
// SDK publishes; a definition that shifts by one field misreads every parameter after it.
#pragma once

#include "host/ae/sdk/AeCommands.h"

inline constexpr A_long PF_Param_RESERVED = -1;
inline constexpr A_long PF_Param_LAYER = 0;
inline constexpr A_long PF_Param_SLIDER = 1;
inline constexpr A_long PF_Param_FIX_SLIDER = 2;
inline constexpr A_long PF_Param_ANGLE = 3;
inline constexpr A_long PF_Param_CHECKBOX = 4;
inline constexpr A_long PF_Param_COLOR = 5;
inline constexpr A_long PF_Param_POINT = 6;
inline constexpr A_long PF_Param_POPUP = 7;
inline constexpr A_long PF_Param_CUSTOM = 8;
inline constexpr A_long PF_Param_NO_DATA = 9;
inline constexpr A_long PF_Param_FLOAT_SLIDER = 10;
inline constexpr A_long PF_Param_ARBITRARY_DATA = 11;
inline constexpr A_long PF_Param_PATH = 12;
inline constexpr A_long PF_Param_GROUP_START = 13;
inline constexpr A_long PF_Param_GROUP_END = 14;
inline constexpr A_long PF_Param_BUTTON = 15;
inline constexpr A_long PF_Param_RESERVED2 = 16;
inline constexpr A_long PF_Param_RESERVED3 = 17;
inline constexpr A_long PF_Param_POINT_3D = 18;
typedef A_long PF_ParamType;

inline constexpr A_long PF_ParamFlag_RESERVED1 = 1 << 0;
inline constexpr A_long PF_ParamFlag_CANNOT_TIME_VARY = 1 << 1;
inline constexpr A_long PF_ParamFlag_CANNOT_INTERP = 1 << 2;
inline constexpr A_long PF_ParamFlag_RESERVED2 = 1 << 3;
inline constexpr A_long PF_ParamFlag_RESERVED3 = 1 << 4;
inline constexpr A_long PF_ParamFlag_COLLAPSE_TWIRLY = 1 << 5;
inline constexpr A_long PF_ParamFlag_SUPERVISE = 1 << 6;
inline constexpr A_long PF_ParamFlag_START_COLLAPSED = PF_ParamFlag_COLLAPSE_TWIRLY;
// The same bit means one thing for layer parameters and another for all others.
inline constexpr A_long PF_ParamFlag_USE_VALUE_FOR_OLD_PROJECTS = 1 << 7;
inline constexpr A_long PF_ParamFlag_LAYER_PARAM_IS_TRACKMATTE = 1 << 7;
inline constexpr A_long PF_ParamFlag_EXCLUDE_FROM_HAVE_INPUTS_CHANGED = 1 << 8;
inline constexpr A_long PF_ParamFlag_SKIP_REVEAL_WHEN_UNHIDDEN = 1 << 9;
typedef A_long PF_ParamFlags;

inline constexpr A_long PF_PUI_NONE = 0;
inline constexpr A_long PF_PUI_TOPIC = 1 << 0;
inline constexpr A_long PF_PUI_CONTROL = 1 << 1;
inline constexpr A_long PF_PUI_STD_CONTROL_ONLY = 1 << 2;
inline constexpr A_long PF_PUI_NO_ECW_UI = 1 << 3;
inline constexpr A_long PF_PUI_ECW_SEPARATOR = 1 << 4;
inline constexpr A_long PF_PUI_DISABLED = 1 << 5;
inline constexpr A_long PF_PUI_DONT_ERASE_TOPIC = 1 << 6;
inline constexpr A_long PF_PUI_DONT_ERASE_CONTROL = 1 << 7;
inline constexpr A_long PF_PUI_RADIO_BUTTON = 1 << 8;
inline constexpr A_long PF_PUI_INVISIBLE = 1 << 9;
typedef A_long PF_ParamUIFlags;

inline constexpr A_long PF_ChangeFlag_NONE = 0;
inline constexpr A_long PF_ChangeFlag_CHANGED_VALUE = 1 << 0;
inline constexpr A_long PF_ChangeFlag_RESERVED = 1 << 1;
inline constexpr A_long PF_ChangeFlag_SET_TO_VARY = 1 << 2;
inline constexpr A_long PF_ChangeFlag_SET_TO_CONSTANT = 1 << 3;
typedef A_long PF_ChangeFlags;

inline constexpr A_short PF_ValueDisplayFlag_NONE = 0;
inline constexpr A_short PF_ValueDisplayFlag_PERCENT = 1 << 0;
inline constexpr A_short PF_ValueDisplayFlag_PIXEL = 1 << 1;
inline constexpr A_short PF_ValueDisplayFlag_RESERVED1 = 1 << 2;
inline constexpr A_short PF_ValueDisplayFlag_REVERSE = 1 << 3;
typedef A_short PF_ValueDisplayFlags;

// Decimal places a slider shows. The SDK declares these with its parameter helpers (Util/Param_Utils.h).
inline constexpr A_short PF_Precision_INTEGER = 0;
inline constexpr A_short PF_Precision_TENTHS = 1;
inline constexpr A_short PF_Precision_HUNDREDTHS = 2;
inline constexpr A_short PF_Precision_THOUSANDTHS = 3;
inline constexpr A_short PF_Precision_TEN_THOUSANDTHS = 4;

inline constexpr A_u_long PF_FSliderFlag_NONE = 0;
inline constexpr A_u_long PF_FSliderFlag_WANT_PHASE = 1u << 0;
typedef A_u_long PF_FSliderFlags;

inline constexpr A_long PF_LayerDefault_MYSELF = -1;
inline constexpr A_long PF_LayerDefault_NONE = 0;

typedef struct {
    PF_ParamValue value;
    A_char value_str[PF_MAX_PARAM_VALUE_LEN + 1];
    A_char value_desc[PF_MAX_PARAM_DESCRIPTION_LEN + 1];
    PF_ParamValue valid_min, valid_max;
    PF_ParamValue slider_min, slider_max;
    PF_ParamValue dephault;
} PF_SliderDef;

typedef struct {
    PF_Fixed value;
    A_char value_str[PF_MAX_PARAM_VALUE_LEN + 1];
    A_char value_desc[PF_MAX_PARAM_DESCRIPTION_LEN + 1];
    PF_Fixed valid_min, valid_max;
    PF_Fixed slider_min, slider_max;
    PF_Fixed dephault;
    A_short precision;
    PF_ValueDisplayFlags display_flags;
} PF_FixedSliderDef;

typedef struct {
    alignas(8) PF_FpLong value;
    PF_FpLong phase;
    A_char value_desc[PF_MAX_PARAM_DESCRIPTION_LEN + 1];
    PF_FpShort valid_min, valid_max;
    PF_FpShort slider_min, slider_max;
    PF_FpShort dephault;
    A_short precision;
    PF_ValueDisplayFlags display_flags;
    PF_FSliderFlags fs_flags;
    PF_FpShort curve_tolerance;
    PF_Boolean useExponent;
    PF_FpShort exponent;
} PF_FloatSliderDef;

// Degrees in 16.16 fixed point, not limited to one turn.
typedef struct {
    PF_Fixed value;
    PF_Fixed dephault;
    PF_Fixed valid_min, valid_max;
} PF_AngleDef;

// At PARAMS_SETUP u.nameptr points to the label beside the box.
typedef struct {
    PF_ParamValue value;
    PF_Boolean dephault;
    A_char reserved;
    A_short reserved1;
    union {
        const A_char* nameptr;
    } u;
} PF_CheckBoxDef;

typedef struct {
    PF_UnionablePixel value;
    PF_UnionablePixel dephault;
} PF_ColorDef;

// The value is in layer pixels, 16.16 fixed point; the defaults are percentages of the layer size.
typedef struct {
    PF_Fixed x_value;
    PF_Fixed y_value;
    A_char reserved[3];
    PF_Boolean restrict_bounds;
    PF_Fixed x_dephault;
    PF_Fixed y_dephault;
} PF_PointDef;

typedef struct {
    alignas(8) PF_FpLong x_value;
    PF_FpLong y_value;
    PF_FpLong z_value;
    PF_FpLong x_dephault;
    PF_FpLong y_dephault;
    PF_FpLong z_dephault;
    char reserved[16];
} PF_Point3DDef;

// The value counts choices from 1; u.namesptr lists them separated by '|'.
typedef struct {
    PF_ParamValue value;
    A_short num_choices;
    A_short dephault;
    union {
        const A_char* namesptr;
    } u;
} PF_PopupDef;

typedef struct {
    PF_ParamValue value;
    union {
        const A_char* namesptr;
    } u;
} PF_ButtonDef;

inline constexpr A_u_long PF_PathID_NONE = 0;
typedef A_u_long PF_PathID;

typedef struct PF_PathDef {
    PF_PathID path_id;
    A_long reserved0;
    A_long dephault;
} PF_PathDef;

typedef PF_Handle PF_ArbitraryH;

// The default becomes the host's at ADD_PARAM time; the effect tells its arbitrary types apart by id.
typedef struct {
    A_short id;
    A_short pad;
    PF_ArbitraryH dephault;
    PF_ArbitraryH value;
    void* refconPV;
} PF_ArbitraryDef;

inline constexpr A_long PF_Arbitrary_NEW_FUNC = 0;
inline constexpr A_long PF_Arbitrary_DISPOSE_FUNC = 1;
inline constexpr A_long PF_Arbitrary_COPY_FUNC = 2;
inline constexpr A_long PF_Arbitrary_FLAT_SIZE_FUNC = 3;
inline constexpr A_long PF_Arbitrary_FLATTEN_FUNC = 4;
inline constexpr A_long PF_Arbitrary_UNFLATTEN_FUNC = 5;
inline constexpr A_long PF_Arbitrary_INTERP_FUNC = 6;
inline constexpr A_long PF_Arbitrary_COMPARE_FUNC = 7;
inline constexpr A_long PF_Arbitrary_PRINT_SIZE_FUNC = 8;
inline constexpr A_long PF_Arbitrary_PRINT_FUNC = 9;
inline constexpr A_long PF_Arbitrary_SCAN_FUNC = 10;
typedef A_long PF_FunctionSelector;

inline constexpr A_long PF_ArbCompare_EQUAL = 0;
inline constexpr A_long PF_ArbCompare_LESS = 1;
inline constexpr A_long PF_ArbCompare_MORE = 2;
inline constexpr A_long PF_ArbCompare_NOT_EQUAL = 3;
typedef A_long PF_ArbCompareResult;

inline constexpr A_long PF_ArbPrint_NONE = 0;
inline constexpr A_long PF_ArbPrint_ABBREVIATED = 1 << 0;
typedef A_long PF_ArbPrintFlags;

// The extra argument of PF_Cmd_ARBITRARY_CALLBACK: which_function selects the member of u that is valid.
typedef struct {
    PF_FunctionSelector which_function;
    A_short id;
    A_short padding;
    union {
        struct {
            void* refconPV;
            PF_ArbitraryH* arbPH;
        } new_func_params;
        struct {
            void* refconPV;
            PF_ArbitraryH arbH;
        } dispose_func_params;
        struct {
            void* refconPV;
            PF_ArbitraryH src_arbH;
            PF_ArbitraryH* dst_arbPH;
        } copy_func_params;
        struct {
            void* refconPV;
            PF_ArbitraryH arbH;
            A_u_long* flat_data_sizePLu;
        } flat_size_func_params;
        struct {
            void* refconPV;
            PF_ArbitraryH arbH;
            A_u_long buf_sizeLu;
            void* flat_dataPV;
        } flatten_func_params;
        struct {
            void* refconPV;
            A_u_long buf_sizeLu;
            const void* flat_dataPV;
            PF_ArbitraryH* arbPH;
        } unflatten_func_params;
        struct {
            void* refconPV;
            PF_ArbitraryH left_arbH;
            PF_ArbitraryH right_arbH;
            alignas(8) PF_FpLong tF;
            PF_ArbitraryH* interpPH;
        } interp_func_params;
        struct {
            void* refconPV;
            PF_ArbitraryH a_arbH;
            PF_ArbitraryH b_arbH;
            PF_ArbCompareResult* compareP;
        } compare_func_params;
        struct {
            void* refconPV;
            PF_ArbitraryH arbH;
            A_u_long* print_sizePLu;
        } print_size_func_params;
        struct {
            void* refconPV;
            PF_ArbPrintFlags print_flags;
            PF_ArbitraryH arbH;
            A_u_long print_sizeLu;
            A_char* print_bufferPC;
        } print_func_params;
        struct {
            void* refconPV;
            const A_char* bufPC;
            A_u_long bytes_to_scanLu;
            PF_ArbitraryH* arbPH;
        } scan_func_params;
    } u;
} PF_ArbParamsExtra;

// The extra argument of PF_Cmd_USER_CHANGED_PARAM.
typedef struct {
    PF_ParamIndex param_index;
} PF_UserChangedParamExtra;

typedef union {
    PF_LayerDef ld;
    PF_SliderDef sd;
    PF_FixedSliderDef fd;
    PF_AngleDef ad;
    PF_CheckBoxDef bd;
    PF_ColorDef cd;
    PF_PointDef td;
    PF_PopupDef pd;
    PF_FloatSliderDef fs_d;
    PF_ArbitraryDef arb_d;
    PF_PathDef path_d;
    PF_ButtonDef button_d;
    PF_Point3DDef point3d_d;
} PF_ParamDefUnion;

// One parameter as added at PARAMS_SETUP and as passed at every command. uu.id is the stable id given
// at ADD_PARAM; the host reads uu.change_flags back after USER_CHANGED_PARAM and UPDATE_PARAMS_UI.
typedef struct {
    union {
        A_long id;
        PF_ChangeFlags change_flags;
    } uu;
    PF_ParamUIFlags ui_flags;
    A_short ui_width;
    A_short ui_height;
    PF_ParamType param_type;
    A_char name[PF_MAX_EFFECT_PARAM_NAME_LEN + 1];
    PF_ParamFlags flags;
    A_long unused;
    PF_ParamDefUnion u;
} PF_ParamDef, *PF_ParamDefPtr, **PF_ParamDefH;

typedef PF_ParamDef** PF_ParamList;
