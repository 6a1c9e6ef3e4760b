// Who the effect is. The resource by which a host finds it is made from the same numbers.
#pragma once

#include "hostapi/HostApi.h"

#include <string>

namespace kovalune {

inline constexpr char kEffectName[] = "Kovalune";
inline constexpr char kEffectCategory[] = "ORVEL";
/// By which projects find the effect again.
inline constexpr char kMatchName[] = "ORVEL KOVALUNE";
inline constexpr char kEntryPointName[] = "EntryPointFunc";
inline constexpr int kVersionMajor = 1;
inline constexpr int kVersionMinor = 0;
inline constexpr int kVersionBugfix = 1;
inline constexpr char kStageText[] = "Release";
inline constexpr int kBuild = 8;

/// The section of the defaults file that this version reads and writes.
inline std::string sectionNameOfThisVersion() {
    return "Version=" + std::to_string(kVersionMajor) + '.' + std::to_string(kVersionMinor);
}

/// In the host's version layout.
inline constexpr A_u_long kPackedVersion =
    PF_VERSION(kVersionMajor, kVersionMinor, kVersionBugfix, PF_Stage_RELEASE, kBuild);
static_assert(kPackedVersion == 0x00080E08);

/// The version of the host's interface that the effect is written for, by the kind of host.
inline constexpr PF_SpecVersion kSpecVersionOf32BitHosts = {12, 14};
inline constexpr PF_SpecVersion kSpecVersionOf64BitHosts = {13, 0};

inline constexpr PF_OutFlags kOutFlags = PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING | PF_OutFlag_I_DO_DIALOG |
                                         PF_OutFlag_USE_OUTPUT_EXTENT | PF_OutFlag_DEEP_COLOR_AWARE |
                                         PF_OutFlag_SEND_UPDATE_PARAMS_UI;
static_assert(kOutFlags == 0x06000070);

inline constexpr PF_OutFlags2 kOutFlags2 =
    PF_OutFlag2_SUPPORTS_QUERY_DYNAMIC_FLAGS | PF_OutFlag2_PARAM_GROUP_START_COLLAPSED_FLAG |
    PF_OutFlag2_I_AM_THREADSAFE | PF_OutFlag2_SUPPORTS_SMART_RENDER | PF_OutFlag2_FLOAT_COLOR_AWARE;
static_assert(kOutFlags2 == 0x00001419);

} // namespace kovalune
