// The numbers of the host's effect interface: commands, errors, flags, limits, version packing.
// Values are the host's; each group's underlying type is A_long, so that its members mix with the A_long
// fields.
#pragma once

#include "hostapi/Types.h"

enum : A_long {
    PF_Cmd_ABOUT = 0,
    PF_Cmd_GLOBAL_SETUP = 1,
    PF_Cmd_GLOBAL_SETDOWN = 3,
    PF_Cmd_PARAMS_SETUP = 4,
    PF_Cmd_SEQUENCE_SETUP = 5,
    PF_Cmd_SEQUENCE_RESETUP = 6,
    PF_Cmd_SEQUENCE_FLATTEN = 7,
    PF_Cmd_SEQUENCE_SETDOWN = 8,
    PF_Cmd_DO_DIALOG = 9,
    PF_Cmd_FRAME_SETUP = 10,
    PF_Cmd_RENDER = 11,
    PF_Cmd_FRAME_SETDOWN = 12,
    PF_Cmd_USER_CHANGED_PARAM = 13,
    PF_Cmd_UPDATE_PARAMS_UI = 14,
    PF_Cmd_EVENT = 15,
    PF_Cmd_GET_EXTERNAL_DEPENDENCIES = 16,
    PF_Cmd_COMPLETELY_GENERAL = 17,
    PF_Cmd_QUERY_DYNAMIC_FLAGS = 18,
    PF_Cmd_AUDIO_RENDER = 19,
    PF_Cmd_AUDIO_SETUP = 20,
    PF_Cmd_AUDIO_SETDOWN = 21,
    PF_Cmd_ARBITRARY_CALLBACK = 22,
    PF_Cmd_SMART_PRE_RENDER = 23,
    PF_Cmd_SMART_RENDER = 24,
    PF_Cmd_GET_FLATTENED_SEQUENCE_DATA = 28, ///< from version 13.9 on
    /// Later hosts only.
    PF_Cmd_TRANSLATE_PARAMS_TO_PREFS = 29,
    PF_Cmd_SMART_RENDER_GPU = 31,
    PF_Cmd_GPU_DEVICE_SETUP = 32,
    PF_Cmd_GPU_DEVICE_SETDOWN = 33,
};

enum : A_long {
    PF_Err_NONE = 0,
    PF_Err_OUT_OF_MEMORY = 4,
    PF_Err_INTERNAL_STRUCT_DAMAGED = 512,
    PF_Err_INVALID_INDEX = 513,
    PF_Err_UNRECOGNIZED_PARAM_TYPE = 514,
    PF_Err_INVALID_CALLBACK = 515,
    PF_Err_BAD_CALLBACK_PARAM = 516,
    PF_Interrupt_CANCEL = 517,
    PF_Err_CANNOT_PARSE_KEYFRAME_TEXT = 518,
};

enum : A_long {
    PF_OutFlag_KEEP_RESOURCE_OPEN = 0x1,
    PF_OutFlag_WIDE_TIME_INPUT = 0x2,
    PF_OutFlag_NON_PARAM_VARY = 0x4,
    PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING = 0x10,
    PF_OutFlag_I_DO_DIALOG = 0x20,
    PF_OutFlag_USE_OUTPUT_EXTENT = 0x40,
    PF_OutFlag_SEND_DO_DIALOG = 0x80,
    PF_OutFlag_DISPLAY_ERROR_MESSAGE = 0x100,
    PF_OutFlag_I_EXPAND_BUFFER = 0x200,
    PF_OutFlag_PIX_INDEPENDENT = 0x400,
    PF_OutFlag_I_WRITE_INPUT_BUFFER = 0x800,
    PF_OutFlag_I_SHRINK_BUFFER = 0x1000,
    PF_OutFlag_WORKS_IN_PLACE = 0x2000,
    PF_OutFlag_CUSTOM_UI = 0x8000,
    PF_OutFlag_REFRESH_UI = 0x20000,
    PF_OutFlag_NOP_RENDER = 0x40000,
    PF_OutFlag_I_USE_SHUTTER_ANGLE = 0x80000,
    PF_OutFlag_I_USE_AUDIO = 0x100000,
    PF_OutFlag_I_AM_OBSOLETE = 0x200000,
    PF_OutFlag_FORCE_RERENDER = 0x400000,
    PF_OutFlag_PiPL_OVERRIDES_OUTDATA_OUTFLAGS = 0x800000,
    PF_OutFlag_I_HAVE_EXTERNAL_DEPENDENCIES = 0x1000000,
    PF_OutFlag_DEEP_COLOR_AWARE = 0x2000000,
    PF_OutFlag_SEND_UPDATE_PARAMS_UI = 0x4000000,
};

