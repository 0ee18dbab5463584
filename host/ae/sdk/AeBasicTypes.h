// Our own declaration of the After Effects effect interface's basic types: the A_ and PF_ scalars, points,
// rectangles, pixels, the image buffer an effect reads and writes (PF_LayerDef, alias PF_EffectWorld),
// its flags and pixel formats, and the sound buffer the parameter blocks carry. Names, field order, types
// and values are those the SDK publishes, so that a host lays these out exactly as the SDK's own headers
// would, on x86-64 and 32-bit x86. Where the SDK's types differ between platforms we take the Windows
// ones; doubles inside structures are aligned to 8 as both Windows targets align them.
#pragma once

#include <cstdint>

#include "host/ae/sdk/AeSdkExtras.h"

typedef std::int32_t A_long;
typedef std::uint32_t A_u_long;
typedef std::int16_t A_short;
typedef std::uint16_t A_u_short;
typedef char A_char;
typedef std::uint8_t A_u_char;
typedef std::uint8_t A_Boolean;
typedef A_long A_Err;
typedef double A_FpLong;
typedef float A_FpShort;
typedef std::uint64_t A_u_longlong;
typedef std::intptr_t A_intptr_t;
typedef A_u_longlong A_HandleSize;
typedef A_u_short A_UTF16Char;

typedef struct {
    A_long value;
    A_u_long scale;
} A_Time;

typedef struct {
    alignas(8) A_FpLong x;
    A_FpLong y;
} A_FloatPoint;

typedef A_long PF_Fixed;
typedef A_u_long PF_UFixed;
typedef A_char PF_Boolean;
typedef void** PF_Handle;
typedef A_FpLong PF_FpLong;
typedef A_FpShort PF_FpShort;

// What the host passes back to every callback; the effect never looks inside.
struct PF_ProgressInfo;
typedef struct PF_ProgressInfo* PF_ProgPtr;

typedef A_long PF_ParamIndex;
typedef A_long PF_ParamValue;

typedef struct {
    A_short major;
    A_short minor;
} PF_SpecVersion;

inline constexpr A_long PF_Quality_DRAWING_AUDIO = -1;
inline constexpr A_long PF_Quality_LO = 0;
inline constexpr A_long PF_Quality_HI = 1;
typedef A_long PF_Quality;

inline constexpr A_long PF_MF_Alpha_PREMUL = 0;
inline constexpr A_long PF_MF_Alpha_STRAIGHT = 1 << 0;
typedef A_long PF_ModeFlags;

inline constexpr A_long PF_Field_FRAME = 0;
inline constexpr A_long PF_Field_UPPER = 1;
inline constexpr A_long PF_Field_LOWER = 2;
typedef A_long PF_Field;

inline constexpr A_long PF_ChannelMask_ALPHA = 0x1;
inline constexpr A_long PF_ChannelMask_RED = 0x2;
inline constexpr A_long PF_ChannelMask_GREEN = 0x4;
inline constexpr A_long PF_ChannelMask_BLUE = 0x8;
inline constexpr A_long PF_ChannelMask_ARGB = 0xF;
typedef A_long PF_ChannelMask;

// With LPOINT_RENAME_COMPONENTS the SDK calls the fields x and y; the layout is the same.
typedef struct {
#ifdef LPOINT_RENAME_COMPONENTS
    A_long x;
    A_long y;
#else
    A_long h;
    A_long v;
#endif
} PF_Point;

typedef struct {
    A_long left, top, right, bottom;
} PF_LRect;

typedef PF_LRect PF_Rect;
typedef PF_Rect PF_UnionableRect;

typedef struct {
    A_long num;
    A_u_long den;
} PF_RationalScale;

typedef struct {
    PF_Fixed x, y;
} PF_FixedPoint;

typedef struct {
    A_u_char alpha, red, green, blue;
} PF_Pixel;

typedef PF_Pixel PF_Pixel8;
typedef PF_Pixel PF_UnionablePixel;

typedef struct {
    A_u_short alpha, red, green, blue;
} PF_Pixel16;

typedef struct {
    PF_FpShort alpha, red, green, blue;
} PF_PixelFloat, PF_Pixel32;

typedef struct _PF_PixelOpaque* PF_PixelOpaquePtr;

// An effect that handles deep worlds defines PF_DEEP_COLOR_AWARE so that data is not taken for 8-bit pixels.
#ifdef PF_DEEP_COLOR_AWARE
typedef PF_PixelOpaquePtr PF_PixelPtr;
#else
typedef PF_Pixel* PF_PixelPtr;
#endif

typedef PF_Fixed PF_HLS_Pixel[3];
typedef PF_Fixed PF_YIQ_Pixel[3];

