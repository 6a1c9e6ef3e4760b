#include "cli/text/EffectFlags.h"

#include "hostapi/Constants.h"

#include <span>

namespace kovalune::cli {

namespace {

struct FlagName {
    A_long flag;
    const char* name;
};

constexpr FlagName kOutFlagNames[] = {
    {PF_OutFlag_KEEP_RESOURCE_OPEN, "PF_OutFlag_KEEP_RESOURCE_OPEN"},
    {PF_OutFlag_WIDE_TIME_INPUT, "PF_OutFlag_WIDE_TIME_INPUT"},
    {PF_OutFlag_NON_PARAM_VARY, "PF_OutFlag_NON_PARAM_VARY"},
    {PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING, "PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING"},
    {PF_OutFlag_I_DO_DIALOG, "PF_OutFlag_I_DO_DIALOG"},
    {PF_OutFlag_USE_OUTPUT_EXTENT, "PF_OutFlag_USE_OUTPUT_EXTENT"},
    {PF_OutFlag_SEND_DO_DIALOG, "PF_OutFlag_SEND_DO_DIALOG"},
    {PF_OutFlag_DISPLAY_ERROR_MESSAGE, "PF_OutFlag_DISPLAY_ERROR_MESSAGE"},
    {PF_OutFlag_I_EXPAND_BUFFER, "PF_OutFlag_I_EXPAND_BUFFER"},
    {PF_OutFlag_PIX_INDEPENDENT, "PF_OutFlag_PIX_INDEPENDENT"},
    {PF_OutFlag_I_WRITE_INPUT_BUFFER, "PF_OutFlag_I_WRITE_INPUT_BUFFER"},
    {PF_OutFlag_I_SHRINK_BUFFER, "PF_OutFlag_I_SHRINK_BUFFER"},
    {PF_OutFlag_WORKS_IN_PLACE, "PF_OutFlag_WORKS_IN_PLACE"},
    {PF_OutFlag_CUSTOM_UI, "PF_OutFlag_CUSTOM_UI"},
    {PF_OutFlag_REFRESH_UI, "PF_OutFlag_REFRESH_UI"},
    {PF_OutFlag_NOP_RENDER, "PF_OutFlag_NOP_RENDER"},
    {PF_OutFlag_I_USE_SHUTTER_ANGLE, "PF_OutFlag_I_USE_SHUTTER_ANGLE"},
    {PF_OutFlag_I_USE_AUDIO, "PF_OutFlag_I_USE_AUDIO"},
    {PF_OutFlag_I_AM_OBSOLETE, "PF_OutFlag_I_AM_OBSOLETE"},
    {PF_OutFlag_FORCE_RERENDER, "PF_OutFlag_FORCE_RERENDER"},
    {PF_OutFlag_PiPL_OVERRIDES_OUTDATA_OUTFLAGS, "PF_OutFlag_PiPL_OVERRIDES_OUTDATA_OUTFLAGS"},
    {PF_OutFlag_I_HAVE_EXTERNAL_DEPENDENCIES, "PF_OutFlag_I_HAVE_EXTERNAL_DEPENDENCIES"},
    {PF_OutFlag_DEEP_COLOR_AWARE, "PF_OutFlag_DEEP_COLOR_AWARE"},
    {PF_OutFlag_SEND_UPDATE_PARAMS_UI, "PF_OutFlag_SEND_UPDATE_PARAMS_UI"},
};

constexpr FlagName kOutFlag2Names[] = {
    {PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS, "PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS"},
    {PF_OutFlag2_I_USE_3D_CAMERA, "PF_OutFlag2_I_USE_3D_CAMERA"},
    {PF_OutFlag2_I_USE_3D_LIGHTS, "PF_OutFlag2_I_USE_3D_LIGHTS"},
    {PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG, "PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG"},
    {PF_OutFlag2_I_AM_THREADSAFE, "PF_OutFlag2_I_AM_THREADSAFE"},
    {PF_OutFlag2_CAN_COMBINE_WITH_DESTINATION, "PF_OutFlag2_CAN_COMBINE_WITH_DESTINATION"},
    {PF_OutFlag2_DOESNT_NEED_EMPTY_PIXELS, "PF_OutFlag2_DOESNT_NEED_EMPTY_PIXELS"},
    {PF_OutFlag2_REVEALS_ZERO_ALPHA, "PF_OutFlag2_REVEALS_ZERO_ALPHA"},
    {PF_OutFlag2_PRESERVES_FULLY_OPAQUE_PIXELS, "PF_OutFlag2_PRESERVES_FULLY_OPAQUE_PIXELS"},
    {PF_OutFlag2_SUPPORTS_SMART_RENDER, "PF_OutFlag2_SUPPORTS_SMART_RENDER"},
    {PF_OutFlag2_FLOAT_COLOR_AWARE, "PF_OutFlag2_FLOAT_COLOR_AWARE"},
    {PF_OutFlag2_I_USE_COLORSPACE_ENUMERATION, "PF_OutFlag2_I_USE_COLORSPACE_ENUMERATION"},
    {PF_OutFlag2_I_AM_DEPRECATED, "PF_OutFlag2_I_AM_DEPRECATED"},
    {PF_OutFlag2_I_USE_TIMECODE, "PF_OutFlag2_I_USE_TIMECODE"},
    {PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA, "PF_OutFlag2_SUPPORTS_GET_FLATTENED_SEQUENCE_DATA"},
    {PF_OutFlag2_SUPPORTS_THREADED_RENDERING, "PF_OutFlag2_SUPPORTS_THREADED_RENDERING"},
};

std::vector<std::string> namesOf(A_long flags, std::span<const FlagName> names) {
    std::vector<std::string> set;
    const auto bits = static_cast<A_u_long>(flags);
    for (A_u_long bit = 1; bit != 0; bit <<= 1) {
        if ((bits & bit) == 0) {
            continue;
        }
        std::string name = hexNumber(bit);
        for (const FlagName& known : names) {
            if (static_cast<A_u_long>(known.flag) == bit) {
                name = known.name;
            }
        }
        set.push_back(name);
    }
    return set;
}

} // namespace

std::vector<std::string> outFlagNames(A_long flags) {
    return namesOf(flags, kOutFlagNames);
}

std::vector<std::string> outFlag2Names(A_long flags) {
    return namesOf(flags, kOutFlag2Names);
}

} // namespace kovalune::cli
