// Which host the effect runs in, as far as the effect cares.
#pragma once

#include "hostapi/HostApi.h"

namespace AEUtil {

/// True for a host of the first kind ("FXTC") before version 12.12, which cannot take remembered defaults.
/// Any other host, of whatever version, is not old.
inline bool hostIsOld(const PF_InData* inData) {
    if (inData->appl_id != PF_AppID_FXTC) {
        return false;
    }
    const PF_SpecVersion& version = inData->version;
    return version.major < 12 || (version.major == 12 && version.minor < 12);
}

} // namespace AEUtil
