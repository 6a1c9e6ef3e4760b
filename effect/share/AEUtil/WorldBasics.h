// What can be done with a world through the host's suites alone: learning its pixel format, copying and
// clearing it. Each returns the host's code; a missing suite is thrown (SuiteHolder.h).
#pragma once

#include "hostapi/HostApi.h"

namespace AEUtil {

/// Writes the world's format into `format`. A host without version 2 of the world suite knows two: deep is
/// `ae16`, all else `argb`.
[[nodiscard]] PF_Err queryPixelFormat(PF_InData* inData, const PF_EffectWorld* world, PF_PixelFormat* format);

/// Copies the whole of `source` into `destination`, in the host's high quality where the frame is of that
/// quality.
[[nodiscard]] PF_Err copyWorld(PF_InData* inData, PF_EffectWorld* source, PF_EffectWorld* destination);

/// Makes the whole world transparent black, in every format.
[[nodiscard]] PF_Err clearWorld(PF_InData* inData, PF_EffectWorld* world);

} // namespace AEUtil