enum : A_long {
    PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS = 0x1,
    PF_OutFlag2_I_USE_3D_CAMERA = 0x2,
    PF_OutFlag2_I_USE_3D_LIGHTS = 0x4,
    PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG = 0x8,
    PF_OutFlag2_I_AM_THREADSAFE = 0x10, ///< later hosts ignore it
    PF_OutFlag2_CAN_COMBINE_WITH_DESTINATION = 0x20,
    PF_OutFlag2_DOESNT_NEED_EMPTY_PIXELS = 0x40,
    PF_OutFlag2_REVEALS_ZERO_ALPHA = 0x80,
    PF_OutFlag2_PRESERVES_FULLY_OPAQUE_PIXELS = 0x100,
    PF_OutFlag2_SUPPORTS_SMART_RENDER = 0x400,
    PF_OutFlag2_FLOAT_COLOR_AWARE = 0x1000,
    PF_OutFlag2_I_USE_COLORSPACE_ENUMERATION = 0x2000,
    PF_OutFlag2_I_AM_DEPRECATED = 0x4000,
    PF_OutFlag2_I_USE_TIMECODE = 0x40000,
    PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA = 0x800000,
    PF_OutFlag2_SUPPORTS_THREADED_RENDERING = 0x8000000,
};

enum : A_long {
    PF_Param_LAYER = 0,
    PF_Param_SLIDER = 1,
    PF_Param_FIX_SLIDER = 2,
    PF_Param_ANGLE = 3,
    PF_Param_CHECKBOX = 4,
    PF_Param_COLOR = 5,
    PF_Param_POINT = 6,
    PF_Param_POPUP = 7,
    PF_Param_CUSTOM = 8,
    PF_Param_NO_DATA = 9,
    PF_Param_FLOAT_SLIDER = 10,
    PF_Param_ARBITRARY_DATA = 11,
    PF_Param_PATH = 12,
    PF_Param_GROUP_START = 13,
    PF_Param_GROUP_END = 14,
    PF_Param_BUTTON = 15,   ///< from version 13.1 on
    PF_Param_POINT_3D = 18, ///< from version 13.1 on
};

enum : A_long {
    PF_ParamFlag_CANNOT_TIME_VARY = 0x2,
    PF_ParamFlag_CANNOT_INTERP = 0x4,
    PF_ParamFlag_COLLAPSE_TWIRLY = 0x20,
    PF_ParamFlag_START_COLLAPSED = PF_ParamFlag_COLLAPSE_TWIRLY,
    PF_ParamFlag_SUPERVISE = 0x40,
    PF_ParamFlag_USE_VALUE_FOR_OLD_PROJECTS = 0x80,
    PF_ParamFlag_LAYER_PARAM_IS_TRACKMATTE = 0x80, ///< the same bit, on layer parameters of later hosts
    PF_ParamFlag_EXCLUDE_FROM_HAVE_INPUTS_CHANGED = 0x100,
    PF_ParamFlag_SKIP_REVEAL_WHEN_UNHIDDEN = 0x200,
};

enum : A_long {
    PF_PUI_TOPIC = 0x1,
    PF_PUI_CONTROL = 0x2,
    PF_PUI_STD_CONTROL_ONLY = 0x4,
    PF_PUI_NO_ECW_UI = 0x8,
    PF_PUI_ECW_SEPARATOR = 0x10,
    PF_PUI_DISABLED = 0x20,
    PF_PUI_DONT_ERASE_TOPIC = 0x40,
    PF_PUI_DONT_ERASE_CONTROL = 0x80,
    PF_PUI_RADIO_BUTTON = 0x100,
    PF_PUI_INVISIBLE = 0x200,
};

enum : A_long {
    PF_ChangeFlag_NONE = 0,
    PF_ChangeFlag_CHANGED_VALUE = 1,
    PF_ChangeFlag_SET_TO_VARY = 4,
    PF_ChangeFlag_SET_TO_CONSTANT = 8,
};

enum : A_long {
    PF_ValueDisplayFlag_NONE = 0,
    PF_ValueDisplayFlag_PERCENT = 1,
    PF_ValueDisplayFlag_PIXEL = 2,
    PF_ValueDisplayFlag_REVERSE = 8,
};

