// The frei0r plug-in interface (version 1.2) as the hosts call it: the entry points a plug-in exports
// with C linkage, the records it fills in, and the numbers of its plug-in types, colour models and
// parameter kinds. The names, layouts and values are those the interface publishes, so that ffmpeg, MLT
// and the editors over MLT read our records as their own; the declarations are written for this project.
#pragma once

#include <cstddef>
#include <cstdint>

// The entry points are the only symbols a plug-in shows its host.
#define TW_FREI0R_EXPORT __attribute__((visibility("default")))

inline constexpr int FREI0R_MAJOR_VERSION = 1;
inline constexpr int FREI0R_MINOR_VERSION = 2;

// What a plug-in does with frames: changes one, makes one from nothing, or mixes two or three into one.
inline constexpr int F0R_PLUGIN_TYPE_FILTER = 0;
inline constexpr int F0R_PLUGIN_TYPE_SOURCE = 1;
inline constexpr int F0R_PLUGIN_TYPE_MIXER2 = 2;
inline constexpr int F0R_PLUGIN_TYPE_MIXER3 = 3;

// BGRA8888: four bytes per pixel, blue, green, red, alpha in memory order.
inline constexpr int F0R_COLOR_MODEL_BGRA8888 = 0;
inline constexpr int F0R_COLOR_MODEL_RGBA8888 = 1;
inline constexpr int F0R_COLOR_MODEL_PACKED32 = 2;

inline constexpr int F0R_PARAM_BOOL = 0;
inline constexpr int F0R_PARAM_DOUBLE = 1;
inline constexpr int F0R_PARAM_COLOR = 2;
inline constexpr int F0R_PARAM_POSITION = 3;
inline constexpr int F0R_PARAM_STRING = 4;

extern "C" {

// A bool is a double: 0.5 and above is true.
typedef double f0r_param_bool;
typedef double f0r_param_double;
// Components from 0 to 1.
struct f0r_param_color_t {
    float r;
    float g;
    float b;
};
// Coordinates from 0 to 1.
struct f0r_param_position_t {
    double x;
    double y;
};
typedef char* f0r_param_string;

struct f0r_plugin_info_t {
    const char* name;
    const char* author;
    int plugin_type;
    int color_model;
    int frei0r_version;
    int major_version;
    int minor_version;
    int num_params;
    const char* explanation;
};

struct f0r_param_info_t {
    const char* name;
    int type;
    const char* explanation;
};

typedef void* f0r_instance_t;
// Points at a value of the parameter's kind: f0r_param_bool, f0r_param_double, f0r_param_color_t,
// f0r_param_position_t or f0r_param_string.
typedef void* f0r_param_t;

TW_FREI0R_EXPORT int f0r_init();
TW_FREI0R_EXPORT void f0r_deinit();
TW_FREI0R_EXPORT void f0r_get_plugin_info(f0r_plugin_info_t* info);
TW_FREI0R_EXPORT void f0r_get_param_info(f0r_param_info_t* info, int param_index);
TW_FREI0R_EXPORT f0r_instance_t f0r_construct(unsigned int width, unsigned int height);
TW_FREI0R_EXPORT void f0r_destruct(f0r_instance_t instance);
TW_FREI0R_EXPORT void f0r_set_param_value(f0r_instance_t instance, f0r_param_t param, int param_index);
TW_FREI0R_EXPORT void f0r_get_param_value(f0r_instance_t instance, f0r_param_t param, int param_index);
// Frames are width * height pixels, rows of width * 4 bytes without padding; hosts differ on the unit of
// `time`. f0r_update serves filters and sources (no input frame), f0r_update2 mixers.
TW_FREI0R_EXPORT void f0r_update(f0r_instance_t instance, double time, const uint32_t* inframe,
                                 uint32_t* outframe);
TW_FREI0R_EXPORT void f0r_update2(f0r_instance_t instance, double time, const uint32_t* inframe1,
                                  const uint32_t* inframe2, const uint32_t* inframe3, uint32_t* outframe);

}  // extern "C"

// The layouts hosts compiled against, on 32 and 64-bit x86 alike.
static_assert(sizeof(f0r_param_color_t) == 12 && sizeof(f0r_param_position_t) == 16);
static_assert(offsetof(f0r_plugin_info_t, plugin_type) == 2 * sizeof(void*));
static_assert(offsetof(f0r_plugin_info_t, explanation) == 2 * sizeof(void*) + 6 * sizeof(int));
static_assert(offsetof(f0r_param_info_t, type) == sizeof(void*));
static_assert(offsetof(f0r_param_info_t, explanation) == 2 * sizeof(void*));