inline constexpr A_long PF_WorldFlag_DEEP = 1 << 0;
inline constexpr A_long PF_WorldFlag_WRITEABLE = 1 << 1;
inline constexpr A_long PF_WorldFlag_RESERVED0 = 1 << 24;
inline constexpr A_long PF_WorldFlag_RESERVED1 = 1 << 25;
inline constexpr A_long PF_WorldFlag_RESERVED2 = 1 << 26;
inline constexpr A_long PF_WorldFlag_RESERVED3 = 1 << 27;
inline constexpr A_long PF_WorldFlag_RESERVED4 = 1 << 28;
inline constexpr A_long PF_WorldFlag_RESERVED5 = 1 << 29;
inline constexpr A_long PF_WorldFlag_RESERVED6 = 1 << 30;
inline constexpr A_long PF_WorldFlag_RESERVED = static_cast<A_long>(1u << 31);
typedef A_long PF_WorldFlags;

inline constexpr A_long PF_NewWorldFlag_NONE = 0;
inline constexpr A_long PF_NewWorldFlag_CLEAR_PIXELS = 1 << 0;
inline constexpr A_long PF_NewWorldFlag_DEEP_PIXELS = 1 << 1;
inline constexpr A_long PF_NewWorldFlag_RESERVED0 = 1 << 2;
inline constexpr A_long PF_NewWorldFlag_RESERVED1 = 1 << 3;
typedef A_long PF_NewWorldFlags;

inline constexpr int PF_MAX_CHAN8 = 255;
inline constexpr int PF_HALF_CHAN8 = 128;
inline constexpr int PF_MAX_CHAN16 = 32768;
inline constexpr int PF_HALF_CHAN16 = 16384;

// The pixel formats are four-character codes in memory order (the SDK's MAKE_PIXEL_FORMAT_FOURCC), not
// multi-character literals: 'a','r','g','b' here is 0x62677261, where the literal 'argb' is 0x61726762.
inline constexpr A_long PF_PixelFormat_ARGB32 = static_cast<A_long>(twPixelFormatFourCC('a', 'r', 'g', 'b'));
inline constexpr A_long PF_PixelFormat_ARGB64 = static_cast<A_long>(twPixelFormatFourCC('a', 'e', '1', '6'));
inline constexpr A_long PF_PixelFormat_ARGB128 = static_cast<A_long>(twPixelFormatFourCC('a', 'e', '3', '2'));
inline constexpr A_long PF_PixelFormat_GPU_BGRA128 =
    static_cast<A_long>(twPixelFormatFourCC('@', 'C', 'D', 'A'));
inline constexpr A_long PF_PixelFormat_RESERVED =
    static_cast<A_long>(twPixelFormatFourCC('@', 'C', 'D', 'a'));
inline constexpr A_long PF_PixelFormat_BGRA32 = static_cast<A_long>(twPixelFormatFourCC('b', 'g', 'r', 'a'));
inline constexpr A_long PF_PixelFormat_VUYA32 = static_cast<A_long>(twPixelFormatFourCC('v', 'u', 'y', 'a'));
inline constexpr A_long PF_PixelFormat_NTSCDV25 =
    static_cast<A_long>(twPixelFormatFourCC('d', 'v', 'n', '2'));
inline constexpr A_long PF_PixelFormat_PALDV25 = static_cast<A_long>(twPixelFormatFourCC('d', 'v', 'p', '2'));
inline constexpr A_long PF_PixelFormat_INVALID = static_cast<A_long>(twPixelFormatFourCC('b', 'a', 'd', 'f'));
inline constexpr A_long PF_PixelFormat_FORCE_LONG_INT = static_cast<A_long>(0xFFFFFFFFu);
typedef A_long PF_PixelFormat;

// An image buffer: a parameter's layer, the input, the output or a scratch world. The reserved and
// pointer-sized fields stay where the host expects them even though nothing here reads them.
typedef struct PF_LayerDef {
    void* reserved0;
    void* reserved1;
    PF_WorldFlags world_flags;
    PF_PixelPtr data;
    A_long rowbytes;
    A_long width;
    A_long height;
    PF_UnionableRect extent_hint;
    void* platform_ref;
    A_long reserved_long1;
    void* reserved_long4;
    PF_RationalScale pix_aspect_ratio;
    void* reserved_long2;
    A_long origin_x;
    A_long origin_y;
    A_long reserved_long3;
    A_long dephault;
} PF_LayerDef;

typedef PF_LayerDef PF_EffectWorld;

inline constexpr A_short PF_UNSIGNED_PCM = 0;
inline constexpr A_short PF_SIGNED_PCM = 1;
inline constexpr A_short PF_SIGNED_FLOAT = 2;
typedef A_short PF_SoundFormat;
typedef A_short PF_SoundSampleSize;
typedef A_short PF_SoundChannels;

typedef struct {
    alignas(8) PF_FpLong rateF;
    PF_SoundChannels num_channels;
    PF_SoundFormat format;
    PF_SoundSampleSize sample_size;
} PF_SoundFormatInfo;

typedef struct {
    PF_SoundFormatInfo fi;
    A_long num_samples;
    void* dataP;
} PF_SoundWorld;

typedef struct _PF_LayerAudio* PF_LayerAudio;
typedef void* PF_SndSamplePtr;