enum : A_long {
    PF_FSliderFlag_NONE = 0,
    PF_FSliderFlag_WANT_PHASE = 1,
};

enum : A_long {
    PF_Precision_INTEGER = 0,
    PF_Precision_TENTHS = 1,
    PF_Precision_HUNDREDTHS = 2,
    PF_Precision_THOUSANDTHS = 3,
    PF_Precision_TEN_THOUSANDTHS = 4,
};

enum : A_long {
    PF_WorldFlag_DEEP = 1,
    PF_WorldFlag_WRITEABLE = 2,
};

enum : A_long {
    PF_NewWorldFlag_NONE = 0,
    PF_NewWorldFlag_CLEAR_PIXELS = 1,
    PF_NewWorldFlag_DEEP_PIXELS = 2,
};

enum : A_long {
    PF_Quality_DRAWING_AUDIO = -1,
    PF_Quality_LO = 0,
    PF_Quality_HI = 1,
};

enum : A_long {
    PF_Field_FRAME = 0,
    PF_Field_UPPER = 1,
    PF_Field_LOWER = 2,
};

enum : A_long {
    PF_ChannelMask_ALPHA = 1,
    PF_ChannelMask_RED = 2,
    PF_ChannelMask_GREEN = 4,
    PF_ChannelMask_BLUE = 8,
    PF_ChannelMask_ARGB = 15,
};

enum : A_long {
    PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS = 1,
    PF_RenderOutputFlag_GPU_RENDER_POSSIBLE = 2, ///< later hosts only
};

enum : A_long {
    PF_MF_Alpha_PREMUL = 0,
    PF_MF_Alpha_STRAIGHT = 1,
};

enum : A_long {
    PF_PlatData_MAIN_WND = 0,
    PF_PlatData_EXE_FILE_PATH = 1, ///< narrow text, a buffer of 260 bytes; later hosts may refuse it
    PF_PlatData_RES_FILE_PATH = 2,
    PF_PlatData_RES_REFNUM = 3,
    PF_PlatData_RES_DLLINSTANCE = 4,
    PF_PlatData_SP_PLUG_REF = 5,
    PF_PlatData_BUNDLE_REF = 6,
    PF_PlatData_EXE_FILE_PATH_W = 7, ///< wide text
    PF_PlatData_RES_FILE_PATH_W = 8,
};

enum : A_long {
    PF_Iterations_ONCE_PER_PROCESSOR = -1,
};

/// Four letters, the first in the lowest byte.
enum : A_long {
    PF_PixelFormat_ARGB32 = 0x62677261,  ///< "argb"
    PF_PixelFormat_ARGB64 = 0x36316561,  ///< "ae16"
    PF_PixelFormat_ARGB128 = 0x32336561, ///< "ae32"
    PF_PixelFormat_INVALID = 0x66646162, ///< "badf"
};

/// PF_InData.appl_id: four letters, the first in the highest byte.
enum : A_long {
    PF_AppID_FXTC = 0x46585443,
    PF_AppID_PrMr = 0x50724D72,
};

enum : A_long {
    PF_Stage_DEVELOP = 0,
    PF_Stage_ALPHA = 1,
    PF_Stage_BETA = 2,
    PF_Stage_RELEASE = 3,
};

/// The hue some hosts give for a colour without one: the bits 0x80000000, which as a PF_Fixed is its lowest
/// value.
inline constexpr PF_Fixed PF_HUE_UNDEFINED = -0x7fffffff - 1;

/// Text limits count characters without the end; the fields are one longer.
enum : A_long {
    PF_MAX_EFFECT_NAME_LEN = 31,
    PF_MAX_EFFECT_PARAM_NAME_LEN = 31,
    PF_MAX_EFFECT_MSG_LEN = 255,
    PF_MAX_WORLD_WIDTH = 30000,
    PF_MAX_WORLD_HEIGHT = 30000,
};

/// The packed version of PF_OutData.my_version: build 9 bits from bit 0, stage 2 from 9, bug-fix 4 from 11,
/// subversion 4 from 15, version 3 from 19 and its upper four from 26. Each part is cut to its field.
constexpr A_u_long PF_VERSION(A_u_long version, A_u_long subversion, A_u_long bugfix, A_u_long stage,
                              A_u_long build) {
    return (((version >> 3) & 0xfU) << 26) | ((version & 0x7U) << 19) | ((subversion & 0xfU) << 15) |
           ((bugfix & 0xfU) << 11) | ((stage & 0x3U) << 9) | (build & 0x1ffU);
}
