// Basic types of the host's effect interface: numbers, pixels, rectangles, handles and the world.
// Plain records with the host's own names and its binary layout; LayoutChecks.cpp holds them to it.
#pragma once

#include <cstdint>

using A_long = int32_t;
using A_u_long = uint32_t;
using A_short = int16_t;
using A_u_short = uint16_t;
using A_char = char;
using A_u_char = uint8_t;
using A_Boolean = uint8_t;
using A_FpShort = float;
using A_FpLong = double;

using PF_Boolean = A_char;
using PF_FpShort = A_FpShort;
using PF_FpLong = A_FpLong;
using PF_Fixed = A_long; // 16 fractional bits
using PF_UFixed = A_u_long;

using PF_Err = A_long;
using PF_Cmd = A_long;
using PF_Quality = A_long;
using PF_Field = A_long;
using PF_ModeFlags = A_long;
using PF_ParamIndex = A_long;
using PF_ParamValue = A_long;
using PF_ParamType = A_long;
using PF_ParamFlags = A_long;
using PF_ParamUIFlags = A_long;
using PF_OutFlags = A_long;
using PF_OutFlags2 = A_long;
using PF_WorldFlags = A_long;
using PF_NewWorldFlags = A_long;
using PF_PixelFormat = A_long;
using PF_PlatDataID = A_long;
using PF_ChannelMask = A_long;
using PF_XferMode = A_long;
using PF_Precision = A_short;
using PF_ValueDisplayFlags = A_short;
using PF_FSliderFlags = A_u_long;
using PF_KernelFlags = A_u_long;
using PF_RenderOutputFlags = int16_t;

/// Handle sizes follow the pointer size: 32 bits on 32-bit hosts, 64 bits on 64-bit hosts.
#if UINTPTR_MAX > 0xffffffffU
using A_HandleSize = uint64_t;
#else
using A_HandleSize = uint32_t;
#endif

/// Owned by the host; the first level may move while the handle is not locked.
using PF_Handle = void**;

/// The effect reference: means something to the host only.
struct PF_ProgRecord;
using PF_ProgPtr = PF_ProgRecord*;

struct PF_SpecVersion {
    A_short major;
    A_short minor;
};

struct PF_RationalScale {
    A_long num;
    A_u_long den;
};

struct PF_ShortRect {
    A_short top;
    A_short left;
    A_short bottom;
    A_short right;
};

/// Other widths than PF_ShortRect, and another order of the members too.
struct PF_LRect {
    A_long left;
    A_long top;
    A_long right;
    A_long bottom;
};

// KOVALUNE_HOST_LONG_RECTS (defined or not) picks the era of the interface: not defined, the rectangles, points
// and suites of the 32-bit hosts; defined, those of the 64-bit hosts. Every 64-bit Windows host is of the
// second kind; elsewhere the build says. Code that builds a rectangle names its members.
#if defined(_WIN64) && !defined(KOVALUNE_HOST_LONG_RECTS)
#define KOVALUNE_HOST_LONG_RECTS
#endif
#ifdef KOVALUNE_HOST_LONG_RECTS
using PF_Rect = PF_LRect;
struct PF_Point {
    A_long h;
    A_long v;
};
#else
using PF_Rect = PF_ShortRect;
struct PF_Point {
    A_short v;
    A_short h;
};
#endif
using PF_UnionableRect = PF_Rect;

/// White is 255.
struct PF_Pixel {
    A_u_char alpha;
    A_u_char red;
    A_u_char green;
    A_u_char blue;
};
using PF_Pixel8 = PF_Pixel;
using PF_UnionablePixel = PF_Pixel;
using PF_PixelPtr = PF_Pixel*;

/// White is 32768, not 65535.
struct PF_Pixel16 {
    A_u_short alpha;
    A_u_short red;
    A_u_short green;
    A_u_short blue;
};

/// White is 1.0; values beyond 0 to 1 occur.
struct PF_PixelFloat {
    PF_FpShort alpha;
    PF_FpShort red;
    PF_FpShort green;
    PF_FpShort blue;
};
using PF_Pixel32 = PF_PixelFloat;

using PF_HLS_Pixel = PF_Fixed[3]; // hue in degrees, lightness, saturation
using PF_YIQ_Pixel = PF_Fixed[3];
using PF_RGB_Pixel = PF_Fixed[3];

/// A picture in the host's memory. `data` is the first pixel whatever the pixel format; rows stand `rowbytes`
/// bytes apart, a multiple of 4 that need not be one of the pixel's size.
struct PF_EffectWorld {
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
    A_long dephault; ///< of a layer parameter: -1 the effect's own layer, 0 none
};
using PF_LayerDef = PF_EffectWorld;
